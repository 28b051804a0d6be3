#include "platform/ffmpeg/ffmpeg_audio_file.h"

#include <algorithm>
#include <new>
#include <utility>

#include "platform/ffmpeg/codec.h"
#include "platform/ffmpeg/sound_limits.h"
#include "platform/ffmpeg/sound_probe.h"

namespace tavlo::platform {

using playback::OpenResult;
using playback::SampleArray;
using playback::SampleCount;

FfmpegAudioFile::FfmpegAudioFile(std::function<void()> breathe, PlainFile::Accepted accepted,
                                 std::shared_ptr<MeasuredFiles> measured)
    : measured_(std::move(measured)), accepted_(accepted) {
  QuietFfmpeg();
  if (!breathe) return;
  file_.OnRead = [this, breathe = std::move(breathe)] {
    if (measuring_) breathe();
  };
}

OpenResult FfmpegAudioFile::OpenFile(const std::string& path) {
  return OpenBy([&] { return OpenAndMeasure(path); }, path);
}

OpenResult FfmpegAudioFile::OpenHeldFile(const store::HeldFile& held) {
  return OpenBy([&] { return MeasureHeld(held); }, held.path);
}

OpenResult FfmpegAudioFile::OpenBy(const std::function<OpenResult()>& open,
                                   const std::string& path) {
  CloseFile();
  openStatus_ = 0;
  OpenResult result = OpenResult::OutOfReach;
  try {
    result = open();
  } catch (const std::bad_alloc&) {
    openStatus_ = kProcessInTrouble;
  }
  if (result == OpenResult::Opened) {
    path_ = path;
  } else {
    CloseFile();
  }
  return result;
}

OpenResult FfmpegAudioFile::OpenAndMeasure(const std::string& path) {
  if (const auto known = measured_->Find(path)) {
    figures_ = *known;
    return OpenResult::Opened;
  }
  const PlainFile::Trouble trouble = file_.Open(path, accepted_);
  if (trouble == PlainFile::Trouble::Process) openStatus_ = kProcessInTrouble;
  return trouble == PlainFile::Trouble::None ? Measure(path) : OpenResult::OutOfReach;
}

OpenResult FfmpegAudioFile::MeasureHeld(const store::HeldFile& held) {
  if (held.opened == store::DiskResult::ProcessInTrouble) openStatus_ = kProcessInTrouble;
  if (held.opened != store::DiskResult::Done) return OpenResult::OutOfReach;
  if (held.measured) return TakeMeasured(*held.measured);
  const FileIdentity identity{held.inode, held.facts.size, held.facts.stamp};
  if (const auto known = measured_->Find(held.path, identity)) {
    figures_ = *known;
    return OpenResult::Opened;
  }
  if (file_.Borrow(held.handle, identity, accepted_) != PlainFile::Trouble::None) {
    return OpenResult::OutOfReach;
  }
  const OpenResult measured = Measure(held.path);
  // The handle goes with the walk, so a decoder would soon read from another file.
  decoder_.reset();
  file_.Close();
  return measured;
}

OpenResult FfmpegAudioFile::TakeMeasured(const store::MeasuredSound& measured) {
  using Outcome = store::MeasuredSound::Outcome;
  if (measured.outcome == Outcome::ProcessInTrouble) openStatus_ = kProcessInTrouble;
  if (measured.outcome == Outcome::Unplayable) return OpenResult::Unplayable;
  if (measured.outcome != Outcome::Opened) return OpenResult::OutOfReach;
  figures_ = {.playable = true,
              .samplesPerSecond = measured.samplesPerSecond,
              .channels = measured.channels,
              .totalSamples = measured.totalSamples};
  return OpenResult::Opened;
}

OpenResult FfmpegAudioFile::Measure(const std::string& path) {
  measuring_ = true;
  SoundProbe probe = ProbeSound(file_, path, Want::Figures);
  measuring_ = false;
  figures_ = probe.figures;
  decoder_ = std::move(probe.decoder);
  whole_ = !file_.HasHole();
  // A file that fails to be read may hold anything, so it is called neither unplayable nor empty.
  const bool sounds = figures_.playable && figures_.totalSamples > 0;
  if (!sounds && !whole_) return OpenResult::OutOfReach;
  if (!figures_.playable) return OpenResult::Unplayable;
  // Neither a refusal nor a part of a file is remembered: the disk may have failed for a moment.
  if (whole_) measured_->Remember(path, file_.Identity(), figures_);
  return OpenResult::Opened;
}

void FfmpegAudioFile::CloseFile() {
  decoder_.reset();
  file_.Close();
  path_.clear();
  measuring_ = false;
  figures_ = {};
  refused_ = false;
  whole_ = true;
  ended_ = false;
  seekFailed_ = false;
  readFailed_ = false;
  position_ = 0;
  decoded_.clear();
}

std::int64_t FfmpegAudioFile::LengthMilliseconds() const {
  if (figures_.samplesPerSecond == 0) return 0;
  return figures_.totalSamples * 1000 / figures_.samplesPerSecond;
}

SampleArray FfmpegAudioFile::ReadArray(SampleCount samples) {
  SampleArray block;
  block.channels = std::max(figures_.channels, 1);
  block.sourceBegin = block.sourceEnd = static_cast<double>(position_);
  readFailed_ = false;
  samples = std::min(samples, kMostSamplesAtOnce);
  if (samples <= 0 || path_.empty()) return block;
  bool complete = false;
  try {
    ReadInto(block, samples);
    complete = whole_ && !refused_ && !seekFailed_ && !file_.HasHole();
  } catch (const std::bad_alloc&) {
    block.values.clear();
  }
  readFailed_ = !complete && block.Samples() < samples;
  position_ += block.Samples();
  block.sourceEnd = static_cast<double>(position_);
  block.last = ended_ && decoded_.empty() && !block.values.empty();
  return block;
}

void FfmpegAudioFile::ReadInto(SampleArray& block, SampleCount samples) {
  if (!HaveDecoder()) return;
  const auto channels = static_cast<std::size_t>(figures_.channels);
  const auto wanted = static_cast<std::size_t>(samples) * channels;
  // One more than is wanted tells whether the block is the last.
  DecodeAhead(wanted + channels);
  const auto end =
      decoded_.begin() + static_cast<std::ptrdiff_t>(std::min(wanted, decoded_.size()));
  block.values.assign(decoded_.begin(), end);
  decoded_.erase(decoded_.begin(), end);
}

SampleCount FfmpegAudioFile::SeekSample(SampleCount target) {
  file_.ForgetHole();
  decoded_.clear();
  ended_ = false;
  seekFailed_ = false;
  position_ = std::clamp<SampleCount>(target, 0, figures_.totalSamples);
  try {
    if (HaveDecoder()) position_ = decoder_->Seek(position_);
  } catch (const std::bad_alloc&) {
    ended_ = true;
    seekFailed_ = true;
  }
  return position_;
}

bool FfmpegAudioFile::HaveDecoder() {
  if (decoder_) return true;
  if (path_.empty() || refused_) return false;
  refused_ = true;
  if (!file_.IsOpen() && file_.Open(path_, accepted_) != PlainFile::Trouble::None) return false;
  SoundProbe probe = ProbeSound(file_, path_, Want::Decoder);
  // The file may have been replaced since it was measured; the player is set to what it was.
  const bool same = probe.figures.samplesPerSecond == figures_.samplesPerSecond &&
                    probe.figures.channels == figures_.channels;
  if (same) decoder_ = std::move(probe.decoder);
  if (probe.figures.totalSamples < figures_.totalSamples) whole_ = false;
  refused_ = !decoder_;
  return !refused_;
}

void FfmpegAudioFile::DecodeAhead(std::size_t values) {
  while (decoded_.size() < values && !ended_) ended_ = !decoder_->Decode(decoded_);
}

}  // namespace tavlo::platform
