#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "playback/audio_engine.h"

namespace tavlo::playback {

enum class Wind { None, Rewind, Forward };

/// Tells one stretch of playing or winding from every other.
using RunNumber = std::uint64_t;

/// Moves the dictation under the typist's foot. Rewind and forward do not scrub: they jump by a set
/// distance, each jump marked by a tone, at a cadence that can accelerate. Nothing of the document
/// sounds while it winds; Play picks up from where it stands, less the auto-backspace.
class Transport {
 public:
  Transport(base::Loop& loop, window::MainWindow& window, DocumentInWork& document,
            AudioEngine& engine, Voice& voice);

  Wind WindDirection = Wind::None;
  int WindTickCount = 0;
  /// Seconds since midnight of the last presses of the left and the right pedal. A skip makes both
  /// 0, so that a press from before it does not count as the first of two. The press that skipped
  /// is recorded behind its skip, as every press is: one more of that pedal in time skips again.
  double LastRewindPressTime = 0;
  double LastForwardPressTime = 0;

  base::Timer tmrRewindForward;

  void PlayCommand();
  void StopCommand();
  void RewindCommand();
  void ForwardCommand();
  void SkipToBeginningCommand();
  void SkipToEndCommand();

  /// What sounds or winds now; nothing when the deck stands.
  std::optional<RunNumber> RunUnderWay() const;
  /// Something begins to sound or to wind, and is `RunUnderWay` already.
  std::function<void()> OnRunBegins = [] {};

  /// Ends a wind where it stands.
  void StopWind();
  /// Stops the preview's timer and the wind. The position stays.
  void StopWindAndPreview();
  /// Shows the position on the slider and in the display.
  void ShowPosition();
  /// Tells the user about a document of the Queue that cannot be played, and lets Complete take it
  /// out of the Queue. One that can be played, or whose measuring was refused, needs no word. One
  /// that is out of reach is not offered to Complete, since it may hold sound that was not heard.
  void Explain(Primed primed);
  /// Tells the user about a document of any list that is gone or whose folder cannot be reached.
  void SayOutOfReach();

 private:
  void WireButtons();
  void ContinueFromWhereTheEarWas();
  bool PrimeAtTheBeginning();
  bool PrimeOrExplain();
  void ExplainOutOfReach();
  double SavedPositionInFile() const;
  void ShowAsPlaying();

  void Jump(double seconds);
  double WindSeconds() const;
  void StartWind(Wind direction);
  void WindTick();
  /// One jump of a running wind; true when it reached an end, which stops the wind.
  bool WindBack();
  bool WindOn();
  void ReachBeginning();
  void ReachEnd();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  DocumentInWork& document_;
  AudioEngine& engine_;
  Voice& voice_;
  std::uint64_t startsOfWinds_ = 0;
};

}  // namespace tavlo::playback
