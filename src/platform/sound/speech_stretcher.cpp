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

int SpeechStretcher::RateOfLibrary(int framesPerSecond) {
  const int parts = (framesPerSecond + kMostFramesPerSecond - 1) / kMostFramesPerSecond;
  return framesPerSecond / parts;
}

SpeechStretcher::SpeechStretcher(int framesPerSecond, int channels)
    : library_(std::make_unique<soundtouch::SoundTouch>()),
      framesPerSecond_(framesPerSecond),
      channels_(channels) {
  const int rate = RateOfLibrary(framesPerSecond);
  if (rate != framesPerSecond) {
    toLibrary_ = std::make_unique<StreamResampler>(framesPerSecond, rate, channels);
    fromLibrary_ = std::make_unique<StreamResampler>(rate, framesPerSecond, channels);
  }
  library_->setSampleRate(static_cast<unsigned>(rate));
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
  Push(in);
  const int ready = Ready();
  heldBack_ += static_cast<double>(in.size()) / channels_ - ready * speed_;
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
    Push(push);
  }
  heldBack_ = 0;
  Ending ending;
  ending.rest = Take(rest);
  ending.beyond = Take(overlap);
  return ending;
}

void SpeechStretcher::Push(std::span<const float> in) {
  std::vector<float> slowed;
  if (toLibrary_) in = slowed = toLibrary_->Convert(in);
  const auto channels = static_cast<unsigned>(channels_);
  library_->putSamples(in.data(), static_cast<unsigned>(in.size()) / channels);
  std::vector<float> out(std::size_t{library_->numSamples()} * channels);
  library_->receiveSamples(out.data(), library_->numSamples());
  if (fromLibrary_) out = fromLibrary_->Convert(out);
  ready_.insert(ready_.end(), out.begin(), out.end());
}

std::vector<float> SpeechStretcher::Take(int frames) {
  const auto values = static_cast<std::size_t>(frames) * static_cast<std::size_t>(channels_);
  const auto end = ready_.begin() + static_cast<std::ptrdiff_t>(std::min(values, ready_.size()));
  std::vector<float> out(ready_.begin(), end);
  ready_.erase(ready_.begin(), end);
  return out;
}

}  // namespace tavlo::platform
