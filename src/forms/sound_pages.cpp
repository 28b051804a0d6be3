#include "forms/sound_pages.h"

#include <array>
#include <string_view>

namespace tavlo::forms {
namespace {

constexpr std::array<std::string_view, kEqualizerBands> kBands{
    "31 Hz", "62 Hz", "125 Hz", "252 Hz", "500 Hz", "1 kHz",
    "2 kHz", "4 kHz", "6 kHz",  "9 kHz",  "12 kHz", "16 kHz"};

/// The top of an upright slider is its smallest value, and the most of what it sets.
constexpr Scale kGain{.atMinimum = 20, .atMaximum = -20, .unit = "dB"};
constexpr Scale kVolume{.atMinimum = 100, .unit = "percent"};
constexpr Scale kBalance{.atMaximum = 100, .unit = "percent to the right"};

std::string Numbered(std::string_view name, int number) {
  return std::string(name) + std::to_string(number);
}

}  // namespace

EqualizerPage::EqualizerPage(Window& window)
    : frameConfigEqualizer(&window, "frameConfigEqualizer", {.visible = false}) {
  for (int band = 0; band < kEqualizerBands; ++band) {
    const std::string label(kBands[static_cast<std::size_t>(band)]);
    lblBand.emplace_back(&frameConfigEqualizer, Numbered("lblBand", band), First{.caption = label});
    sldEQ.emplace_back(
        &frameConfigEqualizer, Numbered("sldEQ", band), First{.tooltip = "Gain at " + label},
        Span{.minimum = -20, .maximum = 20, .smallStep = 1, .largeStep = 5, .heard = kGain});
    txtEqCustom.emplace_back(&frameConfigEqualizer, Numbered("txtEqCustom", band + 1),
                             First{.visible = false});
  }
}

MixerPage::MixerPage(Window& window)
    : frameConfigMixer(&window, "frameConfigMixer", {.visible = false}) {
  for (int source = 0; source < kMixerSources; ++source) {
    Label.emplace_back(&frameConfigMixer, Numbered("Label", source), First{.visible = false});
    slVolume.emplace_back(
        &frameConfigMixer, Numbered("slVolume", source),
        First{.tooltip = "Volume of this source", .enabled = false, .visible = false},
        Span{.minimum = 0,
             .maximum = 65535,
             .smallStep = 5,
             .largeStep = 5,
             .value = 65535,
             .heard = kVolume});
    lblBalance.emplace_back(&frameConfigMixer, Numbered("lblBalance", source),
                            First{.caption = "Balance", .visible = false});
    slBalance.emplace_back(
        &frameConfigMixer, Numbered("slBalance", source),
        First{.tooltip = "Balance of this source", .enabled = false, .visible = false},
        Span{.minimum = 0,
             .maximum = 100,
             .smallStep = 5,
             .largeStep = 10,
             .value = 50,
             .heard = kBalance});
    chMute.emplace_back(
        &frameConfigMixer, Numbered("chMute", source),
        First{.caption = "Mute", .tooltip = "Silence this source", .visible = false});
    cmdAdvanced.emplace_back(&frameConfigMixer, Numbered("cmdAdvanced", source),
                             First{.caption = "Advanced",
                                   .tooltip = "This source has settings of its own",
                                   .enabled = false,
                                   .visible = false});
  }
}

}  // namespace tavlo::forms
