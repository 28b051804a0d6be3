#include "playback/mixer_page.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tavlo::playback {
namespace {

constexpr int kTopVolume = 65535;

}  // namespace

MixerPage::MixerPage(forms::ConfigurationForm& config, AudioPlayer& player, SourceMixer& mixer)
    : config_(config), player_(player), mixer_(mixer) {
  config_.DeviceCombo.OnSelect = [this] { ChooseDevice(); };
  for (int source = 0; source < forms::kMixerSources; ++source) BindStrip(source);
  mixer_.OnChange = [this] { FollowChange(); };
}

MixerPage::~MixerPage() { mixer_.OnChange = nullptr; }

void MixerPage::ListDevices() {
  forms::Table& combo = config_.DeviceCombo;
  combo.Clear();
  // The bound is one beyond the last device; an index that selects nothing has no mixer.
  for (int index = 0; index <= player_.DeviceCount(); ++index) {
    player_.SelectDevice(index);
    if (player_.DeviceHasMixer()) combo.Add(player_.DeviceName());
  }
  const auto stored = config_.txtMixerSelection.WholeNumber();
  const auto listed = static_cast<std::int64_t>(combo.Rows().size());
  // The stored one may be absent, the one beyond the last among them, and then selects nothing.
  player_.SelectDevice(0);
  player_.SelectDevice(stored >= 0 && stored <= listed ? static_cast<int>(stored) : 0);
}

void MixerPage::SetSrcDevice() {
  held_ = false;
  changedWhileHeld_ = false;
  mixer_.SelectDevice(player_.CurrentDevice(), player_.DeviceName());
  config_.lblNoSource.Visible = mixer_.SourceCount() == 0;
  // Every strip, however few the sources are: what selects nothing empties its strip.
  for (int source = 0; source < forms::kMixerSources; ++source) ShowSource(source);
}

void MixerPage::ComesToFront() {
  config_.DeviceCombo.ListIndex = static_cast<int>(config_.txtMixerSelection.WholeNumber());
  SetSrcDevice();
}

void MixerPage::BindStrip(int source) {
  const auto strip = static_cast<std::size_t>(source);
  forms::Range& volume = config_.slVolume[strip];
  volume.OnPress = [this] { held_ = true; };
  volume.OnRelease = [this, source, &volume] {
    mixer_.SelectSource(source);
    mixer_.SetSourceVolume(kTopVolume - volume.Value);
    LetGo();
  };
  forms::Range& balance = config_.slBalance[strip];
  balance.OnPress = [this] { held_ = true; };
  balance.OnChange = [this, source, &balance] {
    mixer_.SelectSource(source);
    mixer_.SetSourceBalance(balance.Value);
  };
  balance.OnRelease = [this] { LetGo(); };
  forms::Choice& mute = config_.chMute[strip];
  mute.OnClick = [this, source, &mute] {
    mixer_.SelectSource(source);
    mixer_.SetSourceMute(mute.Value);
  };
}

void MixerPage::ChooseDevice() {
  const int index = config_.DeviceCombo.ListIndex;
  // The list is emptied before it is filled, and a stored device may be one that is not in it.
  if (index < 0 || index >= static_cast<int>(config_.DeviceCombo.Rows().size())) return;
  config_.txtMixerSelection.Value = std::to_string(index);
  player_.SelectDevice(index);
  SetSrcDevice();
}

void MixerPage::ShowSource(int source) {
  const auto strip = static_cast<std::size_t>(source);
  mixer_.SelectSource(source);
  const bool exists = source < mixer_.SourceCount();
  config_.Label[strip].Value = mixer_.SourceName();
  const std::string name = exists ? mixer_.SourceName() : "this source";
  forms::Range& volume = config_.slVolume[strip];
  volume.Enabled = mixer_.SourceHasVolume();
  volume.Value = kTopVolume - mixer_.SourceVolume();
  volume.Tooltip = "Volume of " + name;
  forms::Range& balance = config_.slBalance[strip];
  balance.Enabled = mixer_.SourceHasBalance();
  balance.Value = mixer_.SourceBalance();
  balance.Tooltip = "Balance of " + name;
  forms::Choice& mute = config_.chMute[strip];
  mute.Visible = mixer_.SourceHasMute();
  mute.Value = mixer_.SourceMute();
  mute.Tooltip = "Silence " + name;
  // Eight boxes have one caption.
  mute.Heard = "Mute " + name;
  config_.cmdAdvanced[strip].Visible = mixer_.SourceHasAdvanced() >= 0;
  config_.cmdAdvanced[strip].Enabled = false;
  config_.Label[strip].Visible = exists;
  config_.lblBalance[strip].Visible = exists;
  volume.Visible = exists;
  balance.Visible = exists;
}

void MixerPage::LetGo() {
  held_ = false;
  if (changedWhileHeld_) SetSrcDevice();
}

void MixerPage::FollowChange() {
  ListNewDevices();
  if (held_) {
    changedWhileHeld_ = true;
  } else {
    SetSrcDevice();
  }
}

/// A device that is plugged in is listed at once. The one under the stored number was chosen in an
/// earlier run, as far as a number can tell, and plays from now on: so a headset that is plugged in
/// after the start takes the sound off the loudspeakers.
void MixerPage::ListNewDevices() {
  player_.AddDevices(mixer_.DevicesNow());
  const std::vector<std::string> names = player_.DeviceNames();
  forms::Table& combo = config_.DeviceCombo;
  const std::size_t before = combo.Rows().size();
  for (std::size_t index = before; index < names.size(); ++index) combo.Add(names[index]);
  const std::int64_t stored = config_.txtMixerSelection.WholeNumber();
  const bool hasCome = stored >= static_cast<std::int64_t>(before) &&
                       stored < static_cast<std::int64_t>(names.size());
  if (hasCome) player_.SelectDevice(static_cast<int>(stored));
}

}  // namespace tavlo::playback
