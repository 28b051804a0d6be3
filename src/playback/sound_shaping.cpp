#include "playback/sound_shaping.h"

#include <algorithm>
#include <cstdint>
#include <string>

#include "base/text.h"

namespace tavlo::playback {
namespace {

constexpr int kNormalSpeed = 100;

/// A stored number as a slider's value; what lies far outside its range does not wrap.
int SliderValue(const std::string& text, const forms::Span& bounds, int offset = 0) {
  const std::int64_t value = base::WholeNumberValue(text);
  return static_cast<int>(
      std::clamp<std::int64_t>(value, bounds.minimum + offset, bounds.maximum + offset) - offset);
}

}  // namespace

SoundShaping::SoundShaping(forms::MainForm& form, window::MainWindow& window, AudioEngine& engine)
    : form_(form), window_(window), engine_(engine) {
  form_.Slider1.OnPress = [this] { engine_.SliderDragging = true; };
  form_.Slider1.OnRelease = [this] { ReleaseSpeed(); };
  form_.cmdNormalSpeed.OnPress = [this] { SetNormalSpeed(); };
  form_.sldVol.OnRelease = [this] { ReleaseVolume(); };
}

void SoundShaping::ApplyStored() {
  form_.Slider1.Value = SliderValue(form_.txtSpeed.Value, form_.Slider1.Bounds, kNormalSpeed);
  engine_.PlaySpeedPercent = form_.Slider1.Value + kNormalSpeed;
  form_.sldVol.Value = SliderValue(form_.txtVolume.Value, form_.sldVol.Bounds);
  engine_.Player().SetVolume(form_.sldVol.Value);
}

void SoundShaping::ReleaseSpeed() {
  if (window_.guards.ListTransitionBusy) {
    window_.FocusAway();
    return;
  }
  engine_.PlaySpeedPercent = form_.Slider1.Value + kNormalSpeed;
  form_.txtSpeed.Value = std::to_string(engine_.PlaySpeedPercent);
  engine_.SliderDragging = false;
}

void SoundShaping::SetNormalSpeed() {
  if (!window_.guards.ListTransitionBusy) {
    form_.Slider1.Value = 0;
    engine_.PlaySpeedPercent = kNormalSpeed;
    form_.txtSpeed.Value = std::to_string(kNormalSpeed);
  }
  window_.FocusAway();
}

void SoundShaping::ReleaseVolume() {
  if (window_.guards.ListTransitionBusy) return;
  engine_.Player().SetVolume(form_.sldVol.Value);
  form_.txtVolume.Value = std::to_string(form_.sldVol.Value.Get());
}

}  // namespace tavlo::playback
