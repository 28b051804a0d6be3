#pragma once

#include <functional>
#include <string>

#include "shell/annex.h"

namespace tavlo::test {

/// Writes down which steps of the rooms beside the deck came, in their order.
class AnnexTwin : public shell::Annex {
 public:
  std::string ran;
  /// What comes with the passes for the Import list.
  std::function<void()> OnRetrieveForImport = [] {};

  void RunRetrievalPasses() override { ran += "retrieve "; }
  void TakeWaitingWorkAsSeen() override { ran += "count "; }
  void AttachFtp() override { ran += "attach "; }
  void ReleaseFtp() override { ran += "release "; }
  void UpgradeDatabase() override { ran += "upgrade "; }
  void PurgeCompletedFiles() override { ran += "purge "; }
  void RetrieveForImport() override {
    ran += "import ";
    OnRetrieveForImport();
  }
  void BuildFtpServers() override { ran += "servers "; }
};

}  // namespace tavlo::test
