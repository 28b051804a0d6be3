#include "playback/equalizer.h"

#include <array>
#include <optional>
#include <string>

namespace tavlo::playback {
namespace {

using SliderValues = std::array<int, forms::kEqualizerBands>;

}  // namespace

struct Equalizer::Preset {
  std::string_view choice;
  forms::PresetCommand forms::EqualizerPage::*key;
  /// Values of the sliders, which are the gains with their sign turned round. Nothing stands for
  /// the curve of the user's own.
  std::optional<SliderValues> sliders;
};

constexpr Equalizer::Preset Equalizer::kPresets[] = {
    {"Flat", &forms::EqualizerPage::cmdEqFlat, SliderValues{}},
    {"Lo", &forms::EqualizerPage::cmdEqLo,
     SliderValues{-18, -16, -14, -12, -8, -4, -2, 0, 4, 0, -4, -10}},
    {"Mid", &forms::EqualizerPage::cmdEqMid,
     SliderValues{0, 0, 0, -2, -6, -10, -10, -6, -2, 0, 0, 0}},
    {"Hi", &forms::EqualizerPage::cmdEqHi,
     SliderValues{-10, -4, 0, 4, 0, -2, -4, -8, -12, -14, -16, -18}},
    {"Cust", &forms::EqualizerPage::cmdEqCustom, std::nullopt},
};

Equalizer::Equalizer(base::Loop& loop, forms::ConfigurationForm& config, AudioPlayer& player)
    : loop_(loop),
      config_(config),
      player_(player),
      pairs_(window::PairsOn(config.frameConfigEqualizer, window::ConfigurationBindings(config))) {
  config_.chkEqEnable.OnClick = [this] {
    SwitchOnOrOff();
    FocusAway();
  };
  for (const Preset& preset : kPresets) {
    KeyOf(preset).OnPress = [this, &preset] { Choose(preset); };
  }
  config_.txtEqChoice.OnChange = [this] { ColourChoice(); };
  for (forms::Range& slider : config_.sldEQ) slider.OnRelease = [this] { SendGains(); };
  config_.cmdSaveCustom.OnPress = [this] { SaveCustom(); };
}

void Equalizer::ApplyStored() {
  ShowStored();
  for (const Preset& preset : kPresets) {
    if (config_.txtEqChoice.Value.Get() == preset.choice) KeyOf(preset).Press();
  }
  SendGains();
}

void Equalizer::ShowStored() {
  // The keys of the curves follow the box.
  for (const window::Binding& pair : pairs_) pair.ShowTick();
  ColourChoice();
}

forms::PresetCommand& Equalizer::KeyOf(const Preset& preset) { return config_.*preset.key; }

void Equalizer::SwitchOnOrOff() {
  const bool on = config_.chkEqEnable.Value;
  for (const window::Binding& pair : pairs_) pair.TakeTick();
  for (const Preset& preset : kPresets) KeyOf(preset).Enabled = on;
  player_.SetEqualizerEnabled(on);
  if (on) SendGains();
}

void Equalizer::Choose(const Preset& preset) {
  for (std::size_t band = 0; band < config_.sldEQ.size(); ++band) {
    forms::Range& slider = config_.sldEQ[band];
    slider.Value = preset.sliders ? (*preset.sliders)[band]
                                  : slider.Bounds.Nearest(config_.txtEqCustom[band].WholeNumber());
  }
  SendGains();
  config_.txtEqChoice.Value = std::string(preset.choice);
  FocusAway();
}

void Equalizer::ColourChoice() {
  for (const Preset& preset : kPresets) {
    const bool chosen = config_.txtEqChoice.Value.Get() == preset.choice;
    KeyOf(preset).BackColour =
        chosen ? std::optional<forms::Colour>(forms::PresetCommand::kChosen) : std::nullopt;
  }
}

void Equalizer::SendGains() {
  EqualizerGains gains{};
  for (std::size_t band = 0; band < config_.sldEQ.size(); ++band) {
    gains[band] = static_cast<float>(-config_.sldEQ[band].Value.Get());
  }
  player_.SetEqualizerGains(gains);
}

void Equalizer::SaveCustom() {
  for (std::size_t band = 0; band < config_.sldEQ.size(); ++band) {
    config_.txtEqCustom[band].Value = std::to_string(config_.sldEQ[band].Value.Get());
  }
  loop_.Show({.title = "Tavlo Deck",
              .text = "Custom equalizer setting saved",
              .icon = base::Icon::Information});
  FocusAway();
}

}  // namespace tavlo::playback
