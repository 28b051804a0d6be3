#pragma once

#include "playback/audio_engine.h"
#include "playback/transport.h"

namespace tavlo::playback {

/// The position slider, and the hand calibration of the mini-player's height.
class PositionDisplay {
 public:
  PositionDisplay(window::MainWindow& window, DocumentInWork& document, AudioEngine& engine,
                  Transport& transport);

  /// Goes to a sample of the document, cut to its ends, as a hand does with the slider; nothing
  /// where a hand could not move it, or holds a slider. A wind ends.
  void SeekTo(double sample);

 private:
  void PressPosition();
  void ReleasePosition();
  void ContinueFrom(double sample);
  void CalibrateHeight();

  forms::MainForm& form_;
  window::MainWindow& window_;
  DocumentInWork& document_;
  AudioEngine& engine_;
  Transport& transport_;
};

/// The next allowance for title bar and menu on a double click: a ring that climbs in steps of 25
/// from 500 to 600, falls through odd values to 300 and climbs again. Anything else goes to 500.
int NextTitleBarHeight(int height);

}  // namespace tavlo::playback
