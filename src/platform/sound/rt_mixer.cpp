#include "platform/sound/rt_mixer.h"

#include <algorithm>
#include <cmath>

namespace tavlo::platform {

RtMixer::~RtMixer() {
  RtAdmit();
  for (std::size_t i = 0; i < rtCount_; ++i) delete rtBlocks_[(rtFirst_ + i) % kMaxBlocks];
  while (TakeFreed()) {
  }
}

void RtMixer::SetRate(int framesPerSecond) {
  rampFrames_ = std::max(1, framesPerSecond * kRampMilliseconds / 1000);
}

std::uint64_t RtMixer::BeginRun() { return wantedRun_.fetch_add(1, std::memory_order_acq_rel) + 1; }

bool RtMixer::Settled() const {
  return settledRun_.load(std::memory_order_acquire) == wantedRun_.load(std::memory_order_relaxed);
}

bool RtMixer::Queue(std::unique_ptr<RtBlock> block) {
  if (onTheirWay_ == kMaxBlocks) return false;
  ++onTheirWay_;
  // The count above keeps the queue from ever being full here.
  queued_.push(block.release());
  return true;
}

std::unique_ptr<RtBlock> RtMixer::TakeFreed() {
  RtBlock* block = nullptr;
  if (!freed_.pop(block)) return nullptr;
  --onTheirWay_;
  return std::unique_ptr<RtBlock>(block);
}

std::array<float, 2> RtMixer::TakePeaks() {
  return {peaks_[0].exchange(0, std::memory_order_relaxed),
          peaks_[1].exchange(0, std::memory_order_relaxed)};
}

double RtMixer::Heard(std::uint64_t run, FrameCount frame) {
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

void RtMixer::RtRender(float* out, FrameCount frames) {
  const std::uint64_t run = wantedRun_.load(std::memory_order_acquire);
  RtAdmit();
  RtAimVolume();
  FrameCount done = 0;
  while (done < frames) {
    RtDropUnheard(run);
    if (RtFront() == nullptr) break;
    done += RtPlayChunk(out + 2 * done, frames - done, run);
  }
  RtDropUnheard(run);
  if (RtFront() == nullptr) RtMarkSilence();
  std::fill(out + 2 * done, out + 2 * frames, 0.0F);
  rtFrame_ += frames - done;
  rendered_.store(rtFrame_, std::memory_order_release);
  if (RtFront() == nullptr || RtFront()->run == run) {
    settledRun_.store(run, std::memory_order_release);
  }
}

void RtMixer::RtAimVolume() {
  const float volume = volume_.load(std::memory_order_relaxed);
  if (rtGate_.RtLevel() == 0) {
    rtVolume_ = RtRamp(volume);
  } else {
    rtVolume_.RtAim(volume, rampFrames_);
  }
}

void RtMixer::RtAdmit() {
  RtBlock* block = nullptr;
  while (rtCount_ < kMaxBlocks && queued_.pop(block)) {
    rtBlocks_[(rtFirst_ + rtCount_++) % kMaxBlocks] = block;
  }
}

void RtMixer::RtDropFront() {
  freed_.push(rtBlocks_[rtFirst_]);
  rtFirst_ = (rtFirst_ + 1) % kMaxBlocks;
  --rtCount_;
  rtOffset_ = 0;
}

/// Drops what stands in front and will not sound: blocks of earlier runs once the gate is shut, and
/// blocks without a frame.
void RtMixer::RtDropUnheard(std::uint64_t run) {
  while (const RtBlock* const front = RtFront()) {
    const bool stale = front->run != run && rtGate_.RtLevel() == 0;
    if (!stale && front->Frames() > 0) return;
    if (stale) RtMarkSilence();
    RtDropFront();
  }
}

/// Renders up to `frames` frames of the front block, as far as one aim of the gate holds, and
/// returns how many.
FrameCount RtMixer::RtPlayChunk(float* out, FrameCount frames, std::uint64_t run) {
  RtBlock& block = *RtFront();
  FrameCount chunk = std::min(frames, block.Frames() - rtOffset_);
  const FrameCount ahead = RtFramesAhead(rampFrames_ + frames);
  if (block.run != run) {
    rtGate_.RtAimWithin(0, static_cast<int>(std::min<FrameCount>(ahead, rampFrames_)));
    chunk = std::min<FrameCount>(chunk, rtGate_.RtFramesLeft());
  } else if (ahead <= rampFrames_) {
    // Nothing is known to follow, so the end must be silent by itself; a block that arrives in time
    // turns the ramp round.
    rtGate_.RtAimWithin(0, static_cast<int>(ahead));
  } else {
    rtGate_.RtAim(1, rampFrames_);
    chunk = std::min(chunk, ahead - rampFrames_);
  }
  if (chunk > 0) {
    if (rtOffset_ == 0 || !rtSounding_) RtMarkSound();
    RtMix(out, block, chunk);
    rtOffset_ += chunk;
    rtFrame_ += chunk;
  }
  if (rtOffset_ == block.Frames()) RtDropFront();
  return chunk;
}

/// Frames of the front block's run that stand in the queue without a break, counted no further than
/// just past `enough`.
FrameCount RtMixer::RtFramesAhead(FrameCount enough) const {
  FrameCount ahead = -rtOffset_;
  for (std::size_t i = 0; i < rtCount_ && ahead <= enough; ++i) {
    const RtBlock& block = *rtBlocks_[(rtFirst_ + i) % kMaxBlocks];
    if (block.run != RtFront()->run) break;
    ahead += block.Frames();
  }
  return ahead;
}

void RtMixer::RtMix(float* out, const RtBlock& block, FrameCount frames) {
  const int right = block.channels - 1;
  const float* in = block.values.data() + rtOffset_ * block.channels;
  std::array<float, 2> peak{};
  for (FrameCount i = 0; i < frames; ++i, in += block.channels, out += 2) {
    const float gate = rtGate_.RtNext();
    const float volume = rtVolume_.RtNext();
    const float left = in[0] * gate;
    const float other = in[right] * gate;
    peak[0] = std::max(peak[0], std::abs(left));
    peak[1] = std::max(peak[1], std::abs(other));
    out[0] = left * volume;
    out[1] = other * volume;
  }
  for (std::size_t ear = 0; ear < peak.size(); ++ear) {
    // A peak that the loop takes at this very moment may be reported twice, which no eye sees.
    if (peak[ear] > peaks_[ear].load(std::memory_order_relaxed)) {
      peaks_[ear].store(peak[ear], std::memory_order_relaxed);
    }
  }
}

void RtMixer::RtMarkSound() {
  const RtBlock& block = *RtFront();
  const double perFrame = (block.heardEnd - block.heardBegin) / static_cast<double>(block.Frames());
  rtLastMark_ = {.frame = rtFrame_,
                 .run = block.run,
                 .heard = block.heardBegin + static_cast<double>(rtOffset_) * perFrame,
                 .perFrame = perFrame};
  rtSounding_ = true;
  marks_.push(rtLastMark_);
}

void RtMixer::RtMarkSilence() {
  if (!rtSounding_) return;
  rtSounding_ = false;
  const double heard =
      rtLastMark_.heard + static_cast<double>(rtFrame_ - rtLastMark_.frame) * rtLastMark_.perFrame;
  rtLastMark_ = {.frame = rtFrame_, .run = rtLastMark_.run, .heard = heard, .perFrame = 0};
  marks_.push(rtLastMark_);
}

}  // namespace tavlo::platform
