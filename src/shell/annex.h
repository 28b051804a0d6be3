#pragma once

#include "lists/waiting_work.h"

namespace tavlo::shell {

/// The steps of rooms that are still to be built, so that load, views and exit keep their places. A
/// step does nothing until its room takes it out of here.
class Annex : public lists::WorkFigures {
 public:
  void TakeWaitingWorkAsSeen() override {}

  virtual void AttachFtp() {}
  virtual void ReleaseFtp() {}
  virtual void UpgradeDatabase() {}
  virtual void PurgeCompletedFiles() {}
  /// Builds the list of servers.
  virtual void BuildFtpServers() {}
};

}  // namespace tavlo::shell
