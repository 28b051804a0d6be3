#pragma once

#include <string>
#include <string_view>

namespace tavlo::ftp {

/// Under which name a file of a server lands.
struct LandingName {
  /// Empty when the file is refused.
  std::string name;
  /// Why it is not the server's own name, in words; empty when it is.
  std::string why;
};

/// A name of a server is data and no path: one that would lead out of the landing folder, hide in
/// it or be no name there lands under a harmless one, with its ending kept, which decides where the
/// file goes from there. One with a line break or a NUL can not be asked for and is refused.
LandingName LandingNameOf(std::string_view serverName);

}  // namespace tavlo::ftp
