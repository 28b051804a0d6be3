#pragma once

#include <string>

namespace tavlo::test {

/// The root of every simulated deck, and the share that a package put its files into.
inline const std::string kRoot = "/home/typist/Lyrane/TavloDeck";
inline const std::string kShare = "/usr/share/tavlodeck";

}  // namespace tavlo::test
