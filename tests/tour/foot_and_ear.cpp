// The second morning's work: the foot on its pedals, and the sound put right for the ear.
#include <QWidget>
#include <algorithm>
#include <cmath>

#include "day.h"

namespace tavlo::tour {
namespace {

using base::operator""s;

// Bits of a pedal's report.
constexpr std::uint8_t kUp = 0;
constexpr std::uint8_t kLeft = 1;
constexpr std::uint8_t kCenter = 2;
constexpr std::uint8_t kRight = 4;

}  // namespace

Step Day::Foot(std::uint8_t bits, std::string says, std::function<bool()> seen) {
  return {.says = std::move(says),
          .act =
              [this, bits] {
                remembered_ = Seconds();
                foot_->Report({bits});
              },
          .seen = std::move(seen)};
}

void Day::AddFoot(std::vector<Step>& steps) {
  const auto atRest = [this] { return !Playing() && !Main().DeckRuns; };
  steps.push_back(Click("cmdStop", "Stop, for the foot takes over", atRest));
  steps.push_back(Foot(kCenter, "the center pedal sounds the document while it is down",
                       [this] { return Playing() && Seconds() > remembered_ + 1; }));
  steps.push_back(Foot(kUp, "and its release stops it", atRest));
  steps.push_back(Foot(kLeft, "the left pedal winds back",
                       [this] { return !Playing() && Seconds() < remembered_ - 1; }));
  steps.push_back(Foot(kUp, "until it is let go", atRest));
  steps.push_back(Foot(kRight, "the right pedal winds forward",
                       [this] { return !Playing() && Seconds() > remembered_ + 1; }));
  steps.push_back(Foot(kUp, "until it is let go", atRest));
}

void Day::AddEqualizer(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(Foot(kCenter, "the center pedal sounds the document again",
                       [this] { return Playing() && Seconds() > remembered_ + 0.5; }));
  steps.push_back(Click("cmdEQ", "EQ opens the equalizer while the voice goes on", [&config, this] {
    return config.frmConfiguration.Visible && config.frameConfigEqualizer.Visible && Playing();
  }));
  steps.push_back(Click("chkEqEnable", "its box turns it on",
                        [&config] { return config.cmdEqHi.Enabled.Get(); }));
  steps.push_back(Click(
      "cmdEqHi", "Hi lifts the high voices",
      [&config, this] {
        return config.sldEQ.back().Value < config.sldEQ.front().Value && Playing();
      },
      "equalizer"));
  steps.push_back(Click("cmdEqCustom", "Custom takes the typist's own curve",
                        [&config] { return config.txtEqChoice.Value.Get() == "Cust"; }));
  steps.push_back({.says = "a slider is drawn up",
                   .act = [this] { DrawTo("sldEQ6", 25); },
                   .seen = [&config] { return config.sldEQ[6].Value < -6; }});
  steps.push_back(Click("cmdSaveCustom", "and kept", [&config, this] {
    return BoxOpen() && config.txtEqCustom[6].WholeNumber() == config.sldEQ[6].Value;
  }));
  steps.push_back(Keys({keys::kReturn}, "which a box confirms", [this] { return !BoxOpen(); }));
}

void Day::AddMixer(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(Keys(
      {keys::kAlt, 'm'}, "the mixer shows the device and its volumes",
      [&config] {
        return config.frameConfigMixer.Visible && !config.DeviceCombo.Rows().empty() &&
               config.slVolume.front().Visible && config.slVolume.front().Enabled;
      },
      "mixer"));
  steps.push_back(Click("chMute0", "Mute silences the device",
                        [&config] { return config.chMute.front().Value.Get(); }));
  steps.push_back(Click("chMute0", "and gives it back",
                        [&config] { return !config.chMute.front().Value.Get(); }));
  const auto lit = [&config] {
    return config.ShapeCenterPedal.FillColour == forms::PedalShape::kDown;
  };
  steps.push_back(
      Keys({keys::kAlt, 's'}, "the settings light the pedal that is down", lit, "pedals"));
  steps.push_back(Foot(kUp, "its release stops the voice here too",
                       [lit, this] { return !Playing() && !lit(); }));
  steps.push_back(Keys({keys::kAlt, 'c'}, "closing brings the mini-player back",
                       [this] { return Main().frmMain.Visible && Main().cmdSkip.Enabled; }));
}

void Day::DrawTo(const char* slider, int percent) {
  const QWidget* const widget = typist_.Widget(slider);
  if (!widget) return;
  const int middle = widget->width() / 2;
  const int target = widget->height() * percent / 100;
  typist_.PressAt(widget->mapToGlobal(QPoint(middle, widget->height() / 2)));
  typist_.MoveTo(widget->mapToGlobal(QPoint(middle, target)));
  typist_.Release();
}

}  // namespace tavlo::tour
