#pragma once

#include <chrono>
#include <memory>
#include <thread>

#include "platform/wake/bell.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// Reads and decodes one sound file after the other on a thread of its own, ahead of the loop. What
/// is called here is called on the loop's thread and does not wait for the disk, save for a moment
/// that is named. A call of the file that never returns keeps the thread, and whatever is asked
/// afterwards waits behind it.
class AheadReader {
 public:
  using Duration = std::chrono::steady_clock::duration;

  /// How far it reads ahead. More bridges longer stalls, and is decoded in vain when a hand seeks.
  static constexpr int kAheadSeconds = 5;
  /// How much sound one step of the thread decodes; a seek waits for the step under way.
  static constexpr int kStepsInASecond = 10;
  /// How long the loop may wait for what is about to come: the first block behind a seek, which is
  /// then heard without another turn of the loop, and the closing of a file, which may be moved
  /// next. A press on a stalled file is slower by it.
  static constexpr Duration kMoment = std::chrono::milliseconds(20);
  /// How long the end of a reader waits for its thread before it leaves it behind.
  static constexpr Duration kFarewell = std::chrono::milliseconds(200);

  /// `ready` rings, on the reader's thread, when what was late can be taken. Throws
  /// std::system_error when the process can have no more threads.
  explicit AheadReader(std::shared_ptr<const Bell> ready);
  /// A thread that does not come back is left behind with all that it touches.
  ~AheadReader();
  AheadReader(const AheadReader&) = delete;

  /// From now on reads this file, which is open and belongs to the thread; closes the one before.
  /// Nothing is read before the first seek or the first block that is asked for.
  void Open(std::unique_ptr<playback::AudioFile> file);
  /// Closes the file, in a moment where that can be had.
  void Close();
  /// Drops what is ahead and reads on from `target`.
  void Seek(playback::SampleCount target);
  /// The next block, or one that is late. Waits for a moment when it is the first one of its run.
  playback::SampleArray Take(playback::SampleCount samples);
  /// As AudioFile::ReadFailed has it of the last block that was taken.
  bool TakeFailed() const { return takeFailed_; }

  /// Nothing is open, and the thread does nothing.
  bool AtRest() const;
  /// How long the call of the file takes that the thread is in; nothing when it is in none.
  Duration InCallFor() const;

 private:
  struct Desk;
  class Thread;

  const std::shared_ptr<Desk> desk_;
  std::thread thread_;
  bool takeFailed_ = false;
};

}  // namespace tavlo::platform
