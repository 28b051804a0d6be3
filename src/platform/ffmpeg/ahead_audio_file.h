#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <thread>

#include "platform/ffmpeg/ahead_reader.h"
#include "platform/ffmpeg/measured_files.h"
#include "platform/reach/errands.h"
#include "platform/wake/descriptor_waits.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// The file of the document that plays or is previewed. It is opened and measured by an errand, and
/// read and decoded ahead by a thread of its own, so no call here waits for a disk that gives no
/// answer: an opening is then out of reach, and a block is late. Used on the loop's thread.
///
/// A reader that is stuck is left behind with what it owns. Each file system has at most one: other
/// documents of the same one wait behind it, and are out of reach once it has been stuck for as
/// long as an errand may be.
///
/// Errands are told apart by mount, since the kernel's list tells that of a path before anything is
/// asked there. A reader goes by the device number of its file, which the errand that opened it has
/// asked for: mounts of one file system stall together, and need no second thread.
class AheadAudioFile : public playback::AudioFile {
 public:
  /// Makes a file that is read where it is called, on one thread at a time. `sign` is called again
  /// and again while it is being opened, and never later.
  using NewFile = std::function<std::unique_ptr<playback::AudioFile>(std::function<void()> sign)>;

  /// Plays what FfmpegAudioFile plays, and measures nothing that `measured` remembers. An opening
  /// on the loop's thread calls `breathe` again and again. Both references must outlive the file.
  AheadAudioFile(DescriptorWaits& waits, Errands& errands, std::function<void()> breathe,
                 std::shared_ptr<MeasuredFiles> measured = std::make_shared<MeasuredFiles>());
  AheadAudioFile(DescriptorWaits& waits, Errands& errands, std::function<void()> breathe,
                 NewFile newFile);
  ~AheadAudioFile() override;

  [[nodiscard]] playback::OpenResult OpenFile(const std::string& path) override;
  /// The walk must keep its handle until work that was left behind on it has returned.
  [[nodiscard]] playback::OpenResult OpenHeldFile(const store::HeldFile& held) override;
  void CloseFile() override;
  int OpenStatus() const override { return openStatus_; }

  playback::SampleCount TotalSamples() const override { return figures_.totalSamples; }
  std::int64_t LengthMilliseconds() const override { return milliseconds_; }
  int ChannelCount() const override { return figures_.channels; }
  int SampleRate() const override { return figures_.samplesPerSecond; }

  /// Waits for AheadReader::kMoment at most, and only for the first block behind a seek.
  playback::SampleArray ReadArray(playback::SampleCount samples) override;
  bool ReadFailed() const override { return readFailed_; }
  /// Waits for nothing: the target, cut to the file.
  playback::SampleCount SeekSample(playback::SampleCount target) override;

  /// Threads that read or wait to read.
  std::size_t Readers() const { return readers_.size(); }

 private:
  AheadAudioFile(DescriptorWaits& waits, Errands& errands, std::function<void()> breathe,
                 std::shared_ptr<MeasuredFiles> measured, NewFile newFile);

  struct Opening;
  /// Opens the file, and says on which file system it stands.
  using Open = std::function<playback::OpenResult(playback::AudioFile& file, Opening& opening)>;

  playback::OpenResult TakeMeasured(const store::HeldFile& held);
  playback::OpenResult OpenBy(const std::string& path, const Open& open);
  /// Takes over what an errand has opened.
  playback::OpenResult Accept(Opening& opening);
  /// The reader of the open file; null when there is none to be had.
  AheadReader* Reader();
  /// Hands the file to the reader of its file system. Readers of others that are at rest go.
  void Hand(std::unique_ptr<playback::AudioFile> file, std::uint64_t fileSystem);
  /// File systems whose reader has been stuck for as long as an errand may be.
  std::set<std::uint64_t> StuckFileSystems() const;
  void HandleReady();

  Errands& errands_;
  const std::function<void()> breathe_;
  const std::thread::id loopThread_ = std::this_thread::get_id();
  const std::shared_ptr<MeasuredFiles> measured_;
  const NewFile newFile_;
  const std::shared_ptr<const Bell> ready_ = std::make_shared<const Bell>();
  const std::unique_ptr<DescriptorWait> readyWait_;

  SoundFigures figures_;
  std::int64_t milliseconds_ = 0;
  int openStatus_ = 0;
  bool readFailed_ = false;
  bool wasLate_ = false;        ///< The last block was.
  std::uint64_t openings_ = 0;  ///< So that one that was overtaken can tell.

  /// By the number of the file system.
  std::map<std::uint64_t, std::unique_ptr<AheadReader>> readers_;
  AheadReader* reader_ = nullptr;  ///< That of the open file, once it has been handed one.
  /// Measured as a walk held it, and holding no handle of its own.
  std::unique_ptr<playback::AudioFile> parked_;
  std::uint64_t parkedOn_ = 0;
};

}  // namespace tavlo::platform
