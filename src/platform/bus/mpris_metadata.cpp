#include "platform/bus/mpris_metadata.h"

#include <charconv>

#include "platform/bus/bus_text.h"

namespace tavlo::platform {
namespace {

constexpr std::string_view kTracks = "/invalid/tavlodeck/dictation/";
constexpr const char* kNoTrack = "/org/mpris/MediaPlayer2/TrackList/NoTrack";

int AppendTitle(sd_bus_message& message, const std::string& title) {
  if (title.empty()) return 0;
  return sd_bus_message_append(&message, "{sv}", "xesam:title", "s", ToBusText(title).c_str());
}

int AppendArtist(sd_bus_message& message, const std::string& artist) {
  if (artist.empty()) return 0;
  return sd_bus_message_append(&message, "{sv}", "xesam:artist", "as", 1,
                               ToBusText(artist).c_str());
}

int AppendLength(sd_bus_message& message, remote::Microseconds length) {
  if (length <= 0) return 0;
  return sd_bus_message_append(&message, "{sv}", "mpris:length", "x", length);
}

}  // namespace

std::string TrackPath(std::uint64_t track) {
  return track == 0 ? kNoTrack : std::string(kTracks) + std::to_string(track);
}

std::uint64_t TrackOf(std::string_view path) {
  if (!path.starts_with(kTracks)) return 0;
  const std::string_view digits = path.substr(kTracks.size());
  std::uint64_t track = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), track);
  // Zeros in front, a sign or something behind the digits make another path.
  return TrackPath(track) == path ? track : 0;
}

int AppendMetadata(sd_bus_message& message, const remote::MediaState& state) {
  int taken = sd_bus_message_open_container(&message, 'a', "{sv}");
  if (taken >= 0) {
    taken = sd_bus_message_append(&message, "{sv}", "mpris:trackid", "o",
                                  TrackPath(state.track).c_str());
  }
  if (taken >= 0) taken = AppendLength(message, state.length);
  if (taken >= 0) taken = AppendTitle(message, state.title);
  if (taken >= 0) taken = AppendArtist(message, state.artist);
  return taken < 0 ? taken : sd_bus_message_close_container(&message);
}

}  // namespace tavlo::platform
