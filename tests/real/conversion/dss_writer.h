#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "dss_header.h"

namespace tavlo::test {

/// Writes DSS recordings as a recorder does: a header, then blocks whose frames run on from one
/// into the next until somebody pauses.
class DssWriter {
 public:
  explicit DssWriter(dss::Mode mode) : mode_(mode) {}

  /// Frames in the order of their bytes; each must be as long as its mode asks.
  void Append(const std::vector<std::string>& frames);
  /// The next frame begins in a block of its own; what is left of the current one is filled.
  void Pause();
  /// The next frames are of another mode.
  void ChangeMode(dss::Mode mode);

  /// The whole file so far, whose header tells this length in seconds.
  std::string File(int toldSeconds) const;

  /// The header alone, with this number of blocks.
  static std::string Header(dss::Mode mode, int toldSeconds, int blocks = 2);

 private:
  struct Block {
    dss::Mode mode;
    std::size_t begin = 6;
    int frames = 0;
    std::string bytes = std::string(6, '\0');
    bool hasBegin = false;
  };

  void AppendFrame(const std::string& frame);

  dss::Mode mode_;
  std::vector<Block> blocks_;
  bool fresh_ = true;
};

/// Frames of long play that FFmpeg's encoder makes of samples at 8000 Hz.
std::vector<std::string> LongPlayFrames(const std::vector<std::int16_t>& samples);
/// Frames of standard play with bits from a seed: there is no encoder, and any bits are a sound.
std::vector<std::string> StandardPlayFrames(int count, unsigned seed);

/// What FFmpeg's decoder makes of the frames, at the native rate of the mode.
std::vector<std::int16_t> DecodedFrames(dss::Mode mode, const std::vector<std::string>& frames);

}  // namespace tavlo::test
