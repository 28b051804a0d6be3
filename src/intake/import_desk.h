#pragma once

#include <string>

namespace tavlo::intake {

/// The Import list, its author profiles and its send command, as automatic import drives them.
class ImportDesk {
 public:
  virtual ~ImportDesk() = default;

  /// The text of `txtAutoImport`.
  virtual std::string AutoImportMode() const = 0;
  /// The text of `txtImportSynchronize`: "Y" links each directory with a profile of its own.
  virtual std::string ImportSynchronize() const = 0;
  /// The text of `txtWavImportSubdirectory`.
  virtual std::string WavImportSubdirectory() const = 0;
  virtual void SetWavImportSubdirectory(const std::string& text) = 0;

  /// While it is set the list refresh and the send-all command ask and announce nothing.
  virtual void SetAutoImportRunning(bool running) = 0;
  /// Reads the profiles of `dataImportAuthors` anew.
  virtual void RefreshProfiles() = 0;
  /// Moves to the profile of that number, from 1 on.
  virtual void FindProfile(int number) = 0;
  virtual void MoveToFirstProfile() = 0;

  /// These press the button as a user does: nothing happens when it is disabled.
  virtual void PressRefreshImportList() = 0;
  virtual void PressSendAllImportFilesToQueue() = 0;
};

}  // namespace tavlo::intake
