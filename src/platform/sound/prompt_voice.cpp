#include "platform/sound/prompt_voice.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace tavlo::platform {
namespace {

using playback::SampleArray;
using playback::SampleCount;
using base::operator""ms;

constexpr std::int64_t kLongestMilliseconds = PromptVoice::kLongestSeconds * 1000;

// How often a prompt that was asked for is looked for: most come within the first of these.
constexpr base::Duration kFirstLook = 1ms;
constexpr base::Duration kLongestLook = 20ms;

}  // namespace

/// Written beside the loop until it is done, and read on the loop after that.
struct PromptVoice::Reading {
  std::optional<Clip> clip;
  std::atomic<bool> done = false;
};

PromptVoice::PromptVoice(base::Loop& loop, QueuePlayer& player,
                         std::shared_ptr<playback::AudioFile> decoder, SideWork& reading)
    : loop_(loop),
      player_(player),
      decoder_(std::move(decoder)),
      work_(reading),
      arrival_(loop, "prompt", kFirstLook, base::TimerKind::Feed) {
  arrival_.OnTick = [this] { LookForClip(); };
}

void PromptVoice::SetDeviceType(std::string_view type) { deviceType_ = type; }

void PromptVoice::SetFileName(const std::string& path) { stretch_.path = path; }

void PromptVoice::SetFrom(std::int64_t milliseconds) {
  stretch_.from = std::clamp<std::int64_t>(milliseconds, 0, kLongestMilliseconds);
}

void PromptVoice::SetTo(std::int64_t milliseconds) {
  stretch_.to = std::clamp<std::int64_t>(milliseconds, 0, kLongestMilliseconds);
}

bool PromptVoice::Open() {
  Close();
  open_ = deviceType_ == "WaveAudio";
  stretch_.from = 0;
  stretch_.to = kLongestMilliseconds;
  return open_;
}

bool PromptVoice::Play() {
  if (!open_) return false;
  ForgetReading();
  if (const Clip* const kept = FindKept()) {
    return player_.PlayPrompt(kept->sound, kept->samplesPerSecond);
  }
  Read();
  if (reading_->done) return Sound();
  arrival_.SetInterval(kFirstLook);
  arrival_.Start();
  return true;
}

void PromptVoice::Stop() {
  ForgetReading();
  player_.StopPrompt();
}

void PromptVoice::Close() {
  Stop();
  open_ = false;
}

const PromptVoice::Clip* PromptVoice::FindKept() const {
  const auto found = std::ranges::find(kept_, stretch_, &Clip::stretch);
  return found == kept_.end() ? nullptr : &*found;
}

void PromptVoice::Read() {
  reading_ = std::make_shared<Reading>();
  latest_ = loop_.Now() + kInTime;
  work_.Do([reading = reading_, decoder = decoder_, stretch = stretch_] {
    reading->clip = Decode(*decoder, stretch);
    reading->done = true;
  });
}

void PromptVoice::LookForClip() {
  if (reading_->done) {
    Sound();
  } else if (loop_.Now() >= latest_) {
    ForgetReading();
  } else {
    arrival_.SetInterval(std::min(arrival_.Interval() * 2, kLongestLook));
  }
}

bool PromptVoice::Sound() {
  std::optional<Clip> clip = std::move(reading_->clip);
  ForgetReading();
  if (!clip) return false;
  const bool isShort = clip->stretch.to - clip->stretch.from <= kKeptMilliseconds;
  if (isShort && kept_.size() < kMaxKept) kept_.push_back(*clip);
  return player_.PlayPrompt(std::move(clip->sound), clip->samplesPerSecond);
}

void PromptVoice::ForgetReading() {
  arrival_.Stop();
  reading_.reset();
}

/// Nothing when the file holds none of the stretch.
std::optional<PromptVoice::Clip> PromptVoice::Decode(playback::AudioFile& decoder,
                                                     const Stretch& stretch) {
  if (decoder.OpenFile(stretch.path) != playback::OpenResult::Opened) return std::nullopt;
  const int rate = decoder.SampleRate();
  SampleCount missing = (stretch.to - stretch.from) * rate / 1000;
  decoder.SeekSample(stretch.from * rate / 1000);
  Clip clip{.stretch = stretch, .samplesPerSecond = rate};
  while (missing > 0) {
    const SampleArray block = decoder.ReadArray(missing);
    if (block.values.empty()) break;
    clip.sound.channels = block.channels;
    clip.sound.values.insert(clip.sound.values.end(), block.values.begin(), block.values.end());
    missing -= block.Samples();
  }
  decoder.CloseFile();
  if (clip.sound.values.empty()) return std::nullopt;
  return clip;
}

}  // namespace tavlo::platform
