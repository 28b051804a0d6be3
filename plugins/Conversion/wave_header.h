#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace tavlo::conversion {

/// What a wave holds; one channel always.
struct WaveForm {
  std::uint16_t tag = 1;  ///< 1 is linear samples, 7 is mu-law.
  std::uint32_t samplesPerSecond = 0;
  std::uint16_t bitsPerSample = 16;
};

/// All that stands in front of so many bytes of sound, always of one length for one tag. The
/// samples follow it, and a zero behind them when their number of bytes is odd. Nothing when a wave
/// can not hold so many.
std::optional<std::vector<std::uint8_t>> WaveHeaderBytes(const WaveForm& form,
                                                         std::uint64_t soundBytes);

}  // namespace tavlo::conversion
