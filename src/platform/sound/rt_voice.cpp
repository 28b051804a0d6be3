#include "platform/sound/rt_voice.h"

#include <algorithm>
#include <cmath>

namespace tavlo::platform {

RtVoice::~RtVoice() {
  RtAdmit();
  for (std::size_t i = 0; i < rtCount_; ++i) delete rtBlocks_[(rtFirst_ + i) % kMaxBlocks];
  while (TakeFreed()) {
  }
}

std::uint64_t RtVoice::BeginRun() {
  const std::uint64_t run = wantedRun_.fetch_add(1, std::memory_order_acq_rel) + 1;
  held_.store(false, std::memory_order_release);
  return run;
}

bool RtVoice::Settled() const {
  return settledRun_.load(std::memory_order_acquire) == wantedRun_.load(std::memory_order_relaxed);
}

bool RtVoice::Queue(std::unique_ptr<RtBlock> block) {
  if (onTheirWay_ == kMaxBlocks) return false;
  ++onTheirWay_;
  // The count above keeps the queue from ever being full here.
  queued_.push(block.release());
  return true;
}

std::unique_ptr<RtBlock> RtVoice::TakeFreed() {
  RtBlock* block = nullptr;
  if (!freed_.pop(block)) return nullptr;
  --onTheirWay_;
  return std::unique_ptr<RtBlock>(block);
}

std::array<float, 2> RtVoice::TakePeaks() {
  return {peaks_[0].exchange(0, std::memory_order_relaxed),
          peaks_[1].exchange(0, std::memory_order_relaxed)};
}

void RtVoice::RtAdd(float* out, FrameCount frames, int rampFrames) {
  // The wish is asked for behind the blocks, so that a block that has just come is never older than
  // the run and taken for one that is to be dropped.
  RtAdmit();
  const RtWish wish = RtReadWish();
  FrameCount done = 0;
  while (done < frames) {
    RtDropUnheard(wish.run);
    if (RtRests(wish)) break;
    done += RtPlayChunk(out + 2 * done, frames - done, rampFrames, wish);
  }
  RtDropUnheard(wish.run);
  if (RtRests(wish)) map_.RtMarkSilence(rtFrame_);
  rtFrame_ += frames - done;
  rendered_.store(rtFrame_, std::memory_order_release);
  if (RtFront() == nullptr || RtFront()->run == wish.run) {
    settledRun_.store(wish.run, std::memory_order_release);
  }
}

RtVoice::RtWish RtVoice::RtReadWish() const {
  // In the other order a run that begins in between would let the one that was held sound on.
  const bool held = held_.load(std::memory_order_acquire);
  return {.run = wantedRun_.load(std::memory_order_acquire), .held = held};
}

void RtVoice::RtAdmit() {
  RtBlock* block = nullptr;
  while (rtCount_ < kMaxBlocks && queued_.pop(block)) {
    rtBlocks_[(rtFirst_ + rtCount_++) % kMaxBlocks] = block;
  }
}

void RtVoice::RtDropFront() {
  freed_.push(rtBlocks_[rtFirst_]);
  rtFirst_ = (rtFirst_ + 1) % kMaxBlocks;
  --rtCount_;
  rtOffset_ = 0;
}

/// Drops what stands in front and will not sound: blocks of earlier runs once the gate is shut, and
/// blocks without a frame.
void RtVoice::RtDropUnheard(std::uint64_t run) {
  while (const RtBlock* const front = RtFront()) {
    const bool stale = front->run != run && rtGate_.RtLevel() == 0;
    if (!stale && front->Frames() > 0) return;
    if (stale) map_.RtMarkSilence(rtFrame_);
    RtDropFront();
  }
}

/// Plays up to `frames` frames of the front block, as far as one aim of the gate holds, and returns
/// how many.
FrameCount RtVoice::RtPlayChunk(float* out, FrameCount frames, int rampFrames, const RtWish& wish) {
  RtBlock& block = *RtFront();
  FrameCount chunk = std::min(frames, block.Frames() - rtOffset_);
  const FrameCount ahead = RtFramesAhead(rampFrames + frames);
  if (block.run != wish.run || wish.held) {
    rtGate_.RtAimWithin(0, static_cast<int>(std::min<FrameCount>(ahead, rampFrames)));
    chunk = std::min<FrameCount>(chunk, rtGate_.RtFramesLeft());
  } else if (ahead <= rampFrames) {
    // Nothing is known to follow, so the end must be silent by itself; a block that arrives in time
    // turns the ramp round.
    rtGate_.RtAimWithin(0, static_cast<int>(ahead));
  } else {
    rtGate_.RtAim(1, rampFrames);
    chunk = std::min(chunk, ahead - rampFrames);
  }
  if (chunk > 0) {
    if (rtOffset_ == 0 || !map_.RtSounding()) map_.RtMarkSound(rtFrame_, block, rtOffset_);
    RtMix(out, block, chunk);
    rtOffset_ += chunk;
    rtFrame_ += chunk;
  }
  if (rtOffset_ == block.Frames()) RtDropFront();
  return chunk;
}

/// Frames of the front block's run that stand in the queue without a break, counted no further than
/// just past `enough`.
FrameCount RtVoice::RtFramesAhead(FrameCount enough) const {
  FrameCount ahead = -rtOffset_;
  for (std::size_t i = 0; i < rtCount_ && ahead <= enough; ++i) {
    const RtBlock& block = *rtBlocks_[(rtFirst_ + i) % kMaxBlocks];
    if (block.run != RtFront()->run) break;
    ahead += block.Frames();
  }
  return ahead;
}

void RtVoice::RtMix(float* out, const RtBlock& block, FrameCount frames) {
  const int right = block.channels - 1;
  const float* in = block.values.data() + rtOffset_ * block.channels;
  std::array<float, 2> peak{};
  for (FrameCount i = 0; i < frames; ++i, in += block.channels, out += 2) {
    const float gate = rtGate_.RtNext();
    const float left = in[0] * gate;
    const float other = in[right] * gate;
    peak[0] = std::max(peak[0], std::abs(left));
    peak[1] = std::max(peak[1], std::abs(other));
    out[0] += left;
    out[1] += other;
  }
  for (std::size_t ear = 0; ear < peak.size(); ++ear) {
    // A peak that the loop takes at this very moment may be reported twice, which no eye sees.
    if (peak[ear] > peaks_[ear].load(std::memory_order_relaxed)) {
      peaks_[ear].store(peak[ear], std::memory_order_relaxed);
    }
  }
}

}  // namespace tavlo::platform
