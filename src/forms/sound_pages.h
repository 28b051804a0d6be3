#pragma once

#include <deque>
#include <optional>
#include <string>

#include "forms/controls.h"

/// The "&Equalizer" and "&Mixer" pages of the configuration window. Controls that come in numbers
/// count from 0, as the rules do; the stored texts of the custom curve carry their names from 1.
namespace tavlo::forms {

inline constexpr int kEqualizerBands = 12;
inline constexpr int kMixerSources = 8;

/// A button of an equalizer curve. The chosen one is coloured.
struct PresetCommand : Command {
  static constexpr Colour kChosen = 0xFFFFC0;

  PresetCommand(Pane* parent, std::string name, const First& first)
      : Command(parent, std::move(name), first) {}

  /// Nothing is the toolkit's own colour of buttons.
  State<std::optional<Colour>> BackColour{*this, std::nullopt};
};

struct EqualizerPage {
  explicit EqualizerPage(Window& window);

  Pane frameConfigEqualizer;
  Choice chkEqEnable{&frameConfigEqualizer,
                     "chkEqEnable",
                     {.caption = "Enable", .tooltip = "Turn the equalizer on"}};
  Text txtEqEnable{&frameConfigEqualizer, "txtEqEnable", {.visible = false}};
  PresetCommand cmdEqFlat{&frameConfigEqualizer,
                          "cmdEqFlat",
                          {.caption = "Flat", .tooltip = "Flat response", .enabled = false}};
  PresetCommand cmdEqLo{
      &frameConfigEqualizer,
      "cmdEqLo",
      {.caption = "Lo", .tooltip = "Emphasize low frequencies", .enabled = false}};
  PresetCommand cmdEqMid{
      &frameConfigEqualizer,
      "cmdEqMid",
      {.caption = "Mid", .tooltip = "Emphasize midrange frequencies", .enabled = false}};
  // The misspelling in these two tooltips is kept as users know it.
  PresetCommand cmdEqHi{
      &frameConfigEqualizer,
      "cmdEqHi",
      {.caption = "Hi", .tooltip = "Empahsize high frequencies", .enabled = false}};
  PresetCommand cmdEqCustom{
      &frameConfigEqualizer,
      "cmdEqCustom",
      {.caption = "Custom", .tooltip = "Empahsize custom frequencies", .enabled = false}};
  Command cmdSaveCustom{
      &frameConfigEqualizer,
      "cmdSaveCustom",
      {.caption = "Save Custom", .tooltip = "Keep the sliders as the custom equalizer setting"}};
  Text txtEqChoice{&frameConfigEqualizer, "txtEqChoice", {.visible = false}};

  Text lblScaleTop{&frameConfigEqualizer, "lblScaleTop", {.caption = "20 dB"}};
  Text lblScaleMiddle{&frameConfigEqualizer, "lblScaleMiddle", {.caption = "0 dB"}};
  Text lblScaleBottom{&frameConfigEqualizer, "lblScaleBottom", {.caption = "-20 dB"}};
  std::deque<Text> lblBand;
  /// Gain of a band in dB, -20 to 20, sign inverted: the top of the slider is -20.
  std::deque<Range> sldEQ;
  std::deque<Text> txtEqCustom;
};

struct MixerPage {
  explicit MixerPage(Window& window);

  Pane frameConfigMixer;
  Text lblDevice{&frameConfigMixer, "lblDevice", {.caption = "Audio device"}};
  Table DeviceCombo{&frameConfigMixer, "DeviceCombo", {.tooltip = "Select the audio device"}};
  Text txtMixerSelection{&frameConfigMixer, "txtMixerSelection", {.visible = false}};
  /// Name of a source of the chosen device.
  std::deque<Text> Label;
  /// 0 to 65535, inverted: the value is 65535 less the volume.
  std::deque<Range> slVolume;
  std::deque<Text> lblBalance;
  std::deque<Range> slBalance;
  std::deque<Choice> chMute;
  std::deque<Command> cmdAdvanced;
  Text lblNoSource{
      &frameConfigMixer,
      "lblNoSource",
      {.caption =
           "No sound device shows its volumes. Connect one, or start the sound server of the "
           "desktop: they then appear here by themselves."}};
};

}  // namespace tavlo::forms
