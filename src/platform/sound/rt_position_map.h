#pragma once

#include <boost/lockfree/spsc_queue.hpp>
#include <cstdint>
#include <deque>

#include "platform/sound/rt_block.h"

namespace tavlo::platform {

/// Says which document samples are heard with which frame of the device. Written on the device's
/// thread, asked on the loop's. Silence does not count.
class RtPositionMap {
 public:
  /// Marks that may wait to be read; one that finds no room is lost.
  static constexpr std::size_t kMaxMarks = 1024;

  /// Document samples of the run `run` heard once `frame` frames of the device have been heard.
  /// The frames asked for may not go back by more than a render.
  double Heard(std::uint64_t run, FrameCount frame);

  bool RtSounding() const { return rtSounding_; }
  /// From `frame` on the block sounds, beginning with its frame `offset`.
  void RtMarkSound(FrameCount frame, const RtBlock& block, FrameCount offset);
  /// From `frame` on nothing sounds.
  void RtMarkSilence(FrameCount frame);

 private:
  /// From `frame` on the document moves by `perFrame` samples a frame.
  struct RtMark {
    FrameCount frame = 0;
    std::uint64_t run = 0;
    double heard = 0;
    double perFrame = 0;
  };

  boost::lockfree::spsc_queue<RtMark, boost::lockfree::capacity<kMaxMarks>> marks_;
  std::deque<RtMark> map_;   ///< The loop's own.
  RtMark rtLastMark_;        ///< The rendering thread's own, as is what follows.
  bool rtSounding_ = false;  ///< The last mark says that the document moves.
};

}  // namespace tavlo::platform
