#pragma once

#include <cstdint>
#include <string>

#include "forms/controls.h"

namespace tavlo::playback {

/// The one document that the player knows: chosen in a list, sounded as a preview, or in work.
class DocumentInWork {
 public:
  /// `skip` is enabled from the document's first Play until it is finished.
  explicit DocumentInWork(const forms::Command& skip) : skip_(skip) {}

  /// Full path of the document that Play opens; empty when none is chosen.
  std::string CurrentDocumentPath;
  /// The position in its name, in samples: that of the document of the Queue that was clicked last.
  std::int32_t SavedPosition = 0;
  /// The transport's position, in samples.
  double CurrentSamplePosition = 0;
  /// Length of the primed document, in samples.
  double FileLength = 0;
  /// Samples in one second as winds and backspace see it: whole thousands, so that an 11,025 Hz
  /// document counts as 11,000.
  double SamplesPerSecond = 0;
  /// The document's audio file was opened and measured for it.
  bool DocumentPrimed = false;

  /// The file's name without its folder.
  std::string FileName() const {
    return CurrentDocumentPath.substr(CurrentDocumentPath.rfind('/') + 1);
  }
  /// It was begun by Play, and neither completed, saved nor skipped yet.
  bool IsInWork() const { return skip_.Enabled; }

 private:
  const forms::Command& skip_;
};

}  // namespace tavlo::playback
