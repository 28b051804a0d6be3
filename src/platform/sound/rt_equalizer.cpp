#include "platform/sound/rt_equalizer.h"

#include <algorithm>
#include <cmath>

namespace tavlo::platform {
namespace {

/// A filter's state below this can not be heard, and numbers that small are slow to calculate with.
constexpr float kNothing = 1e-18F;

/// One frame of one ear through a filter, whose factors stand for its damping.
struct Factors {
  explicit Factors(float g, float damping) {
    a1 = 1 / (1 + g * (g + damping));
    a2 = g * a1;
    a3 = g * a2;
  }
  float a1, a2, a3;
};

float FilterSample(float in, const Factors& by, float mix, float& first, float& second) {
  const float v3 = in - second;
  const float v1 = by.a1 * first + by.a2 * v3;
  const float v2 = second + by.a2 * first + by.a3 * v3;
  first = 2 * v1 - first;
  second = 2 * v2 - second;
  return in + mix * v1;
}

}  // namespace

void RtEqualizer::SetRate(int framesPerSecond) {
  rate_ = framesPerSecond;
  rtWalkFrames_ = std::max(1, framesPerSecond * kWalkMilliseconds / 1000);
  rtTailFrames_ = std::max(1, framesPerSecond * kTailMilliseconds / 1000);
  rtLimiter_.SetRate(framesPerSecond);
  RtForget();
  rtTail_ = RtRamp(0);
  SetCurve(curve_);
}

void RtEqualizer::SetCurve(const BandGains& curve) {
  curve_ = curve;
  latest_.Put(DesignEqualizer(curve_, rate_));
}

void RtEqualizer::RtShape(float* inOut, FrameCount frames, bool silent) {
  RtAim(silent);
  if (RtOff()) {
    if (rtHolds_) RtForget();
    rtTail_ = RtRamp(silent ? 0 : 1);
    return;
  }
  rtHolds_ = true;
  for (FrameCount done = 0; done < frames;) {
    auto count = static_cast<int>(std::min<FrameCount>(kChunk, frames - done));
    if (rtWalkLeft_ > 0) count = std::min(count, rtWalkLeft_);
    RtShapeChunk(inOut + 2 * done, count);
    done += count;
  }
  if (RtUnheard()) RtForget();
}

void RtEqualizer::RtAim(bool silent) {
  RtAimFilters();
  const float wet = Enabled() ? 1 : 0;
  // While nothing is heard a change takes effect at once, without a walk.
  if (RtUnheard()) {
    RtArrive();
    rtWet_ = RtRamp(wet);
    rtTail_ = RtRamp(silent ? 0 : 1);
    return;
  }
  rtWet_.RtAim(wet, rtWalkFrames_);
  rtTail_.RtAim(silent ? 0 : 1, rtTailFrames_);
}

void RtEqualizer::RtAimFilters() {
  const EqualizerDesign* const latest = latest_.RtTake();
  if (latest == nullptr) return;
  rtTarget_ = *latest;
  rtWalkLeft_ = rtWalkFrames_;
  const auto frames = static_cast<float>(rtWalkFrames_);
  for (std::size_t i = 0; i < kEqualizerBands; ++i) {
    PeakingFilter& filter = rtBands_[i].filter;
    filter.g = rtTarget_[i].g;
    filter.on = rtTarget_[i].on;
    rtBands_[i].dampingStep = (rtTarget_[i].k - filter.k) / frames;
    rtBands_[i].mixStep = (rtTarget_[i].mix - filter.mix) / frames;
  }
}

void RtEqualizer::RtShapeChunk(float* inOut, int frames) {
  Chunk chunk;
  std::copy(inOut, inOut + 2 * frames, chunk.begin());
  RtNoticeEars(chunk, frames);
  for (Band& band : rtBands_) {
    if (band.filter.on) RtFilter(band, chunk, frames, rtEarsAgree_ ? 1 : 2);
  }
  if (rtEarsAgree_) {
    for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(frames); i += 2)
      chunk[i + 1] = chunk[i];
  }
  if (rtWalkLeft_ > 0) {
    rtWalkLeft_ -= frames;
    if (rtWalkLeft_ == 0) RtArrive();
  }
  for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(frames); i += 2) {
    rtLimiter_.RtLimit(chunk[i], chunk[i + 1]);
    const float wet = rtWet_.RtNext();
    const float shaped = wet * rtTail_.RtNext();
    inOut[i] = inOut[i] * (1 - wet) + chunk[i] * shaped;
    inOut[i + 1] = inOut[i + 1] * (1 - wet) + chunk[i + 1] * shaped;
  }
}

/// Most dictations have one channel. The first frame that tells the ears apart gives the other ear
/// what the one has held so far.
void RtEqualizer::RtNoticeEars(const Chunk& chunk, int frames) {
  if (!rtEarsAgree_) return;
  for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(frames) && rtEarsAgree_; i += 2) {
    rtEarsAgree_ = chunk[i] == chunk[i + 1];
  }
  if (rtEarsAgree_) return;
  for (Band& band : rtBands_) {
    band.first[1] = band.first[0];
    band.second[1] = band.second[0];
  }
}

void RtEqualizer::RtFilter(Band& band, Chunk& chunk, int frames, std::size_t ears) const {
  PeakingFilter& filter = band.filter;
  Factors factors(filter.g, filter.k);
  for (std::size_t i = 0; i < 2 * static_cast<std::size_t>(frames); i += 2) {
    if (rtWalkLeft_ > 0) {
      filter.k += band.dampingStep;
      filter.mix += band.mixStep;
      factors = Factors(filter.g, filter.k);
    }
    for (std::size_t ear = 0; ear < ears; ++ear) {
      float& sample = chunk[i + ear];
      sample = FilterSample(sample, factors, filter.mix, band.first[ear], band.second[ear]);
    }
  }
  for (std::array<float, 2>* const state : {&band.first, &band.second}) {
    for (float& value : *state) {
      if (std::abs(value) < kNothing) value = 0;
    }
  }
}

void RtEqualizer::RtArrive() {
  for (std::size_t i = 0; i < kEqualizerBands; ++i) rtBands_[i].filter = rtTarget_[i];
  rtWalkLeft_ = 0;
}

void RtEqualizer::RtForget() {
  for (Band& band : rtBands_) {
    band.first = {};
    band.second = {};
  }
  rtLimiter_.RtReset();
  rtEarsAgree_ = true;
  rtHolds_ = false;
}

}  // namespace tavlo::platform
