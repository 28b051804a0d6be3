#include "platform/ffmpeg/ahead_audio_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <new>
#include <system_error>
#include <utility>

#include "platform/ffmpeg/ffmpeg_audio_file.h"

namespace tavlo::platform {

using playback::AudioFile;
using playback::OpenResult;
using playback::SampleArray;
using playback::SampleCount;

namespace {

/// 0 where it cannot be told.
std::uint64_t FileSystemOf(const std::string& path) {
  struct stat facts;
  return ::lstat(path.c_str(), &facts) == 0 ? facts.st_dev : 0;
}

std::uint64_t FileSystemOf(int handle) {
  struct stat facts;
  return ::fstat(handle, &facts) == 0 ? facts.st_dev : 0;
}

}  // namespace

/// What an errand opens. It belongs to the errand until that has returned.
struct AheadAudioFile::Opening {
  OpenResult result = OpenResult::OutOfReach;
  int status = 0;
  std::uint64_t fileSystem = 0;
  bool held = false;  ///< Opened as a walk holds it.
  SoundFigures figures;
  std::int64_t milliseconds = 0;
  std::unique_ptr<AudioFile> file;  ///< Null unless it was opened.

  void Run(std::unique_ptr<AudioFile> opened, const Open& open) {
    result = open(*opened, *this);
    status = opened->OpenStatus();
    if (result != OpenResult::Opened) return;
    figures = {.playable = true,
               .samplesPerSecond = opened->SampleRate(),
               .channels = opened->ChannelCount(),
               .totalSamples = opened->TotalSamples()};
    milliseconds = opened->LengthMilliseconds();
    file = std::move(opened);
  }
};

AheadAudioFile::AheadAudioFile(DescriptorWaits& waits, Errands& errands,
                               std::function<void()> breathe,
                               std::shared_ptr<MeasuredFiles> measured)
    : AheadAudioFile(waits, errands, std::move(breathe), measured,
                     [measured](std::function<void()> sign) {
                       return std::make_unique<FfmpegAudioFile>(std::move(sign),
                                                                PlainFile::Accepted{}, measured);
                     }) {}

AheadAudioFile::AheadAudioFile(DescriptorWaits& waits, Errands& errands,
                               std::function<void()> breathe, NewFile newFile)
    : AheadAudioFile(waits, errands, std::move(breathe), std::make_shared<MeasuredFiles>(),
                     std::move(newFile)) {}

AheadAudioFile::AheadAudioFile(DescriptorWaits& waits, Errands& errands,
                               std::function<void()> breathe,
                               std::shared_ptr<MeasuredFiles> measured, NewFile newFile)
    : errands_(errands),
      breathe_(std::move(breathe)),
      measured_(std::move(measured)),
      newFile_(std::move(newFile)),
      readyWait_(waits.WaitFor(ready_->Descriptor(), "AudioFile", [this] { HandleReady(); })) {}

AheadAudioFile::~AheadAudioFile() = default;

OpenResult AheadAudioFile::OpenFile(const std::string& path) {
  const Open open = [path, stuck = StuckFileSystems()](AudioFile& file, Opening& opening) {
    opening.fileSystem = FileSystemOf(path);
    if (stuck.contains(opening.fileSystem)) return OpenResult::OutOfReach;
    return file.OpenFile(path);
  };
  return OpenBy(path, open);
}

OpenResult AheadAudioFile::OpenHeldFile(const store::HeldFile& held) {
  if (held.measured) return TakeMeasured(held);
  const FileIdentity identity{held.inode, held.facts.size, held.facts.stamp};
  const bool opened = held.opened == store::DiskResult::Done;
  if (!opened || measured_->Find(held.path, identity)) {
    // Nothing is asked of the disk.
    CloseFile();
    Opening opening{.held = true};
    opening.Run(newFile_([] {}),
                [&held](AudioFile& file, Opening&) { return file.OpenHeldFile(held); });
    return Accept(opening);
  }
  return OpenBy(held.path, [held](AudioFile& file, Opening& opening) {
    opening.held = true;
    opening.fileSystem = FileSystemOf(held.handle);
    return file.OpenHeldFile(held);
  });
}

/// A scan asks this of each of its documents and wants no more than a length of them, so as little
/// as can be is done here.
OpenResult AheadAudioFile::TakeMeasured(const store::HeldFile& held) {
  using Outcome = store::MeasuredSound::Outcome;
  CloseFile();
  const store::MeasuredSound& sound = *held.measured;
  if (sound.outcome == Outcome::ProcessInTrouble) openStatus_ = kProcessInTrouble;
  if (sound.outcome == Outcome::Unplayable) return OpenResult::Unplayable;
  if (sound.outcome != Outcome::Opened) return OpenResult::OutOfReach;
  figures_ = {.playable = true,
              .samplesPerSecond = sound.samplesPerSecond,
              .channels = sound.channels,
              .totalSamples = sound.totalSamples};
  milliseconds_ =
      sound.samplesPerSecond > 0 ? sound.totalSamples * 1000 / sound.samplesPerSecond : 0;
  return OpenResult::Opened;
}

OpenResult AheadAudioFile::OpenBy(const std::string& path, const Open& open) {
  CloseFile();
  const std::uint64_t number = openings_;
  const auto opening = std::make_shared<Opening>();
  const auto breathe = [breathe = breathe_, loop = loopThread_] {
    if (std::this_thread::get_id() == loop) breathe();
  };
  const auto work = [opening, open, breathe, newFile = newFile_](Errands::Sign& sign) {
    const auto goesOn = [&sign, &breathe] {
      sign.Give();
      breathe();
    };
    opening->Run(newFile(goesOn), open);
  };
  try {
    if (!errands_.Run(path, work)) return OpenResult::OutOfReach;
    // The end of the session may have closed the file in a breath.
    return number == openings_ ? Accept(*opening) : OpenResult::OutOfReach;
  } catch (const std::bad_alloc&) {
    openStatus_ = kProcessInTrouble;
  } catch (const std::system_error&) {
    // There is no thread or no handle to be had.
    openStatus_ = kProcessInTrouble;
  }
  return OpenResult::OutOfReach;
}

OpenResult AheadAudioFile::Accept(Opening& opening) {
  openStatus_ = opening.status;
  if (opening.result != OpenResult::Opened) return opening.result;
  if (opening.held) {
    parked_ = std::move(opening.file);
    parkedOn_ = opening.fileSystem;
  } else {
    Hand(std::move(opening.file), opening.fileSystem);
  }
  figures_ = opening.figures;
  milliseconds_ = opening.milliseconds;
  return OpenResult::Opened;
}

void AheadAudioFile::CloseFile() {
  ++openings_;
  if (reader_) reader_->Close();
  reader_ = nullptr;
  parked_.reset();
  figures_ = {};
  milliseconds_ = 0;
  openStatus_ = 0;
  readFailed_ = false;
}

SampleArray AheadAudioFile::ReadArray(SampleCount samples) {
  AheadReader* const reader = Reader();
  readFailed_ = !reader && figures_.playable;
  if (!reader) return {};
  SampleArray block = reader->Take(samples);
  readFailed_ = reader->TakeFailed();
  // Where the loop only breathed, nobody was told of the block that has come.
  if (std::exchange(wasLate_, block.late) && !block.late) ready_->Silence();
  return block;
}

SampleCount AheadAudioFile::SeekSample(SampleCount target) {
  target = std::clamp<SampleCount>(target, 0, figures_.totalSamples);
  if (AheadReader* const reader = Reader()) reader->Seek(target);
  return target;
}

AheadReader* AheadAudioFile::Reader() {
  try {
    if (parked_) Hand(std::move(parked_), parkedOn_);
  } catch (const std::system_error&) {
    // The process can have no more threads, so the file cannot be read.
  }
  return reader_;
}

void AheadAudioFile::Hand(std::unique_ptr<AudioFile> file, std::uint64_t fileSystem) {
  std::erase_if(readers_, [fileSystem](const auto& entry) {
    return !entry.second || (entry.first != fileSystem && entry.second->AtRest());
  });
  std::unique_ptr<AheadReader>& reader = readers_[fileSystem];
  if (!reader) reader = std::make_unique<AheadReader>(ready_);
  reader_ = reader.get();
  reader_->Open(std::move(file));
}

std::set<std::uint64_t> AheadAudioFile::StuckFileSystems() const {
  std::set<std::uint64_t> stuck;
  for (const auto& [fileSystem, reader] : readers_) {
    if (reader && reader->InCallFor() >= Errands::kPatience) stuck.insert(fileSystem);
  }
  return stuck;
}

void AheadAudioFile::HandleReady() {
  ready_->Silence();
  if (OnReady) OnReady();
}

}  // namespace tavlo::platform
