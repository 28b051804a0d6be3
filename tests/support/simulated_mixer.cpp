#include "support/simulated_mixer.h"

#include <algorithm>

namespace tavlo::test {
namespace {

const SimulatedSource kNothing{
    .volume = 0, .hasVolume = false, .hasBalance = false, .hasMute = false};

}  // namespace

void SimulatedMixer::SelectDevice(int index, const std::string& name) {
  ++Looks;
  DeviceName = name;
  device_ = index >= 0 && index < static_cast<int>(Devices.size()) ? index : 0;
  listed_ =
      Devices.empty() ? std::vector<SimulatedSource>{} : Devices[static_cast<std::size_t>(device_)];
  selected_ = -1;
}

const SimulatedSource& SimulatedMixer::Selected() const {
  return Exists() ? listed_[static_cast<std::size_t>(selected_)] : kNothing;
}

void SimulatedMixer::SetSourceVolume(int volume) {
  if (Selected().hasVolume) Write(&SimulatedSource::volume, volume, "volume");
}

void SimulatedMixer::SetSourceBalance(int balance) {
  if (Selected().hasBalance) Write(&SimulatedSource::balance, balance, "balance");
}

void SimulatedMixer::SetSourceMute(bool mute) {
  if (Selected().hasMute) Write(&SimulatedSource::mute, mute, "mute");
}

template <typename T>
void SimulatedMixer::Write(T SimulatedSource::*value, T to, const std::string& what) {
  if (!Exists() || Selected().*value == to) return;
  SimulatedSource& listed = listed_[static_cast<std::size_t>(selected_)];
  listed.*value = to;
  Writes.push_back(listed.name + ' ' + what + ' ' + std::to_string(to));
  // Told by the list and meant for the source itself, which may have gone meanwhile.
  for (auto& sources : Devices) {
    const auto source = std::ranges::find(sources, listed.name, &SimulatedSource::name);
    if (source != sources.end()) (*source).*value = to;
  }
}

}  // namespace tavlo::test
