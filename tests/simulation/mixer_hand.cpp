#include "simulation/mixer_hand.h"

#include <algorithm>
#include <array>
#include <utility>

#include "simulation/places.h"

namespace tavlo::simulation {
namespace {}  // namespace

MixerHand::MixerHand(Desk& desk, Chance chance, Trace& trace)
    : desk_(desk), chance_(chance), trace_(trace) {}

void MixerHand::Act() {
  static constexpr std::array kHabits{&MixerHand::ChooseDevice, &MixerHand::MoveVolume,
                                      &MixerHand::MoveVolume, &MixerHand::MoveBalance,
                                      &MixerHand::ClickMute};
  (this->*chance_.Pick(kHabits))();
}

void MixerHand::ChooseDevice() {
  forms::Table& devices = desk_.Config().DeviceCombo;
  const int rows = static_cast<int>(devices.Rows().size());
  if (rows == 0) return;
  const int row = chance_.Below(rows);
  Note("chooses device " + std::to_string(row));
  const bool chosen = devices.Reachable();
  Do([&] { devices.RowClick(row); });
  if (!chosen) return;
  if (desk_.player.CurrentDevice() != row) Complain("The chosen device does not play.");
  if (desk_.Config().txtMixerSelection.Value.Get() != std::to_string(row)) {
    Complain("The chosen device is not remembered.");
  }
}

void MixerHand::MoveVolume() {
  const int strip = chance_.Below(forms::kMixerSources);
  forms::Range& slider = desk_.Config().slVolume[static_cast<std::size_t>(strip)];
  const std::string source = Touch(strip);
  const int taken = slider.Value;
  const std::optional<int> left = Drag(slider, strip, [] {});
  const test::SimulatedSource* const now = Find(source);
  if (!left || left == taken || !now) return;
  if (now->volume != kTopVolume - *left) Complain("The volume is not what its slider was set to.");
}

void MixerHand::MoveBalance() {
  const int strip = chance_.Below(forms::kMixerSources);
  forms::Range& slider = desk_.Config().slBalance[static_cast<std::size_t>(strip)];
  const std::string source = Touch(strip);
  Drag(slider, strip, [&] {
    const test::SimulatedSource* const now = Find(source);
    if (now && now->balance != slider.Value) Complain("The balance is not where its slider is.");
  });
}

std::optional<int> MixerHand::Drag(forms::Range& slider, int strip,
                                   const std::function<void()>& onMoved) {
  Note("drags " + slider.Name);
  if (!slider.Reachable()) return {};
  const int deed = ++deeds_;
  const std::string held = Touch(strip);
  const int width = slider.Bounds.maximum - slider.Bounds.minimum + 1;
  Do([&] { slider.Press(); });
  for (int moves = chance_.Below(4); moves > 0; --moves) {
    Touch(strip);
    const int value = slider.Bounds.minimum + chance_.Below(width);
    const bool isNews = slider.Reachable() && value != slider.Value;
    Do([&] { slider.Change(value); });
    if (isNews && deed == deeds_) onMoved();
    const int shown = slider.Value;
    LetTimePass();
    if (deed != deeds_) continue;
    if (slider.Value != shown) Complain("A slider moved away from under the hand.");
    if (Touch(strip) != held) Complain("A strip became another source's under the hand.");
  }
  Touch(strip);
  const int left = slider.Value;
  Do([&] { slider.Release(); });
  return deed == deeds_ ? std::optional(left) : std::nullopt;
}

void MixerHand::LetTimePass() {
  if (chance_.OneIn(3)) desk_.loop.Advance(std::chrono::milliseconds{chance_.Below(1000)});
  if (OnMeanwhile && chance_.OneIn(4)) OnMeanwhile();
}

void MixerHand::ClickMute() {
  const int strip = chance_.Below(forms::kMixerSources);
  forms::Choice& mute = desk_.Config().chMute[static_cast<std::size_t>(strip)];
  const std::string source = Touch(strip);
  Note("clicks " + mute.Name);
  const bool reached = mute.Reachable();
  Do([&] { mute.Click(); });
  const test::SimulatedSource* const now = Find(source);
  if (!reached || !now || !now->hasMute) return;
  if (now->mute != mute.Value) Complain("The source is not as silent as its box says.");
}

MixerHand::Sound MixerHand::SoundNow() const {
  const shell::Rooms* const rooms = desk_.Rooms();
  if (!rooms) return {};
  return {.plays = rooms->engine.IsPlaying,
          .runs = desk_.player.IsRunning(),
          .winds = rooms->transport.WindDirection != playback::Wind::None,
          .position = rooms->documentInWork.CurrentSamplePosition,
          .document = rooms->documentInWork.CurrentDocumentPath};
}

void MixerHand::Do(const std::function<void()>& act) {
  const Sound before = SoundNow();
  act();
  if (SoundNow() != before) Complain("The mixer page touched the document.");
}

std::string MixerHand::Touch(int strip) {
  const std::string name = desk_.Config().Label[static_cast<std::size_t>(strip)].Value;
  if (!name.empty()) touched_.insert(name);
  return name;
}

const test::SimulatedSource* MixerHand::Find(const std::string& name) const {
  for (const auto& sources : desk_.mixer.Devices) {
    const auto source = std::ranges::find(sources, name, &test::SimulatedSource::name);
    if (source != sources.end()) return &*source;
  }
  return nullptr;
}

std::string MixerHand::Disobeyed() {
  for (const std::string& write : desk_.mixer.Writes) {
    const bool wanted = std::ranges::any_of(
        touched_, [&](const std::string& name) { return write.starts_with(name + ' '); });
    if (!wanted) Complain("The source of this write was not touched: " + write);
  }
  desk_.mixer.Writes.clear();
  touched_.clear();
  return std::exchange(wrong_, {});
}

}  // namespace tavlo::simulation
