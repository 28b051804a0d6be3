#include "playback/sound_shaping.h"

#include <string>

namespace tavlo::playback {
namespace {

constexpr int kNormalSpeed = 100;

}  // namespace

SoundShaping::SoundShaping(window::MainWindow& window, AudioEngine& engine)
    : form_(window.Form()), window_(window), engine_(engine) {
  form_.Slider1.OnPress = [this] { engine_.SliderDragging = true; };
  form_.Slider1.OnRelease = [this] { ReleaseSpeed(); };
  form_.cmdNormalSpeed.OnPress = [this] { SetNormalSpeed(); };
  form_.sldVol.OnRelease = [this] { ReleaseVolume(); };
}

void SoundShaping::ApplyStored() {
  form_.Slider1.Value = form_.Slider1.Bounds.Nearest(form_.txtSpeed.WholeNumber() - kNormalSpeed);
  engine_.PlaySpeedPercent = form_.Slider1.Value + kNormalSpeed;
  form_.sldVol.Value = form_.sldVol.Bounds.Nearest(form_.txtVolume.WholeNumber());
  engine_.Player().SetVolume(form_.sldVol.Value);
}

void SoundShaping::ReleaseSpeed() {
  if (!window_.guards.TransportMayAct()) {
    window_.FocusAway();
    return;
  }
  engine_.PlaySpeedPercent = form_.Slider1.Value + kNormalSpeed;
  form_.txtSpeed.Value = std::to_string(engine_.PlaySpeedPercent);
  engine_.SliderDragging = false;
}

void SoundShaping::SetNormalSpeed() {
  if (window_.guards.TransportMayAct()) {
    form_.Slider1.Value = 0;
    engine_.PlaySpeedPercent = kNormalSpeed;
    form_.txtSpeed.Value = std::to_string(kNormalSpeed);
  }
  window_.FocusAway();
}

void SoundShaping::ReleaseVolume() {
  if (!window_.guards.TransportMayAct()) return;
  engine_.Player().SetVolume(form_.sldVol.Value);
  form_.txtVolume.Value = std::to_string(form_.sldVol.Value.Get());
}

}  // namespace tavlo::playback
