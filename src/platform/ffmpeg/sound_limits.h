#pragma once

#include <cstdint>

/// What a file may claim about its sound before it counts as one that cannot be played, and how
/// much of it is decoded for one block.
namespace tavlo::platform {

inline constexpr int kLowestRate = 1'000;     ///< Hz.
inline constexpr int kHighestRate = 384'000;  ///< Hz.
inline constexpr int kMostChannels = 8;       ///< Stored; more than two are folded into two.
inline constexpr std::int64_t kLongestSeconds = 1'000 * 3'600;
inline constexpr std::int64_t kMostSamplesAtOnce = std::int64_t{1} << 22;

inline constexpr bool IsPlayable(int samplesPerSecond, int channels) {
  return samplesPerSecond >= kLowestRate && samplesPerSecond <= kHighestRate && channels >= 1 &&
         channels <= kMostChannels;
}

}  // namespace tavlo::platform
