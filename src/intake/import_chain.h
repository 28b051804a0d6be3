#pragma once

namespace tavlo::intake {

/// The step of the retrieval that empties the import directories into the Queue.
class ImportChain {
 public:
  virtual ~ImportChain() = default;

  /// Sends what waits in all 26 import directories, each under its linked profile, as if a user had
  /// pressed the buttons of the Import view. Does nothing while the setting says "N". Must not be
  /// called while a list of the deck is being walked.
  virtual void AutoImportAll() = 0;
};

}  // namespace tavlo::intake
