#include "platform/bus/mpris_interfaces.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <exception>

#include "platform/bus/mpris_metadata.h"

namespace tavlo::platform {
namespace {

using remote::MediaCommand;
using remote::MediaState;
using remote::PlaybackStatus;
using What = MediaCommand::What;

/// No failure may get into the library, which is written in C: the caller hears of one instead.
template <typename Call>
int Guarded(const Call& call) {
  try {
    return call();
  } catch (const std::exception&) {
    return -ENOMEM;
  }
}

MprisObject& Object(void* data) { return *static_cast<MprisObject*>(data); }

// Properties. Each appends its value to an answer or a signal.

template <int (*kAppend)(sd_bus_message*, const MprisObject&)>
int Get(sd_bus*, const char*, const char*, const char*, sd_bus_message* answer, void* data,
        sd_bus_error*) {
  return Guarded([&] { return kAppend(answer, Object(data)); });
}

template <bool kValue>
int AppendAlways(sd_bus_message* answer, const MprisObject&) {
  return sd_bus_message_append(answer, "b", int{kValue});
}

template <bool MediaState::*kPart>
int AppendFlag(sd_bus_message* answer, const MprisObject& object) {
  return sd_bus_message_append(answer, "b", int{object.state.*kPart});
}

template <double MediaState::*kPart>
int AppendNumber(sd_bus_message* answer, const MprisObject& object) {
  return sd_bus_message_append(answer, "d", object.state.*kPart);
}

template <const double& kValue>
int AppendLimit(sd_bus_message* answer, const MprisObject&) {
  return sd_bus_message_append(answer, "d", kValue);
}

int AppendIdentity(sd_bus_message* answer, const MprisObject&) {
  return sd_bus_message_append(answer, "s", "Tavlo Deck");
}

int AppendDesktopEntry(sd_bus_message* answer, const MprisObject&) {
  return sd_bus_message_append(answer, "s", "tavlodeck");
}

int AppendNoTexts(sd_bus_message* answer, const MprisObject&) {
  return sd_bus_message_append(answer, "as", 0);
}

int AppendStatus(sd_bus_message* answer, const MprisObject& object) {
  const char* status = "Stopped";
  if (object.state.status == PlaybackStatus::Playing) status = "Playing";
  if (object.state.status == PlaybackStatus::Paused) status = "Paused";
  return sd_bus_message_append(answer, "s", status);
}

int AppendDocument(sd_bus_message* answer, const MprisObject& object) {
  return AppendMetadata(*answer, object.state);
}

int AppendPosition(sd_bus_message* answer, const MprisObject& object) {
  return sd_bus_message_append(answer, "x", object.source.Position());
}

// Commands. The library has looked at the types before.

int Reply(sd_bus_message* call) { return sd_bus_reply_method_return(call, ""); }

template <What kWhat>
int Command(sd_bus_message* call, void* data, sd_bus_error*) {
  return Guarded([&] {
    Object(data).source.Take({.what = kWhat});
    return Reply(call);
  });
}

int Seek(sd_bus_message* call, void* data, sd_bus_error*) {
  return Guarded([&] {
    std::int64_t offset = 0;
    const int read = sd_bus_message_read(call, "x", &offset);
    if (read < 0) return read;
    Object(data).source.Take({.what = What::Seek, .time = offset});
    return Reply(call);
  });
}

int SetPosition(sd_bus_message* call, void* data, sd_bus_error*) {
  return Guarded([&] {
    const char* path = nullptr;
    std::int64_t position = 0;
    const int read = sd_bus_message_read(call, "ox", &path, &position);
    if (read < 0) return read;
    const std::uint64_t track = TrackOf(path);
    if (track != 0) {
      Object(data).source.Take({.what = What::SetPosition, .time = position, .track = track});
    }
    return Reply(call);
  });
}

int OpenUri(sd_bus_message*, void*, sd_bus_error* error) {
  return sd_bus_error_set_const(error, SD_BUS_ERROR_NOT_SUPPORTED,
                                "Documents are opened from the lists of Tavlo Deck");
}

template <What kWhat>
int SetNumber(sd_bus*, const char*, const char*, const char*, sd_bus_message* value, void* data,
              sd_bus_error*) {
  return Guarded([&] {
    double number = 0;
    const int read = sd_bus_message_read(value, "d", &number);
    if (read < 0) return read;
    // Playing at no speed at all is how the interface asks for a pause.
    const bool pauses = kWhat == What::SetRate && number == 0;
    Object(data).source.Take({.what = pauses ? What::Pause : kWhat, .number = number});
    return 1;
  });
}

constexpr std::uint64_t kConstant = SD_BUS_VTABLE_PROPERTY_CONST;
constexpr std::uint64_t kTold = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
constexpr std::uint64_t kAskedFor = 0;  ///< Whoever wants to know must ask.

const sd_bus_vtable kRootTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Raise", "", "", Command<What::Raise>, 0),
    SD_BUS_METHOD("Quit", "", "", Command<What::Quit>, 0),
    SD_BUS_PROPERTY("CanQuit", "b", Get<AppendAlways<true>>, 0, kConstant),
    SD_BUS_PROPERTY("CanRaise", "b", Get<AppendAlways<true>>, 0, kConstant),
    SD_BUS_PROPERTY("HasTrackList", "b", Get<AppendAlways<false>>, 0, kConstant),
    SD_BUS_PROPERTY("Identity", "s", Get<AppendIdentity>, 0, kConstant),
    SD_BUS_PROPERTY("DesktopEntry", "s", Get<AppendDesktopEntry>, 0, kConstant),
    SD_BUS_PROPERTY("SupportedUriSchemes", "as", Get<AppendNoTexts>, 0, kConstant),
    SD_BUS_PROPERTY("SupportedMimeTypes", "as", Get<AppendNoTexts>, 0, kConstant),
    SD_BUS_VTABLE_END,
};

const sd_bus_vtable kPlayerTable[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("Next", "", "", Command<What::Next>, 0),
    SD_BUS_METHOD("Previous", "", "", Command<What::Previous>, 0),
    SD_BUS_METHOD("Pause", "", "", Command<What::Pause>, 0),
    SD_BUS_METHOD("PlayPause", "", "", Command<What::PlayPause>, 0),
    SD_BUS_METHOD("Stop", "", "", Command<What::Stop>, 0),
    SD_BUS_METHOD("Play", "", "", Command<What::Play>, 0),
    SD_BUS_METHOD_WITH_NAMES("Seek", "x", SD_BUS_PARAM(Offset), "", , Seek, 0),
    SD_BUS_METHOD_WITH_NAMES("SetPosition", "ox", SD_BUS_PARAM(TrackId) SD_BUS_PARAM(Position), "",
                             , SetPosition, 0),
    SD_BUS_METHOD_WITH_NAMES("OpenUri", "s", SD_BUS_PARAM(Uri), "", , OpenUri, 0),
    SD_BUS_SIGNAL_WITH_NAMES("Seeked", "x", SD_BUS_PARAM(Position), 0),
    SD_BUS_PROPERTY("PlaybackStatus", "s", Get<AppendStatus>, 0, kTold),
    SD_BUS_WRITABLE_PROPERTY("Rate", "d", Get<AppendNumber<&MediaState::rate>>,
                             SetNumber<What::SetRate>, 0, kTold),
    SD_BUS_PROPERTY("Metadata", "a{sv}", Get<AppendDocument>, 0, kTold),
    SD_BUS_WRITABLE_PROPERTY("Volume", "d", Get<AppendNumber<&MediaState::volume>>,
                             SetNumber<What::SetVolume>, 0, kTold),
    SD_BUS_PROPERTY("Position", "x", Get<AppendPosition>, 0, kAskedFor),
    SD_BUS_PROPERTY("MinimumRate", "d", Get<AppendLimit<remote::kSlowestRate>>, 0, kConstant),
    SD_BUS_PROPERTY("MaximumRate", "d", Get<AppendLimit<remote::kFastestRate>>, 0, kConstant),
    SD_BUS_PROPERTY("CanGoNext", "b", Get<AppendFlag<&MediaState::canGoNext>>, 0, kTold),
    SD_BUS_PROPERTY("CanGoPrevious", "b", Get<AppendFlag<&MediaState::canGoPrevious>>, 0, kTold),
    SD_BUS_PROPERTY("CanPlay", "b", Get<AppendFlag<&MediaState::canPlay>>, 0, kTold),
    SD_BUS_PROPERTY("CanPause", "b", Get<AppendFlag<&MediaState::canPause>>, 0, kTold),
    SD_BUS_PROPERTY("CanSeek", "b", Get<AppendFlag<&MediaState::canSeek>>, 0, kTold),
    SD_BUS_PROPERTY("CanControl", "b", Get<AppendAlways<true>>, 0, kConstant),
    SD_BUS_VTABLE_END,
};

template <auto... kParts>
bool Differs(const MediaState& before, const MediaState& now) {
  return ((before.*kParts != now.*kParts) || ...);
}

struct ToldProperty {
  const char* name;
  bool (*differs)(const MediaState& before, const MediaState& now);
};

constexpr std::array kToldProperties{
    ToldProperty{"PlaybackStatus", Differs<&MediaState::status>},
    ToldProperty{"Rate", Differs<&MediaState::rate>},
    ToldProperty{
        "Metadata",
        Differs<&MediaState::track, &MediaState::title, &MediaState::artist, &MediaState::length>},
    ToldProperty{"Volume", Differs<&MediaState::volume>},
    ToldProperty{"CanGoNext", Differs<&MediaState::canGoNext>},
    ToldProperty{"CanGoPrevious", Differs<&MediaState::canGoPrevious>},
    ToldProperty{"CanPlay", Differs<&MediaState::canPlay>},
    ToldProperty{"CanPause", Differs<&MediaState::canPause>},
    ToldProperty{"CanSeek", Differs<&MediaState::canSeek>},
};

}  // namespace

const sd_bus_vtable* MprisRootTable() { return kRootTable; }

const sd_bus_vtable* MprisPlayerTable() { return kPlayerTable; }

std::vector<const char*> ChangedProperties(const MediaState& before, const MediaState& now) {
  std::vector<const char*> names;
  for (const ToldProperty& property : kToldProperties) {
    if (property.differs(before, now)) names.push_back(property.name);
  }
  return names;
}

}  // namespace tavlo::platform
