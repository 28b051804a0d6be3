#include "simulation/mixer_rules.h"

#include <cstddef>
#include <string>
#include <vector>

#include "simulation/places.h"

namespace tavlo::simulation {
namespace {

using test::SimulatedSource;

constexpr int kMiddle = 50;

const std::vector<SimulatedSource>& SourcesOfTheDevice(Desk& desk) {
  static const std::vector<SimulatedSource> none;
  const auto& devices = desk.mixer.Devices;
  if (devices.empty()) return none;
  const auto chosen = static_cast<std::size_t>(desk.player.CurrentDevice());
  return devices[chosen < devices.size() ? chosen : 0];
}

bool ShowsNothing(forms::ConfigurationForm& config, std::size_t strip) {
  return !config.Label[strip].Visible && config.Label[strip].Value.Get().empty() &&
         !config.slVolume[strip].Visible && config.slVolume[strip].Value == kTopVolume &&
         !config.slBalance[strip].Visible && config.slBalance[strip].Value == kMiddle &&
         !config.chMute[strip].Visible;
}

bool Shows(forms::ConfigurationForm& config, std::size_t strip, const SimulatedSource& source) {
  return config.Label[strip].Visible && config.Label[strip].Value.Get() == source.name &&
         config.slVolume[strip].Enabled == source.hasVolume &&
         config.slVolume[strip].Value == kTopVolume - source.volume &&
         config.slBalance[strip].Enabled == source.hasBalance &&
         config.slBalance[strip].Value == source.balance &&
         config.chMute[strip].Visible == source.hasMute &&
         config.chMute[strip].Value == source.mute && !config.cmdAdvanced[strip].Enabled;
}

}  // namespace

bool MixerPageShowsTheSources(Desk& desk) {
  forms::ConfigurationForm& config = desk.Config();
  // A machine without a sound device is not asked for its mixer.
  if (desk.mixerNewsDue || desk.player.DeviceCount() < 1) return true;
  const std::vector<SimulatedSource>& sources = SourcesOfTheDevice(desk);
  for (std::size_t strip = 0; strip < config.Label.size(); ++strip) {
    const bool right =
        strip < sources.size() ? Shows(config, strip, sources[strip]) : ShowsNothing(config, strip);
    if (!right) return false;
  }
  return config.lblNoSource.Visible == sources.empty();
}

bool ChosenDevicePlays(Desk& desk) {
  forms::ConfigurationForm& config = desk.Config();
  const std::int64_t remembered = config.txtMixerSelection.WholeNumber();
  const auto listed = static_cast<std::int64_t>(config.DeviceCombo.Rows().size());
  if (remembered < 0 || remembered >= listed) return true;
  if (desk.player.CurrentDevice() != remembered) return false;
  return !config.frameConfigMixer.Visible || config.DeviceCombo.ListIndex == remembered;
}

bool PageListsThePlayersDevices(Desk& desk) {
  const forms::Table& combo = desk.Config().DeviceCombo;
  // Until the deck has loaded that far it lists none.
  if (combo.Rows().empty()) return true;
  const std::vector<std::string> names = desk.player.DeviceNames();
  if (combo.Rows().size() != names.size()) return false;
  for (std::size_t index = 0; index < names.size(); ++index) {
    if (combo.TextAt(static_cast<int>(index), 0) != names[index]) return false;
  }
  return true;
}

}  // namespace tavlo::simulation
