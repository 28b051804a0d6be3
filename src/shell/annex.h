#pragma once

#include "intake/retrieval.h"
#include "lists/waiting_work.h"

namespace tavlo::shell {

/// The steps of rooms that are still to be built, so that load, views and exit keep their places. A
/// step does nothing until its room takes it out of here.
class Annex : public intake::Retrieval, public lists::WorkFigures {
 public:
  void RunRetrievalPasses() override {}
  void TakeWaitingWorkAsSeen() override {}

  virtual void AttachFtp() {}
  virtual void ReleaseFtp() {}
  virtual void UpgradeDatabase() {}
  virtual void PurgeCompletedFiles() {}
  /// Fetches what is to be imported, fills the author's boxes and builds the Import list.
  virtual void BuildImportList() {}
  /// Builds the list of servers.
  virtual void BuildFtpServers() {}
};

}  // namespace tavlo::shell
