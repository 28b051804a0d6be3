#include "platform/mixer/pulse_source.h"

#include <algorithm>
#include <cmath>

namespace tavlo::platform {
namespace {

constexpr int kTopVolume = 65535;
constexpr int kMiddle = 50;

pa_volume_t ToServer(int value) {
  const double share = static_cast<double>(std::clamp(value, 0, kTopVolume)) / kTopVolume;
  return static_cast<pa_volume_t>(std::lround(share * PA_VOLUME_NORM));
}

/// -1 (left) to 1 (right).
float BalanceToServer(int balance) {
  return static_cast<float>(balance - kMiddle) / static_cast<float>(kMiddle);
}

std::string Text(const char* text) { return text != nullptr ? text : ""; }

void TakeBalance(PulseSource& source) {
  if (!source.HasBalance()) return;
  const float balance = pa_cvolume_get_balance(&source.volume, &source.channels);
  source.balance = kMiddle + static_cast<int>(std::lround(balance * kMiddle));
}

/// The plug that is in use tells more than the device: "Headphones", "Line In".
template <typename Info>
std::string NameOfPort(const Info& info, const std::string& otherwise) {
  const bool named = info.active_port != nullptr && info.active_port->description != nullptr;
  return named ? info.active_port->description : otherwise;
}

}  // namespace

int PulseSource::Volume() const {
  const double share = static_cast<double>(pa_cvolume_max(&volume)) / PA_VOLUME_NORM;
  return std::min(static_cast<int>(std::lround(share * kTopVolume)), kTopVolume);
}

void PulseSource::SetVolume(int value) {
  if (!IsSilent()) {
    pa_cvolume_scale(&volume, ToServer(value));
    return;
  }
  pa_cvolume_set(&volume, volume.channels, ToServer(value));
  if (HasBalance()) pa_cvolume_set_balance(&volume, &channels, BalanceToServer(balance));
}

bool PulseSource::HasBalance() const {
  return hasVolume && pa_channel_map_can_balance(&channels) != 0;
}

void PulseSource::SetBalance(int value) {
  balance = std::clamp(value, 0, 2 * kMiddle);
  pa_cvolume_set_balance(&volume, &channels, BalanceToServer(balance));
}

bool PulseSource::IsUnchanged(const PulseSource& other) const {
  return IsSame(other) && card == other.card && description == other.description &&
         name == other.name && isPluggedIn == other.isPluggedIn && hasVolume == other.hasVolume &&
         mute == other.mute && balance == other.balance &&
         pa_cvolume_equal(&volume, &other.volume) != 0;
}

PulseSource SourceOf(const pa_sink_info& sink) {
  PulseSource source{.kind = PulseSource::Kind::Output, .index = sink.index, .card = sink.card};
  source.id = Text(sink.name);
  source.description = sink.description != nullptr ? sink.description : source.id;
  source.name = NameOfPort(sink, "Output");
  source.isPluggedIn =
      sink.active_port == nullptr || sink.active_port->available != PA_PORT_AVAILABLE_NO;
  source.mute = sink.mute != 0;
  source.volume = sink.volume;
  source.channels = sink.channel_map;
  TakeBalance(source);
  return source;
}

PulseSource SourceOf(const pa_sink_input_info& stream) {
  PulseSource source{.kind = PulseSource::Kind::Stream, .index = stream.index};
  source.name = Text(stream.name);
  source.hasVolume = stream.has_volume != 0 && stream.volume_writable != 0;
  source.mute = stream.mute != 0;
  source.volume = stream.volume;
  source.channels = stream.channel_map;
  TakeBalance(source);
  return source;
}

PulseSource SourceOf(const pa_source_info& input) {
  PulseSource source{.kind = PulseSource::Kind::Input, .index = input.index, .card = input.card};
  source.name = NameOfPort(input, input.description != nullptr ? input.description : "Input");
  source.mute = input.mute != 0;
  source.volume = input.volume;
  source.channels = input.channel_map;
  TakeBalance(source);
  return source;
}

std::vector<std::string> PulseWorld::OutputNames() const {
  std::vector<std::string> names;
  for (const PulseSource& source : sources) {
    const bool canPlay = source.kind == PulseSource::Kind::Output && source.isPluggedIn;
    if (canPlay) names.push_back(source.description);
  }
  return names;
}

/// The player finds its device by the name in the list too, and plays on the system's default where
/// that has gone.
const PulseSource* PulseWorld::OutputOf(int deviceIndex, const std::string& deviceName) const {
  const PulseSource* byDefault = nullptr;
  for (const PulseSource& source : sources) {
    if (source.kind != PulseSource::Kind::Output) continue;
    if (deviceIndex > 0 && source.description == deviceName) return &source;
    if (source.id == defaultOutput) byDefault = &source;
  }
  return byDefault;
}

std::vector<PulseSource> PulseWorld::SourcesOf(const PulseSource* output) const {
  std::vector<PulseSource> found;
  if (output == nullptr) return found;
  found.push_back(*output);
  for (const PulseSource& source : sources) {
    if (source.kind == PulseSource::Kind::Stream) found.push_back(source);
  }
  for (const PulseSource& source : sources) {
    const bool ofTheDevice = source.card == output->card;
    if (source.kind == PulseSource::Kind::Input && ofTheDevice) found.push_back(source);
  }
  return found;
}

PulseSource* PulseWorld::Find(const PulseSource& source) {
  const auto found =
      std::ranges::find_if(sources, [&](const PulseSource& each) { return each.IsSame(source); });
  return found == sources.end() ? nullptr : &*found;
}

void PulseWorld::RememberBalances(PulseWorld& before) {
  for (PulseSource& source : sources) {
    const PulseSource* const known = source.IsSilent() ? before.Find(source) : nullptr;
    if (known != nullptr) source.balance = known->balance;
  }
}

bool PulseWorld::IsUnchanged(const PulseWorld& other) const {
  return defaultOutput == other.defaultOutput &&
         std::ranges::equal(sources, other.sources,
                            [](const PulseSource& one, const PulseSource& another) {
                              return one.IsUnchanged(another);
                            });
}

}  // namespace tavlo::platform
