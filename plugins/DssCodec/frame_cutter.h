#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "dss_header.h"

namespace tavlo::dss {

inline constexpr std::size_t kBlockHeaderBytes = 6;
inline constexpr std::size_t kMostFrameBytes = 41;

/// One frame of speech, its bytes in the order in which they were coded.
struct Frame {
  Mode mode = Mode::StandardPlay;
  std::size_t size = 0;
  std::array<std::uint8_t, kMostFrameBytes> bytes{};
};

/// Cuts the blocks of a recording into frames. Each block says where in it the first frame begins
/// that is its own, and how many frames are. A frame may go on in the next block. Where a recorder
/// paused, or a recording was edited, it does not: the beginning of a frame without its end, what
/// fills the rest of the block, and the end of a frame without its beginning are left out.
class FrameCutter {
 public:
  /// `mode` is what the file's header says: the first block must say the same.
  explicit FrameCutter(Mode mode) : expected_(mode) {}

  /// Appends the frames that are certain now: those of the block before. A block that ends early is
  /// the last one of a file that was cut off. Done, Damaged, CutOff or UnknownCoding.
  ConversionCode Take(Bytes block, std::vector<Frame>& frames);
  /// Appends what the last block still holds.
  void End(std::vector<Frame>& frames);

  /// Whether a block reads as one of sound.
  static bool IsSound(Bytes block) {
    Block ignored;
    return FrameCutter().Read(block, ignored) == ConversionCode::Done;
  }

  /// How often a frame was left out because its other part is not there.
  int LostFrames() const { return lostFrames_; }

 private:
  struct Block {
    Mode mode = Mode::StandardPlay;
    std::size_t frameCount = 0;
    std::size_t begin = 0;  ///< Where the first frame of its own begins.
    std::vector<std::uint8_t> bytes;

    Bytes Continuation() const;
  };

  FrameCutter() = default;
  ConversionCode Read(Bytes raw, Block& block) const;
  /// Cuts the block that is held, now that the one behind it is known.
  void Cut(const Block* next, std::vector<Frame>& frames);

  std::optional<Mode> expected_;
  std::optional<Block> held_;
  int lostFrames_ = 0;
};

}  // namespace tavlo::dss
