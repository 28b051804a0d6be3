#include "platform/mixer/pulse_mixer.h"

#include <pulse/proplist.h>
#include <unistd.h>

#include <utility>

namespace tavlo::platform {
namespace {

using std::chrono::milliseconds;

constexpr const char* kProgramName = "Tavlo Deck";
constexpr const char* kTimerName = "SourceMixer";

bool IsWanted(const pa_sink_info&) { return true; }

bool IsWanted(const pa_sink_input_info& stream) {
  const char* const process = pa_proplist_gets(stream.proplist, PA_PROP_APPLICATION_PROCESS_ID);
  return process != nullptr && std::to_string(getpid()) == process;
}

/// What an output plays can be recorded too, which makes it no input.
bool IsWanted(const pa_source_info& input) { return input.monitor_of_sink == PA_INVALID_INDEX; }

}  // namespace

PulseMixer::PulseMixer(base::Loop& loop, DescriptorWaits& waits)
    : retry_(loop, kTimerName, milliseconds(kRetryMilliseconds)),
      gather_(loop, kTimerName, milliseconds(kGatherMilliseconds)),
      mainloop_(loop, waits, [this] { Follow(); }) {
  retry_.OnTick = [this] { Connect(); };
  gather_.OnTick = [this] { AskWhatChanged(); };
  Connect();
}

PulseMixer::~PulseMixer() { Disconnect(); }

void PulseMixer::SelectDevice(int index, const std::string& name) {
  listed_ = world_.SourcesOf(world_.OutputOf(index, name));
  selected_ = -1;
}

std::string PulseMixer::SourceName() const {
  const PulseSource* const source = Selected();
  return source != nullptr ? source->name : "";
}

bool PulseMixer::SourceHasVolume() const {
  const PulseSource* const source = Selected();
  return source != nullptr && source->hasVolume;
}

int PulseMixer::SourceVolume() const {
  const PulseSource* const source = Selected();
  return source != nullptr ? source->Volume() : 0;
}

bool PulseMixer::SourceHasBalance() const {
  const PulseSource* const source = Selected();
  return source != nullptr && source->HasBalance();
}

int PulseMixer::SourceBalance() const {
  const PulseSource* const source = Selected();
  return source != nullptr ? source->balance : PulseSource{}.balance;
}

bool PulseMixer::SourceMute() const {
  const PulseSource* const source = Selected();
  return source != nullptr && source->mute;
}

void PulseMixer::SetSourceVolume(int volume) {
  PulseSource* const source = Selected();
  if (source == nullptr || !source->hasVolume || source->Volume() == volume) return;
  source->SetVolume(volume);
  WriteVolume(*source);
}

void PulseMixer::SetSourceBalance(int balance) {
  PulseSource* const source = Selected();
  if (source == nullptr || !source->HasBalance() || source->balance == balance) return;
  source->SetBalance(balance);
  WriteVolume(*source);
}

void PulseMixer::SetSourceMute(bool mute) {
  PulseSource* const source = Selected();
  if (source == nullptr || source->mute == mute) return;
  source->mute = mute;
  WriteMute(*source);
}

void PulseMixer::Connect() {
  retry_.Stop();
  context_ = pa_context_new(mainloop_.Api(), kProgramName);
  // A server is never started from here: a desktop that has none is meant to be without.
  if (context_ != nullptr &&
      pa_context_connect(context_, nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0) {
    Disconnect();
  }
  if (context_ == nullptr) retry_.Start();
  mainloop_.Wake();
}

void PulseMixer::Disconnect() {
  if (context_ != nullptr) {
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
  }
  context_ = nullptr;
  ready_ = false;
  answersDue_ = 0;
  writesDue_ = 0;
  gather_.Stop();
}

void PulseMixer::Follow() {
  if (context_ != nullptr) FollowConnection();
  if (outOfDate_ && ready_ && !gather_.Enabled()) gather_.Start();
  if (std::exchange(changed_, false) && OnChange) OnChange();
}

void PulseMixer::FollowConnection() {
  const pa_context_state_t state = pa_context_get_state(context_);
  if (!PA_CONTEXT_IS_GOOD(state)) {
    Disconnect();
    Adopt({});
    retry_.Start();
    return;
  }
  if (state != PA_CONTEXT_READY || std::exchange(ready_, true)) return;
  constexpr auto kNews = static_cast<pa_subscription_mask_t>(
      PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SINK_INPUT | PA_SUBSCRIPTION_MASK_SOURCE |
      PA_SUBSCRIPTION_MASK_SERVER);
  pa_context_set_subscribe_callback(context_, OnEvent, this);
  if (pa_operation* const asked = pa_context_subscribe(context_, kNews, nullptr, nullptr)) {
    pa_operation_unref(asked);
  }
  Ask();
}

/// An answer or a write that is still on its way brings the question up again when it is through.
void PulseMixer::AskWhatChanged() {
  gather_.Stop();
  if (answersDue_ == 0 && writesDue_ == 0) Ask();
}

void PulseMixer::Ask() {
  outOfDate_ = false;
  overtaken_ = false;
  arriving_ = {};
  Expect(pa_context_get_server_info(context_, OnServer, this), answersDue_);
  Expect(pa_context_get_sink_info_list(context_, OnListed<pa_sink_info>, this), answersDue_);
  Expect(pa_context_get_sink_input_info_list(context_, OnListed<pa_sink_input_info>, this),
         answersDue_);
  Expect(pa_context_get_source_info_list(context_, OnListed<pa_source_info>, this), answersDue_);
}

void PulseMixer::Expect(pa_operation* operation, int& due) {
  if (operation == nullptr) return;
  pa_operation_unref(operation);
  ++due;
  mainloop_.Wake();
}

void PulseMixer::TakeAnswer() {
  if (--answersDue_ > 0) return;
  if (overtaken_) {
    outOfDate_ = true;
  } else {
    Adopt(std::move(arriving_));
  }
}

void PulseMixer::Adopt(PulseWorld world) {
  world.RememberBalances(world_);
  if (world.IsUnchanged(world_)) return;
  world_ = std::move(world);
  changed_ = true;
}

const PulseSource* PulseMixer::Selected() const {
  const bool exists = selected_ >= 0 && selected_ < SourceCount();
  return exists ? &listed_[static_cast<std::size_t>(selected_)] : nullptr;
}

PulseSource* PulseMixer::Selected() {
  return const_cast<PulseSource*>(std::as_const(*this).Selected());
}

void PulseMixer::WriteVolume(const PulseSource& source) {
  Remember(source);
  if (!ready_) return;
  const pa_cvolume* const volume = &source.volume;
  switch (source.kind) {
    case PulseSource::Kind::Output:
      Expect(pa_context_set_sink_volume_by_index(context_, source.index, volume, OnWritten, this),
             writesDue_);
      break;
    case PulseSource::Kind::Stream:
      Expect(pa_context_set_sink_input_volume(context_, source.index, volume, OnWritten, this),
             writesDue_);
      break;
    case PulseSource::Kind::Input:
      Expect(pa_context_set_source_volume_by_index(context_, source.index, volume, OnWritten, this),
             writesDue_);
      break;
  }
}

void PulseMixer::WriteMute(const PulseSource& source) {
  Remember(source);
  if (!ready_) return;
  const int mute = source.mute ? 1 : 0;
  switch (source.kind) {
    case PulseSource::Kind::Output:
      Expect(pa_context_set_sink_mute_by_index(context_, source.index, mute, OnWritten, this),
             writesDue_);
      break;
    case PulseSource::Kind::Stream:
      Expect(pa_context_set_sink_input_mute(context_, source.index, mute, OnWritten, this),
             writesDue_);
      break;
    case PulseSource::Kind::Input:
      Expect(pa_context_set_source_mute_by_index(context_, source.index, mute, OnWritten, this),
             writesDue_);
      break;
  }
}

void PulseMixer::Remember(const PulseSource& source) {
  overtaken_ = true;
  if (PulseSource* const known = world_.Find(source)) *known = source;
}

template <typename Info>
void PulseMixer::OnListed(pa_context* /*context*/, const Info* info, int end, void* self) {
  auto& mixer = *static_cast<PulseMixer*>(self);
  if (end != 0) {
    mixer.TakeAnswer();
  } else if (IsWanted(*info)) {
    mixer.arriving_.sources.push_back(SourceOf(*info));
  }
}

void PulseMixer::OnServer(pa_context* /*context*/, const pa_server_info* info, void* self) {
  auto& mixer = *static_cast<PulseMixer*>(self);
  if (info != nullptr && info->default_sink_name != nullptr) {
    mixer.arriving_.defaultOutput = info->default_sink_name;
  }
  mixer.TakeAnswer();
}

void PulseMixer::OnEvent(pa_context* /*context*/, pa_subscription_event_type_t /*type*/,
                         std::uint32_t /*index*/, void* self) {
  static_cast<PulseMixer*>(self)->outOfDate_ = true;
}

void PulseMixer::OnWritten(pa_context* /*context*/, int /*success*/, void* self) {
  auto& mixer = *static_cast<PulseMixer*>(self);
  --mixer.writesDue_;
  // A write that the server refused shows as what the source is set to.
  mixer.outOfDate_ = true;
}

}  // namespace tavlo::platform
