#pragma once

#include <cstdint>
#include <vector>

namespace tavlo::platform {

/// Decodes the sound of one open file from its beginning on. Delivers 32-bit floats from -1 to 1,
/// interleaved, one or two channels; a sample is one moment of all channels.
class Decoder {
 public:
  virtual ~Decoder() = default;

  virtual int SamplesPerSecond() const = 0;
  virtual int Channels() const = 0;  ///< 1 or 2.
  virtual std::int64_t TotalSamples() const = 0;

  /// Appends the next samples, at least one and a bounded number of them. False, with nothing
  /// appended, when there are none left.
  virtual bool Decode(std::vector<float>& values) = 0;
  /// Moves the read position to `target`, which lies within the file, or near it; returns the
  /// position that the next samples really have.
  virtual std::int64_t Seek(std::int64_t target) = 0;
};

}  // namespace tavlo::platform
