#include <array>
#include <limits>

#include "simulation/world.h"

namespace tavlo::simulation {
namespace {

constexpr std::array kVolumes{0, 1, 20'000, 65'534, 65'535};
constexpr std::array kBalances{0, 50, 99, 100};
constexpr int kMostDevices = 4;
/// More than the page has strips for.
constexpr std::size_t kMostSources = 11;

}  // namespace

void World::BreakSound() {
  const int kind = chance_.Below(5);
  if (kind == 0) desk_.soundDevices = 0;
  if (kind == 1) desk_.player.TakesFormat = false;
  if (kind == 2) desk_.player.StatusAfterStart = -1;
  if (kind == 3) desk_.file.InTrouble = true;
  if (kind == 4) desk_.player.Connected = false;
}

void World::MendSound() {
  desk_.soundDevices = 1 + chance_.Below(3);
  desk_.player.TakesFormat = true;
  desk_.player.StatusAfterStart = 0;
  desk_.player.Connected = true;
  desk_.file.InTrouble = false;
  MendReading();
}

void World::BreakReading() {
  test::SimulatedSound* const open = desk_.file.Open();
  const std::string contents = desk_.disk.Contents(desk_.hearing.Path());
  if (!open || !Recording::Of(contents)) return;
  open->readable = chance_.Below(static_cast<int>(open->samples) + 1);
  desk_.file.Readable[contents] = open->readable;
}

void World::MendReading() {
  desk_.file.Readable.clear();
  desk_.file.ReadThrows = false;
  desk_.transform.Throws = false;
  desk_.player.QueueThrows = false;
  if (test::SimulatedSound* const open = desk_.file.Open()) {
    open->readable = std::numeric_limits<playback::SampleCount>::max();
  }
}

void World::LoseBlock() {
  const int kind = chance_.Below(3);
  if (kind == 0) desk_.file.ReadThrows = true;
  if (kind == 1) desk_.transform.Throws = true;
  if (kind == 2) desk_.player.QueueThrows = true;
}

void World::CutOff() {
  const std::string path = desk_.hearing.Path();
  const std::string before = desk_.disk.Contents(path);
  auto cut = Recording::Of(before);
  const bool alone = Ledger::FilesOf(desk_.disk, before).size() == 1;
  if (!cut || !alone || !ledger_.Knows(before) || desk_.file.Barred.contains(before)) return;
  cut->number = ledger_.NewNumber();
  cut->samples = chance_.Below(static_cast<int>(cut->samples) + 1);
  desk_.disk.Write(path, cut->Contents());
  ledger_.Becomes(before, cut->Contents());
  if (test::SimulatedSound* const open = desk_.file.Open()) open->readable = cut->samples;
}

test::SimulatedSource* World::SomeSource() {
  if (desk_.mixer.Devices.empty()) return nullptr;
  auto& sources = desk_.mixer.Devices[static_cast<std::size_t>(
      chance_.Below(static_cast<int>(desk_.mixer.Devices.size())))];
  if (sources.empty()) return nullptr;
  return &sources[static_cast<std::size_t>(chance_.Below(static_cast<int>(sources.size())))];
}

void World::TurnSource() {
  test::SimulatedSource* const source = SomeSource();
  if (!source) return;
  source->volume = chance_.Pick(kVolumes);
  source->balance = chance_.Pick(kBalances);
  source->mute = chance_.OneIn(2);
  MixerChanged();
}

void World::AddSource() {
  if (desk_.mixer.Devices.empty()) return;
  auto& sources = desk_.mixer.Devices[static_cast<std::size_t>(
      chance_.Below(static_cast<int>(desk_.mixer.Devices.size())))];
  if (sources.size() >= kMostSources) return;
  const auto place = sources.begin() + chance_.Below(static_cast<int>(sources.size()) + 1);
  sources.insert(place, {.name = "Source " + std::to_string(++sourcesSoFar_),
                         .volume = chance_.Pick(kVolumes),
                         .balance = chance_.Pick(kBalances),
                         .mute = chance_.OneIn(3),
                         .hasVolume = !chance_.OneIn(5),
                         .hasBalance = !chance_.OneIn(5),
                         .hasMute = !chance_.OneIn(5),
                         .advanced = chance_.Below(2) - 1});
  MixerChanged();
}

void World::RemoveSource() {
  const test::SimulatedSource* const gone = SomeSource();
  if (!gone) return;
  const std::string name = gone->name;
  for (auto& sources : desk_.mixer.Devices) {
    std::erase_if(sources, [&](const auto& source) { return source.name == name; });
  }
  MixerChanged();
}

void World::PlugDevice() {
  if (desk_.mixer.Devices.size() >= kMostDevices) return;
  desk_.mixer.Devices.push_back({{.name = "Output " + std::to_string(++sourcesSoFar_)}});
  desk_.mixer.Plugged.push_back("Plugged " + std::to_string(sourcesSoFar_));
  MixerChanged();
}

void World::PullDevice() {
  if (chance_.OneIn(4)) {
    // The sound server ends, and with it all that it showed.
    desk_.mixer.Devices.clear();
    desk_.mixer.Plugged.clear();
  } else if (!desk_.mixer.Devices.empty()) {
    desk_.mixer.Devices.pop_back();
    if (!desk_.mixer.Plugged.empty()) desk_.mixer.Plugged.pop_back();
  }
  MixerChanged();
}

void World::MixerChanged() {
  desk_.mixerNewsDue = true;
  if (chance_.OneIn(2)) TellMixer();
}

void World::TellMixer() {
  desk_.mixerNewsDue = false;
  desk_.mixer.TellChange();
}

}  // namespace tavlo::simulation
