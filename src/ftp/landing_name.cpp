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

/// A name may be UTF-8, whose control characters of the second row take two bytes.
bool IsControl(std::string_view name, std::size_t at) {
  const auto byte = [&](std::size_t index) { return static_cast<unsigned char>(name[index]); };
  const auto inSecondRow = [&](std::size_t index) {
    return index > 0 && byte(index - 1) == 0xc2 && byte(index) >= 0x80 && byte(index) < 0xa0;
  };
  return byte(at) < 0x20 || byte(at) == 0x7f || inSecondRow(at) ||
         (at + 1 < name.size() && inSecondRow(at + 1));
}

bool HasControls(std::string_view name) {
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (IsControl(name, at)) return true;
  }
  return false;
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

/// Cut at the end of a character, unless the bytes there are of none.
std::string Shortened(const std::string& name) {
  constexpr std::size_t kMostBytesOfACharacter = 4;
  const std::string_view ending = EndingOf(name);
  const std::size_t most = store::kMostBytesOfAName - kRoomForMarks - ending.size();
  std::size_t end = most;
  while (most - end < kMostBytesOfACharacter &&
         (static_cast<unsigned char>(name[end]) & 0xc0) == 0x80) {
    --end;
  }
  return name.substr(0, end) + std::string(ending);
}

}  // namespace

LandingName LandingNameOf(std::string_view serverName) {
  if (serverName.empty()) return {.why = "its name has no character"};
  if (serverName.find_first_of("\r\n") != serverName.npos) {
    return {.why = "its name has a line break in it"};
  }
  if (serverName.find('\0') != serverName.npos) return {.why = "its name has a zero byte in it"};
  LandingName landing{.name = std::string(serverName)};
  if (std::ranges::any_of(serverName, IsSeparator)) {
    landing.why = "its name has a separator in it";
  } else if (serverName.front() == '.') {
    landing.why = "its name begins with a dot";
  } else if (HasControls(serverName)) {
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
  for (std::size_t at = 0; at < serverName.size(); ++at) {
    if (IsSeparator(serverName[at]) || IsControl(serverName, at)) landing.name[at] = '_';
  }
  if (landing.name.size() > store::kMostBytesOfAName) landing.name = Shortened(landing.name);
  return landing;
}

}  // namespace tavlo::ftp
