#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

#include "conversion_code.h"

namespace tavlo::dss {

using conversion::ConversionCode;
using Bytes = std::span<const std::uint8_t>;

/// A file is a row of such blocks: some for its header, all others for the sound.
inline constexpr std::size_t kBlockBytes = 512;
/// As much of a file as `ReadHeader` may want.
inline constexpr std::size_t kMostHeaderBytes = 3 * kBlockBytes;

/// How the sound is coded; the figures are those that stand in the file.
enum class Mode : std::uint8_t {
  StandardPlay = 0,  ///< Frames of 24 ms, 41 bytes each.
  LongPlay = 2,      ///< G.723.1: frames of 30 ms, of 1 to 24 bytes.
};
/// Nothing for any other figure.
std::optional<Mode> ModeFrom(std::uint8_t figure);

struct DssHeader {
  std::size_t bytes = 0;  ///< The sound begins behind so many.
  Mode mode = Mode::StandardPlay;
  std::optional<int> toldSeconds;  ///< The length that the recorder wrote down, if it is one.
};

/// Reads the header from the first bytes of a file: as many as there are, up to `kMostHeaderBytes`.
/// Done, or why the file is not decoded.
ConversionCode ReadHeader(Bytes head, DssHeader& header);

}  // namespace tavlo::dss
