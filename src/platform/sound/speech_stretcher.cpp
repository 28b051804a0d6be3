#include "platform/sound/speech_stretcher.h"

#include <SoundTouch.h>

#include <algorithm>
#include <cmath>

namespace tavlo::platform {
namespace {

/// The library works on pieces of this many milliseconds while it is emptied.
constexpr int kPushMilliseconds = 10;
/// Silence that is pushed behind the end at the utmost, far more than the library ever holds.
constexpr int kMostPushes = 50;

}  // namespace

SpeechStretcher::SpeechStretcher(int framesPerSecond, int channels)
    : library_(std::make_unique<soundtouch::SoundTouch>()),
      framesPerSecond_(framesPerSecond),
      channels_(channels) {
  library_->setSampleRate(static_cast<unsigned>(framesPerSecond));
  library_->setChannels(static_cast<unsigned>(channels));
  // The rate is never changed, and without the filter for it the samples pass that stage unchanged.
  library_->setSetting(SETTING_USE_AA_FILTER, 0);
  library_->setSetting(SETTING_USE_QUICKSEEK, 0);
  library_->setSetting(SETTING_SEQUENCE_MS, kSequenceMilliseconds);
  library_->setSetting(SETTING_SEEKWINDOW_MS, kSeekMilliseconds);
  library_->setSetting(SETTING_OVERLAP_MS, kOverlapMilliseconds);
}

SpeechStretcher::~SpeechStretcher() = default;

std::vector<float> SpeechStretcher::Process(std::span<const float> in, double speed) {
  if (speed != speed_) library_->setTempo(speed);
  speed_ = speed;
  const auto frames = static_cast<unsigned>(in.size()) / static_cast<unsigned>(channels_);
  library_->putSamples(in.data(), frames);
  const int ready = Ready();
  heldBack_ += frames - ready * speed_;
  return Take(ready);
}

std::vector<float> SpeechStretcher::Finish() { return FinishInto({}, 0).rest; }

SpeechStretcher::Ending SpeechStretcher::FinishInto(std::span<const float> next, int overlap) {
  const int rest = static_cast<int>(std::lround(std::max(0.0, heldBack_) / speed_));
  const std::size_t piece =
      static_cast<std::size_t>(framesPerSecond_ * kPushMilliseconds / 1000 + 1) *
      static_cast<std::size_t>(channels_);
  std::vector<float> push(piece);
  for (int pushes = 0; Ready() < rest + overlap && pushes < kMostPushes; ++pushes) {
    const std::size_t real = std::min(piece, next.size());
    std::fill(std::copy_n(next.begin(), real, push.begin()), push.end(), 0.0F);
    next = next.subspan(real);
    library_->putSamples(push.data(), static_cast<unsigned>(piece) / channels_);
  }
  heldBack_ = 0;
  Ending ending;
  ending.rest = Take(rest);
  ending.beyond = Take(overlap);
  return ending;
}

std::vector<float> SpeechStretcher::Take(int frames) {
  std::vector<float> out(static_cast<std::size_t>(frames) * static_cast<std::size_t>(channels_));
  const unsigned got = library_->receiveSamples(out.data(), static_cast<unsigned>(frames));
  out.resize(got * static_cast<unsigned>(channels_));
  return out;
}

int SpeechStretcher::Ready() const { return static_cast<int>(library_->numSamples()); }

}  // namespace tavlo::platform
