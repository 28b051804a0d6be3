#pragma once

#include <systemd/sd-bus.h>

#include <vector>

#include "remote/media_bus.h"

namespace tavlo::platform {

inline constexpr const char* kMprisPath = "/org/mpris/MediaPlayer2";
inline constexpr const char* kMprisRoot = "org.mpris.MediaPlayer2";
inline constexpr const char* kMprisPlayer = "org.mpris.MediaPlayer2.Player";

/// What stands at `kMprisPath`. The tables below take it as the data of their calls: they answer
/// from `state`, ask `source` for nothing but the position, and hand it what others want. Every
/// call is answered before anything of it is done.
struct MprisObject {
  remote::MediaSource& source;
  /// As it was told last.
  remote::MediaState state;
};

const sd_bus_vtable* MprisRootTable();
const sd_bus_vtable* MprisPlayerTable();

/// The properties of `kMprisPlayer` that others see changed. The position is never among them.
std::vector<const char*> ChangedProperties(const remote::MediaState& before,
                                           const remote::MediaState& now);

}  // namespace tavlo::platform
