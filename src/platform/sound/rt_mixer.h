#pragma once

#include <array>
#include <atomic>
#include <boost/lockfree/spsc_queue.hpp>
#include <cstdint>
#include <deque>
#include <memory>
#include <vector>

#include "platform/sound/rt_ramp.h"

namespace tavlo::platform {

/// Frames of the device: moments of both ears at the device's rate.
using FrameCount = std::int64_t;

/// A block of sound at the device's rate, made on the loop's thread and read on the device's.
struct RtBlock {
  std::vector<float> values;  ///< Interleaved; one channel goes to both ears.
  int channels = 1;
  /// Blocks of another run than the wanted one are faded out and dropped.
  std::uint64_t run = 0;
  /// Document samples of its run that have been heard when the block begins and when it ends.
  double heardBegin = 0;
  double heardEnd = 0;

  FrameCount Frames() const { return static_cast<FrameCount>(values.size()) / channels; }
};

/// Turns queued blocks into the sound of the device: gate, ramps, volume, levels and the map from
/// frames to document samples. It knows no device; whoever owns one calls RtRender from the thread
/// that the device asks on. Everything else is called on the loop's thread, save that the loop may
/// render itself while no device does.
///
/// Nothing that starts, ends, is dropped or changes its volume clicks: each is a ramp of 5 ms, also
/// where the queue runs dry.
class RtMixer {
 public:
  /// Blocks that may be on their way at once, those that were played and not yet taken back
  /// included.
  static constexpr std::size_t kMaxBlocks = 256;
  static constexpr int kRampMilliseconds = 5;

  RtMixer() = default;
  ~RtMixer();
  RtMixer(const RtMixer&) = delete;
  RtMixer& operator=(const RtMixer&) = delete;

  /// Frames a second. Only while no device renders.
  void SetRate(int framesPerSecond);

  /// Begins a run: all that is queued fades out and is dropped, and only blocks of the new run
  /// sound. Returns its number.
  std::uint64_t BeginRun();
  /// Whether the sound of earlier runs has ended.
  bool Settled() const;

  /// False when kMaxBlocks are on their way; the block is then lost.
  [[nodiscard]] bool Queue(std::unique_ptr<RtBlock> block);
  /// The next block that was played to its end or dropped; null when there is none.
  std::unique_ptr<RtBlock> TakeFreed();

  /// Amplitude from 0 to 1.
  void SetVolume(float amplitude) { volume_.store(amplitude, std::memory_order_relaxed); }
  /// The loudest sample of each ear since the last call, before the volume.
  std::array<float, 2> TakePeaks();

  /// Frames rendered in all, silence included.
  FrameCount RenderedFrames() const { return rendered_.load(std::memory_order_acquire); }
  /// Document samples of the run `run` heard once `frame` frames of the device have been heard.
  /// Silence does not count. The frames asked for may not go back by more than a render.
  double Heard(std::uint64_t run, FrameCount frame);

  /// Writes `frames` frames of both ears, interleaved.
  void RtRender(float* out, FrameCount frames);

 private:
  /// From `frame` on the document moves by `perFrame` samples a frame.
  struct RtMark {
    FrameCount frame = 0;
    std::uint64_t run = 0;
    double heard = 0;
    double perFrame = 0;
  };

  void RtAdmit();
  void RtDropFront();
  void RtAimVolume();
  void RtDropUnheard(std::uint64_t run);
  FrameCount RtPlayChunk(float* out, FrameCount frames, std::uint64_t run);
  FrameCount RtFramesAhead(FrameCount enough) const;
  void RtMix(float* out, const RtBlock& block, FrameCount frames);
  void RtMarkSound();
  void RtMarkSilence();
  RtBlock* RtFront() const { return rtCount_ == 0 ? nullptr : rtBlocks_[rtFirst_]; }

  // Shared by both threads.
  template <typename T, std::size_t Size>
  using SpscQueue = boost::lockfree::spsc_queue<T, boost::lockfree::capacity<Size>>;
  SpscQueue<RtBlock*, kMaxBlocks> queued_;
  SpscQueue<RtBlock*, kMaxBlocks> freed_;
  // A block leaves two marks at most (its beginning, and silence where none follows), and a block
  // that is cut short one more.
  SpscQueue<RtMark, kMaxBlocks * 4> marks_;
  std::atomic<std::uint64_t> wantedRun_{0};
  std::atomic<std::uint64_t> settledRun_{0};
  std::atomic<FrameCount> rendered_{0};
  std::atomic<float> volume_{1};
  std::array<std::atomic<float>, 2> peaks_{};

  // The loop's own.
  std::size_t onTheirWay_ = 0;
  std::deque<RtMark> map_;

  // The rendering thread's own.
  std::array<RtBlock*, kMaxBlocks> rtBlocks_{};
  std::size_t rtFirst_ = 0;
  std::size_t rtCount_ = 0;
  FrameCount rtOffset_ = 0;  ///< Frames of the front block that are rendered.
  FrameCount rtFrame_ = 0;   ///< Frames rendered in all.
  bool rtSounding_ = false;  ///< The last mark says that the document moves.
  RtMark rtLastMark_;
  int rampFrames_ = 240;
  RtRamp rtGate_{0};
  RtRamp rtVolume_{1};
};

}  // namespace tavlo::platform
