#pragma once

#include <string>

#include "intake/import_conversion.h"
#include "intake/retrieval.h"
#include "lists/waiting_work.h"

namespace tavlo::shell {

/// The steps of rooms that are still to be built, so that load, views and exit keep their places. A
/// step does nothing until its room takes it out of here.
class Annex : public intake::Retrieval, public intake::ImportConversion, public lists::WorkFigures {
 public:
  void RunRetrievalPasses() override {}
  void TakeWaitingWorkAsSeen() override {}
  /// Until its room is built the file stays what it is and shows under its own name.
  void ConvertImportDssFile(std::string& fileName) override { static_cast<void>(fileName); }

  virtual void AttachFtp() {}
  virtual void ReleaseFtp() {}
  virtual void UpgradeDatabase() {}
  virtual void PurgeCompletedFiles() {}
  /// Runs the two passes whose files the Import list shows.
  virtual void RetrieveForImport() {}
  /// Builds the list of servers.
  virtual void BuildFtpServers() {}
};

}  // namespace tavlo::shell
