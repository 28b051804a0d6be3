#include "ftp/landing_name.h"

#include <algorithm>

#include "store/file_moves.h"

namespace tavlo::ftp {
namespace {

/// What the sort puts into a name, and a rescue, stays well below this.
constexpr std::size_t kRoomForMarks = 55;
/// An ending that is longer decides nothing.
constexpr std::size_t kLongestEnding = 16;

bool IsSeparator(char character) { return character == '/' || character == '\\'; }

bool IsControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

bool HasDriveLetter(std::string_view name) {
  const auto letter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  return name.size() >= 2 && name[1] == ':' && letter(name[0]);
}

std::string_view EndingOf(std::string_view name) {
  const std::size_t dot = name.rfind('.');
  return dot == name.npos || name.size() - dot > kLongestEnding ? std::string_view()
                                                                : name.substr(dot);
}

/// Cut at the end of a character.
std::string Shortened(const std::string& name) {
  const std::string_view ending = EndingOf(name);
  std::size_t end = store::kMostBytesOfAName - kRoomForMarks - ending.size();
  while (end > 0 && (static_cast<unsigned char>(name[end]) & 0xc0) == 0x80) --end;
  return name.substr(0, end) + std::string(ending);
}

}  // namespace

LandingName LandingNameOf(std::string_view serverName) {
  if (serverName.empty()) return {.why = "it has no character"};
  if (serverName.find_first_of(std::string_view("\r\n\0", 3)) != serverName.npos) {
    return {.why = "its name has a line break in it"};
  }
  LandingName landing{.name = std::string(serverName)};
  if (std::ranges::any_of(serverName, IsSeparator)) {
    landing.why = "its name has a separator in it";
  } else if (serverName.front() == '.') {
    landing.why = "its name begins with a dot";
  } else if (std::ranges::any_of(serverName, IsControl)) {
    landing.why = "its name has a control character in it";
  } else if (HasDriveLetter(serverName)) {
    landing.why = "its name begins with a drive letter";
  } else if (serverName.size() > store::kMostBytesOfAName) {
    landing.why = "its name is too long";
  } else {
    return landing;
  }
  if (HasDriveLetter(landing.name)) landing.name[1] = '_';
  if (landing.name.front() == '.') landing.name.front() = '_';
  std::ranges::replace_if(
      landing.name, [](char c) { return IsSeparator(c) || IsControl(c); }, '_');
  if (landing.name.size() > store::kMostBytesOfAName) landing.name = Shortened(landing.name);
  return landing;
}

}  // namespace tavlo::ftp
