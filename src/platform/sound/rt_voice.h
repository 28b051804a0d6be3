#pragma once

#include <array>
#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <cstdint>
#include <memory>

#include "platform/sound/rt_block.h"
#include "platform/sound/rt_position_map.h"
#include "platform/sound/rt_ramp.h"

namespace tavlo::platform {

/// One of the voices that sound together: a queue of blocks behind a gate. What carries `Rt` in its
/// name is called on the thread that the device asks on, all else on the loop's.
///
/// Nothing that starts, ends or is dropped clicks: each is a ramp, also where the queue runs dry.
class RtVoice {
 public:
  /// Blocks that may be on their way at once, those that were played and not yet taken back
  /// included.
  static constexpr std::size_t kMaxBlocks = 256;

  RtVoice() = default;
  ~RtVoice();
  RtVoice(const RtVoice&) = delete;
  RtVoice& operator=(const RtVoice&) = delete;

  /// Begins a run: all that is queued fades out and is dropped, and only blocks of the new run
  /// sound. Returns its number.
  std::uint64_t BeginRun();
  /// Fades out and plays nothing more until a run begins. What is queued is kept.
  void Hold() { held_.store(true, std::memory_order_release); }
  /// Whether the sound of earlier runs has ended.
  bool Settled() const;

  /// False when kMaxBlocks are on their way; the block is then lost.
  [[nodiscard]] bool Queue(std::unique_ptr<RtBlock> block);
  /// The next block that was played to its end or dropped; null when there is none.
  std::unique_ptr<RtBlock> TakeFreed();
  /// Blocks that were queued and not taken back.
  std::size_t OnTheirWay() const { return onTheirWay_; }

  /// The loudest sample of each ear since the last call.
  std::array<float, 2> TakePeaks();
  /// Frames rendered in all, silence included.
  FrameCount RenderedFrames() const { return rendered_.load(std::memory_order_acquire); }
  /// As RtPositionMap says it.
  double Heard(std::uint64_t run, FrameCount frame) { return map_.Heard(run, frame); }

  /// Adds the next `frames` frames to those of both ears in `out`.
  void RtAdd(float* out, FrameCount frames, int rampFrames);
  /// The gate is shut.
  bool RtSilent() const { return rtGate_.RtLevel() == 0; }

 private:
  void RtAdmit();
  void RtDropFront();
  void RtDropUnheard(std::uint64_t run);
  /// What the loop wants to be heard by now.
  struct RtWish {
    std::uint64_t run;
    bool held;
  };
  RtWish RtReadWish() const;
  /// Nothing of what is queued is to sound now.
  bool RtRests(const RtWish& wish) const {
    return RtFront() == nullptr || (wish.held && RtSilent());
  }
  FrameCount RtPlayChunk(float* out, FrameCount frames, int rampFrames, const RtWish& wish);
  FrameCount RtFramesAhead(FrameCount enough) const;
  void RtMix(float* out, const RtBlock& block, FrameCount frames);
  RtBlock* RtFront() const { return rtCount_ == 0 ? nullptr : rtBlocks_[rtFirst_]; }

  // Shared by both threads.
  using SpscQueue = boost::lockfree::spsc_queue<RtBlock*, boost::lockfree::capacity<kMaxBlocks>>;
  SpscQueue queued_;
  SpscQueue freed_;
  RtPositionMap map_;
  std::atomic<std::uint64_t> wantedRun_{0};
  std::atomic<std::uint64_t> settledRun_{0};
  std::atomic<bool> held_{false};
  std::atomic<FrameCount> rendered_{0};
  std::array<std::atomic<float>, 2> peaks_{};

  // The loop's own.
  std::size_t onTheirWay_ = 0;

  // The rendering thread's own.
  std::array<RtBlock*, kMaxBlocks> rtBlocks_{};
  std::size_t rtFirst_ = 0;
  std::size_t rtCount_ = 0;
  FrameCount rtOffset_ = 0;  ///< Frames of the front block that are rendered.
  FrameCount rtFrame_ = 0;   ///< Frames rendered in all.
  RtRamp rtGate_{0};
};

}  // namespace tavlo::platform
