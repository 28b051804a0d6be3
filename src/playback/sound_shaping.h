#pragma once

#include "playback/audio_engine.h"

namespace tavlo::playback {

/// The speed and volume sliders of the player.
class SoundShaping {
 public:
  SoundShaping(window::MainWindow& window, AudioEngine& engine);

  /// Puts the stored speed and volume on the sliders and into the engine, at start-up.
  void ApplyStored();

 private:
  void ReleaseSpeed();
  void SetNormalSpeed();
  void ReleaseVolume();

  forms::MainForm& form_;
  window::MainWindow& window_;
  AudioEngine& engine_;
};

}  // namespace tavlo::playback
