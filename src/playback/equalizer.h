#pragma once

#include <string_view>
#include <vector>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "playback/audio_objects.h"
#include "window/bindings.h"
#include "window/configuration_page.h"

namespace tavlo::playback {

/// The equalizer page: twelve bands, five curves, on and off. What sounds is what the sliders are
/// set to; a curve only sets them.
class Equalizer : public window::ConfigurationPage {
 public:
  Equalizer(base::Loop& loop, forms::ConfigurationForm& config, AudioPlayer& player);

  /// Puts the stored switch and the stored curve on the page and into the player: at start-up and
  /// at each start of playing.
  void ApplyStored();
  /// Shows the stored switch and which curve is chosen, as the page comes to the front. The sliders
  /// stay: they may hold bands that a hand has dragged.
  void ShowStored();

  forms::Pane& Frame() override { return config_.frameConfigEqualizer; }
  void WindowOpens() override { ShowStored(); }

 private:
  struct Preset;
  static const Preset kPresets[];

  forms::PresetCommand& KeyOf(const Preset& preset);
  void SwitchOnOrOff();
  void Choose(const Preset& preset);
  void ColourChoice();
  void SendGains();
  void SaveCustom();
  void FocusAway() { config_.frmConfiguration.FocusOn(config_.txtFocus); }

  base::Loop& loop_;
  forms::ConfigurationForm& config_;
  AudioPlayer& player_;
  /// The check box of the switch with the text behind it.
  const std::vector<window::Binding> pairs_;
};

}  // namespace tavlo::playback
