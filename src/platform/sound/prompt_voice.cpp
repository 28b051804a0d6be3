#include "platform/sound/prompt_voice.h"

#include <algorithm>
#include <utility>

namespace tavlo::platform {
namespace {

using playback::SampleArray;
using playback::SampleCount;

constexpr std::int64_t kLongestMilliseconds = PromptVoice::kLongestSeconds * 1000;

}  // namespace

PromptVoice::PromptVoice(QueuePlayer& player, playback::AudioFile& decoder)
    : player_(player), decoder_(decoder) {}

void PromptVoice::SetDeviceType(std::string_view type) { deviceType_ = type; }

void PromptVoice::SetFileName(const std::string& path) { path_ = path; }

void PromptVoice::SetFrom(std::int64_t milliseconds) {
  from_ = std::clamp<std::int64_t>(milliseconds, 0, kLongestMilliseconds);
}

void PromptVoice::SetTo(std::int64_t milliseconds) {
  to_ = std::clamp<std::int64_t>(milliseconds, 0, kLongestMilliseconds);
}

bool PromptVoice::Open() {
  Close();
  if (deviceType_ != "WaveAudio") return false;
  const auto isOfThisFile = [this](const Clip& clip) { return clip.path == path_; };
  open_ = std::ranges::any_of(kept_, isOfThisFile) || OpenFile();
  from_ = 0;
  to_ = kLongestMilliseconds;
  return open_;
}

bool PromptVoice::Play() {
  if (!open_) return false;
  if (const Clip* const kept = FindKept()) {
    return player_.PlayPrompt(kept->sound, kept->samplesPerSecond);
  }
  std::optional<Clip> clip = Decode();
  if (!clip) return false;
  const bool isShort = to_ - from_ <= kKeptMilliseconds;
  if (isShort && kept_.size() < kMaxKept) kept_.push_back(*clip);
  return player_.PlayPrompt(std::move(clip->sound), clip->samplesPerSecond);
}

void PromptVoice::Stop() { player_.StopPrompt(); }

void PromptVoice::Close() {
  player_.StopPrompt();
  if (decoderOpen_) decoder_.CloseFile();
  decoderOpen_ = false;
  open_ = false;
}

const PromptVoice::Clip* PromptVoice::FindKept() const {
  const auto found = std::ranges::find_if(kept_, [this](const Clip& clip) {
    return clip.path == path_ && clip.from == from_ && clip.to == to_;
  });
  return found == kept_.end() ? nullptr : &*found;
}

bool PromptVoice::OpenFile() {
  decoderOpen_ = decoder_.OpenFile(path_) == playback::OpenResult::Opened;
  return decoderOpen_;
}

/// The stretch between the points, as far as the file holds it. Nothing when it holds none of it.
std::optional<PromptVoice::Clip> PromptVoice::Decode() {
  if (!decoderOpen_ && !OpenFile()) return std::nullopt;
  const int rate = decoder_.SampleRate();
  SampleCount missing = (to_ - from_) * rate / 1000;
  decoder_.SeekSample(from_ * rate / 1000);
  Clip clip{.path = path_, .from = from_, .to = to_, .samplesPerSecond = rate};
  while (missing > 0) {
    const SampleArray block = decoder_.ReadArray(missing);
    if (block.values.empty()) break;
    clip.sound.channels = block.channels;
    clip.sound.values.insert(clip.sound.values.end(), block.values.begin(), block.values.end());
    missing -= block.Samples();
  }
  if (clip.sound.values.empty()) return std::nullopt;
  return clip;
}

}  // namespace tavlo::platform
