#pragma once

#include <cstddef>

namespace tavlo::simulation {

// The folders of documents, from the root of a desk.
inline constexpr const char* kInQueue = "/Files/InQueue/";
inline constexpr const char* kCompleted = "/Files/Completed/";
inline constexpr const char* kRescued = "/Files/Rescued/";

/// Where a user keeps files that he drags over the lists.
inline constexpr const char* kDesktop = "/home/typist/Desktop/";
/// A share to which drop folders may be set.
inline constexpr const char* kShareOfDecks = "/mnt/share/";

/// What a file system takes for a file's name.
inline constexpr std::size_t kMostBytesOfAName = 255;

/// A source's volume when its slider stands at the top.
inline constexpr int kTopVolume = 65535;

}  // namespace tavlo::simulation
