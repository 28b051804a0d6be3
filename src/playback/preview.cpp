#include "playback/preview.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tavlo::playback {
namespace {

/// Seconds that no preview passes; what is stored has no bound.
constexpr double kLongestPreview = 86'400;

}  // namespace

Preview::Preview(window::MainWindow& window, DocumentInWork& document, AudioEngine& engine,
                 Voice& voice)
    : form_(window.Form()),
      config_(window.Config()),
      window_(window),
      document_(document),
      engine_(engine),
      voice_(voice) {
  engine_.tmrPlaySnipet.OnTick = [this] { EndByTimer(); };
  form_.cmdImportCompleteSnipetStop.OnPress = [this] { EndByHand(); };
}

bool Preview::Prepare(base::Loop& loop, const std::string& documentPath) {
  const std::uint64_t selection = ++lastSelection_;
  engine_.StopPlay();
  form_.cmdPlay.Enabled = false;
  {
    const window::ListPause pause(window_.guards);
    loop.Yield();
  }
  if (selection != lastSelection_) return false;
  engine_.CloseFile();
  form_.cmdImportCompleteSnipetStop.Enabled = true;
  document_.CurrentDocumentPath = documentPath;
  form_.lblFilePositionHMS.Value = "00:00:00";
  document_.CurrentSamplePosition = 0;
  return true;
}

Primed Preview::Start() {
  const double seconds = std::min(config_.txtAutoPreview.Number(), kLongestPreview);
  if (seconds <= 0) return Primed::Yes;
  // One second more than asked covers the blocks ahead of the ear; a slower speed takes longer over
  // the same stretch of dictation.
  const double milliseconds = (seconds + 1) * 1000 / (engine_.PlaySpeedPercent / 100.0);
  engine_.tmrPlaySnipet.SetInterval(
      std::chrono::milliseconds{static_cast<std::int64_t>(std::nearbyint(milliseconds))});
  engine_.tmrPlaySnipet.Start();
  voice_.StopPrompt();
  engine_.ApplyDocumentVolume();
  document_.DocumentPrimed = true;
  form_.slPosition.Enabled = false;
  if (engine_.IsPlaying) engine_.StopPlay();
  engine_.CloseFile();
  const Primed primed = engine_.Prime();
  if (primed == Primed::Yes) {
    // The file may have been long in coming, and the preview counts from its first sound.
    engine_.tmrPlaySnipet.Start();
    engine_.StartPlay();
  }
  return primed;
}

void Preview::EndByTimer() {
  engine_.tmrPlaySnipet.Stop();
  engine_.StopPlay();
}

void Preview::EndByHand() {
  engine_.StopPlay();
  form_.cmdImportCompleteSnipetStop.Enabled = false;
  window_.FocusAway();
}

}  // namespace tavlo::playback
