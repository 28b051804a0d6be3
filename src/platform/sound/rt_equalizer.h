#pragma once

#include <array>
#include <atomic>

#include "platform/sound/equalizer_design.h"
#include "platform/sound/rt_latest.h"
#include "platform/sound/rt_limiter.h"
#include "platform/sound/rt_ramp.h"

namespace tavlo::platform {

/// Twelve bands and the limiter behind them, in the document's way to the ear. Off it passes the
/// sound on to the bit and costs nothing. A change of the curve, and of on and off, is a walk of
/// kWalkMilliseconds, so no drag of a slider clicks.
///
/// What carries `Rt` in its name is called on the rendering thread, all else on the loop's.
class RtEqualizer {
 public:
  static constexpr int kWalkMilliseconds = 10;

  RtEqualizer() { SetRate(48000); }

  /// Frames a second. Only while nothing renders.
  void SetRate(int framesPerSecond);
  /// Gains in dB at the centres of the bands.
  void SetCurve(const BandGains& curve);
  void SetEnabled(bool enabled) { enabled_.store(enabled, std::memory_order_relaxed); }
  bool Enabled() const { return enabled_.load(std::memory_order_relaxed); }

  /// Shapes `frames` frames of both ears in place. `silent` says that nothing sounds at their end:
  /// what still rings is then faded out within kTailMilliseconds and forgotten.
  void RtShape(float* inOut, FrameCount frames, bool silent);
  static constexpr int kTailMilliseconds = 5;

 private:
  static constexpr int kChunk = 64;
  using Chunk = std::array<float, 2 * kChunk>;

  struct Band {
    PeakingFilter filter;
    float dampingStep = 0;  ///< By which a walk changes the filter with each frame.
    float mixStep = 0;
    std::array<float, 2> first{};  ///< The filter's two states, of each ear.
    std::array<float, 2> second{};
  };

  void RtAim(bool silent);
  void RtAimFilters();
  bool RtOff() const { return rtWet_.RtSteady() && rtWet_.RtLevel() == 0; }
  /// Nothing of the document sounds, nor anything that it left ringing.
  bool RtUnheard() const { return rtTail_.RtSteady() && rtTail_.RtLevel() == 0; }
  void RtShapeChunk(float* inOut, int frames);
  /// Shapes the first `ears` of both.
  void RtFilter(Band& band, Chunk& chunk, int frames, std::size_t ears) const;
  void RtNoticeEars(const Chunk& chunk, int frames);
  void RtArrive();
  void RtForget();

  std::atomic<bool> enabled_{false};
  RtLatest<EqualizerDesign> latest_;

  // The loop's own.
  BandGains curve_{};
  int rate_ = 0;

  // The rendering thread's own.
  std::array<Band, kEqualizerBands> rtBands_{};
  EqualizerDesign rtTarget_{};
  int rtWalkLeft_ = 0;  ///< Frames until the filters are those of the target.
  int rtWalkFrames_ = 0;
  int rtTailFrames_ = 0;
  RtRamp rtWet_{0};   ///< From the sound as it came to the shaped one.
  RtRamp rtTail_{0};  ///< Of the shaped sound; shut while nothing sounds.
  /// Both ears have heard the same since the filters were empty, so one is reckoned for both.
  bool rtEarsAgree_ = true;
  bool rtHolds_ = false;  ///< Filters or limiter hold something of the sound.
  RtLimiter rtLimiter_;
};

}  // namespace tavlo::platform
