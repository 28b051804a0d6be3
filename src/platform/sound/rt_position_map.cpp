#include "platform/sound/rt_position_map.h"

#include <algorithm>

namespace tavlo::platform {

double RtPositionMap::Heard(std::uint64_t run, FrameCount frame) {
  RtMark mark;
  while (marks_.pop(mark)) map_.push_back(mark);
  while (map_.size() > 1 && map_.front().run < run) map_.pop_front();
  while (map_.size() > 1 && map_[1].frame <= frame && map_[1].run == run) map_.pop_front();
  if (map_.empty() || map_.front().run != run) return 0;
  const RtMark& now = map_.front();
  // The next mark bounds the walk: where a run was cut off, it went no further.
  const FrameCount end = map_.size() > 1 ? std::min(frame, map_[1].frame) : frame;
  return now.heard + static_cast<double>(std::max<FrameCount>(0, end - now.frame)) * now.perFrame;
}

void RtPositionMap::RtMarkSound(FrameCount frame, const RtBlock& block, FrameCount offset) {
  const double perFrame = (block.heardEnd - block.heardBegin) / static_cast<double>(block.Frames());
  rtLastMark_ = {.frame = frame,
                 .run = block.run,
                 .heard = block.heardBegin + static_cast<double>(offset) * perFrame,
                 .perFrame = perFrame};
  rtSounding_ = true;
  marks_.push(rtLastMark_);
}

void RtPositionMap::RtMarkSilence(FrameCount frame) {
  if (!rtSounding_) return;
  rtSounding_ = false;
  const double heard =
      rtLastMark_.heard + static_cast<double>(frame - rtLastMark_.frame) * rtLastMark_.perFrame;
  rtLastMark_ = {.frame = frame, .run = rtLastMark_.run, .heard = heard, .perFrame = 0};
  marks_.push(rtLastMark_);
}

}  // namespace tavlo::platform
