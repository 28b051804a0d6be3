#pragma once

#include <cstdint>
#include <string>

#include "playback/audio_engine.h"

namespace tavlo::playback {

/// The first seconds of a document that was selected in a list.
class Preview {
 public:
  Preview(window::MainWindow& window, DocumentInWork& document, AudioEngine& engine, Voice& voice);

  /// What a selection does before anything sounds: playback stops, the file is closed, the position
  /// goes to the beginning. Yields to the loop once, with Play refused meanwhile. False when
  /// another selection came in that moment: what it prepared stands then, and nothing is left to
  /// do.
  [[nodiscard]] bool Prepare(base::Loop& loop, const std::string& documentPath);
  /// Sounds the beginning of the prepared document for as long as the setting says; when that is
  /// nothing, the document is not looked at and counts as primed. What cannot be played is left to
  /// the caller to explain.
  [[nodiscard]] Primed Start();

 private:
  void EndByHand();
  void EndByTimer();

  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  DocumentInWork& document_;
  AudioEngine& engine_;
  Voice& voice_;
  /// Counts the selections, so that one that was overtaken can tell.
  std::uint64_t lastSelection_ = 0;
};

}  // namespace tavlo::playback
