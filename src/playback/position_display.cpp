#include "playback/position_display.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "forms/control_groups.h"

namespace tavlo::playback {
namespace {

/// A window no higher than this shows the mini-player.
constexpr forms::Twips kHighestMiniPlayer = 6000;

struct Step {
  int from;
  int to;
};
constexpr std::array kHeightRing = {
    Step{500, 525}, Step{525, 550}, Step{550, 575}, Step{575, 600}, Step{600, 574}, Step{574, 549},
    Step{549, 499}, Step{499, 474}, Step{474, 449}, Step{449, 424}, Step{424, 399}, Step{399, 374},
    Step{374, 349}, Step{349, 324}, Step{324, 300}, Step{300, 325}, Step{325, 350}, Step{350, 375},
    Step{375, 400}, Step{400, 425}, Step{425, 450}, Step{450, 475},
};

}  // namespace

int NextTitleBarHeight(int height) {
  for (const Step& step : kHeightRing) {
    if (step.from == height) return step.to;
  }
  return 500;
}

PositionDisplay::PositionDisplay(window::MainWindow& window, DocumentInWork& document,
                                 AudioEngine& engine, Transport& transport)
    : form_(window.Form()),
      window_(window),
      document_(document),
      engine_(engine),
      transport_(transport) {
  form_.slPosition.OnPress = [this] { PressPosition(); };
  form_.slPosition.OnRelease = [this] { ReleasePosition(); };
  form_.StatusBar1.OnDoubleClick = [this] { CalibrateHeight(); };
}

void PositionDisplay::PressPosition() {
  engine_.SliderDragging = true;
  transport_.StopWind();
}

void PositionDisplay::ReleasePosition() {
  if (!window_.guards.TransportMayAct()) {
    // The display stays frozen until the next press and release.
    window_.FocusAway();
    return;
  }
  const int value = form_.slPosition.Value;
  if (engine_.IsPlaying) {
    // 64 bits hold the product for any document, so a long one seeks as truly as a short one.
    const SampleCount product = value * engine_.File().TotalSamples();
    ContinueFrom(static_cast<double>(product) / 100.0);
  } else {
    engine_.SliderDragging = false;
    engine_.PlayStartSample = value / 100.0 * document_.FileLength;
    document_.CurrentSamplePosition = engine_.PlayStartSample;
  }
}

void PositionDisplay::ContinueFrom(double sample) {
  engine_.Player().ClearQueue();
  engine_.SliderDragging = false;
  engine_.ContinueFrom(static_cast<SampleCount>(std::nearbyint(sample)));
}

void PositionDisplay::SeekTo(double sample) {
  if (!form_.slPosition.Reachable() || forms::SliderIsHeld(form_)) return;
  if (!window_.guards.TransportMayAct()) return;
  window_.ForgetNotice();
  transport_.StopWind();
  // A slider that was let go while a document was moved has left the display frozen.
  engine_.SliderDragging = false;
  const double target = std::clamp(sample, 0.0, document_.FileLength);
  if (engine_.IsPlaying) {
    ContinueFrom(target);
  } else {
    engine_.PlayStartSample = target;
    document_.CurrentSamplePosition = target;
  }
  transport_.ShowPosition();
}

void PositionDisplay::CalibrateHeight() {
  if (form_.frmMain.Height > kHighestMiniPlayer) return;
  const auto height = static_cast<int>(form_.txtTitleBarHeight.WholeNumber());
  form_.txtTitleBarHeight.Value = std::to_string(NextTitleBarHeight(height));
  form_.frmMain.Height = NextTitleBarHeight(height) + form_.framePlayer.Height;
}

}  // namespace tavlo::playback
