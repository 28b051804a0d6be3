#include "platform/sound/soundtouch_transform.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tavlo::platform {
namespace {

using playback::SampleArray;
using playback::Side;

constexpr int kFadeMilliseconds = 8;
/// How far to either side the plain sound is searched for the place that fits the stretched one:
/// the longest period of a deep voice in all.
constexpr int kAlignMilliseconds = 8;
constexpr double kSlowest = 0.5;
constexpr double kFastest = 1.5;

SampleArray Pick(const SampleArray& interleaved, Side side) {
  SampleArray picked = interleaved;
  picked.channels = 1;
  picked.side = side;
  picked.values.clear();
  const auto step = static_cast<std::size_t>(interleaved.channels);
  const std::size_t first = side == Side::Right ? step - 1 : 0;
  for (std::size_t i = first; i < interleaved.values.size(); i += step) {
    picked.values.push_back(interleaved.values[i]);
  }
  return picked;
}

/// The offset in `plain` from which it is most like `sample`; the first of equals.
std::size_t MostAlike(std::span<const float> plain, std::span<const float> sample,
                      std::size_t step) {
  std::size_t best = 0;
  double bestLikeness = -2;
  for (std::size_t at = 0; at + sample.size() <= plain.size(); at += step) {
    double product = 0;
    double energy = 1e-9;
    for (std::size_t i = 0; i < sample.size(); ++i) {
      product += static_cast<double>(plain[at + i]) * static_cast<double>(sample[i]);
      energy += static_cast<double>(plain[at + i]) * static_cast<double>(plain[at + i]);
    }
    const double likeness = product / std::sqrt(energy);
    if (likeness > bestLikeness) {
      bestLikeness = likeness;
      best = at;
    }
  }
  return best;
}

}  // namespace

SoundTouchTransform::SoundTouchTransform() = default;
SoundTouchTransform::~SoundTouchTransform() = default;

void SoundTouchTransform::Reset(int sampleRate) {
  sampleRate_ = std::max(sampleRate, 1);
  stretcher_.reset();
  lag_ = 0;
  before_.clear();
  right_ = {};
}

void SoundTouchTransform::ChangeSpeed(SampleArray& block, float speedPercent) {
  if (block.side == Side::Left) {
    ChangeLeft(block, speedPercent);
  } else if (block.side == Side::Right) {
    block = std::move(right_);
    right_ = {};
  } else {
    ChangeWhole(block, speedPercent);
  }
}

/// Stretches both channels of the pair and keeps the right one until it is asked for.
void SoundTouchTransform::ChangeLeft(SampleArray& left, float speedPercent) {
  SampleArray pair = JoinChannels(left, right_);
  ChangeWhole(pair, speedPercent);
  left = Pick(pair, Side::Left);
  right_ = Pick(pair, Side::Right);
}

void SoundTouchTransform::ChangeWhole(SampleArray& block, float speedPercent) {
  const bool plain = speedPercent == 100.0F;
  const double speed = std::clamp(static_cast<double>(speedPercent) / 100, kSlowest, kFastest);
  const double lagBefore = lag_;
  if (stretcher_ && stretcher_->Channels() != block.channels) {
    stretcher_.reset();
    before_.clear();
  }
  if (!plain) {
    block.values = Stretch(block, speed);
  } else if (stretcher_) {
    block.values = ReturnToPlain(block);
  }
  block.sourceBegin -= lagBefore;
  block.sourceEnd -= lag_;
}

std::vector<float> SoundTouchTransform::Stretch(const SampleArray& block, double speed) {
  if (!stretcher_) stretcher_ = std::make_unique<SpeechStretcher>(sampleRate_, block.channels);
  Remember(block.values, block.channels);
  std::vector<float> out = stretcher_->Process(block.values, speed);
  if (!block.last) {
    lag_ = StretchLag(speed);
    return out;
  }
  const std::vector<float> rest = stretcher_->Finish();
  out.insert(out.end(), rest.begin(), rest.end());
  stretcher_.reset();
  lag_ = 0;
  return out;
}

/// The rest of the stretched sound, a fade, and the block from there on, untouched.
std::vector<float> SoundTouchTransform::ReturnToPlain(const SampleArray& block) {
  const auto channels = static_cast<std::size_t>(block.channels);
  const auto perMillisecond = [&](int length) {
    return static_cast<std::size_t>(sampleRate_ * length / 1000) * channels;
  };
  const std::size_t fade = std::min(perMillisecond(kFadeMilliseconds), block.values.size());
  const auto ending = stretcher_->FinishInto(block.values, static_cast<int>(fade / channels));
  stretcher_.reset();
  lag_ = 0;

  // The plain sound is searched on both sides of the join, so what came before it is needed too.
  std::vector<float> plain = std::move(before_);
  before_.clear();
  plain.insert(plain.end(), block.values.begin(), block.values.end());
  const std::size_t reach =
      plain.size() - block.values.size() + perMillisecond(kAlignMilliseconds) + fade;
  const std::span<const float> searched(plain.data(), std::min(reach, plain.size()));
  const std::size_t fit = MostAlike(searched, ending.beyond, channels);

  std::vector<float> out = ending.rest;
  const auto frames = static_cast<float>(ending.beyond.size() / channels + 1);
  for (std::size_t i = 0; i < ending.beyond.size(); ++i) {
    const float weight = static_cast<float>(i / channels + 1) / frames;
    out.push_back(ending.beyond[i] * (1 - weight) + plain[fit + i] * weight);
  }
  const auto from = plain.begin() + static_cast<std::ptrdiff_t>(fit + ending.beyond.size());
  out.insert(out.end(), from, plain.end());
  return out;
}

void SoundTouchTransform::Remember(std::span<const float> values, int channels) {
  const auto kept = static_cast<std::size_t>(sampleRate_ * kAlignMilliseconds / 1000) *
                    static_cast<std::size_t>(channels);
  before_.insert(before_.end(), values.begin(), values.end());
  if (before_.size() > kept) {
    before_.erase(before_.begin(), before_.end() - static_cast<std::ptrdiff_t>(kept));
  }
}

/// The pieces of the stretch are played at their own speed and jump from one to the next, so that
/// in the middle of a piece the sound is half a piece's gain off the line from begin to end.
double SoundTouchTransform::StretchLag(double speed) const {
  const double piece =
      SpeechStretcher::kSequenceMilliseconds - SpeechStretcher::kOverlapMilliseconds;
  return stretcher_->HeldBack() - (1 - speed) * piece / 2 * sampleRate_ / 1000;
}

SampleArray SoundTouchTransform::SplitLeft(const SampleArray& interleaved) {
  return Pick(interleaved, Side::Left);
}

SampleArray SoundTouchTransform::SplitRight(const SampleArray& interleaved) {
  right_ = Pick(interleaved, Side::Right);
  return right_;
}

SampleArray SoundTouchTransform::JoinChannels(const SampleArray& left, const SampleArray& right) {
  SampleArray joined = left;
  joined.channels = 2;
  joined.side = Side::Whole;
  joined.values.clear();
  const std::size_t frames = std::min(left.values.size(), right.values.size());
  joined.values.reserve(2 * frames);
  for (std::size_t i = 0; i < frames; ++i) {
    joined.values.push_back(left.values[i]);
    joined.values.push_back(right.values[i]);
  }
  return joined;
}

}  // namespace tavlo::platform
