#pragma once

#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "base/loop.h"
#include "playback/audio_objects.h"

namespace tavlo::test {

using playback::SampleArray;
using playback::SampleCount;

/// A sound file that needs no bytes: the value of a sample is its own number, so that a test can
/// see which part of a document a block holds.
struct SimulatedSound {
  SampleCount samples = 0;
  int rate = 8000;
  int channels = 1;
  /// From this sample on the file cannot be read: the disk fails there, or the file was cut off.
  SampleCount readable = std::numeric_limits<SampleCount>::max();
  /// Here the sound ends, without a failure, whatever was measured.
  SampleCount sounding = std::numeric_limits<SampleCount>::max();
};

/// Decodes what the test laid out by path. A path that was not laid out cannot be played. What is
/// laid out may be changed while it is open. Its blocks may come late, in virtual time.
class SimulatedAudioFile : public playback::AudioFile {
 public:
  std::map<std::string, SimulatedSound> Sounds;
  /// The process has no handles left: the next open fails with a negative status.
  bool InTrouble = false;
  /// The same for the file at this path only.
  std::string TroubleWith;
  /// Files that are gone, or whose folder cannot be reached.
  std::set<std::string> OutOfReach;
  /// Runs before each opening, which may take its time.
  std::function<void(const std::string& path)> OnOpen;
  /// The next read throws.
  bool ReadThrows = false;
  /// The next run begins here, wherever the seek asked for.
  std::optional<SampleCount> LandsAt;
  int OpenCount = 0;
  /// Those of them that were measured as a walk held them.
  int HeldOpenCount = 0;
  std::vector<SampleCount> Seeks;

  /// From now on the folder gives no answer: every block is late.
  void Stall() { stalled_ = true; }
  /// It answers again, and whoever waits for a block is told.
  void GoOn();
  /// It answers again while the loop only breathes, so that nobody is told.
  void GoOnUntold() { stalled_ = false; }
  /// From now on each block comes so long after it was first asked for; at once for nothing.
  void TakeTime(base::Loop& loop, base::Duration forEachBlock);
  /// Blocks that were late.
  int LateBlocks = 0;

  playback::OpenResult OpenFile(const std::string& path) override;
  playback::OpenResult OpenHeldFile(const store::HeldFile& held) override;
  void CloseFile() override;
  int OpenStatus() const override { return status_; }
  SampleCount TotalSamples() const override { return open_ ? open_->samples : 0; }
  std::int64_t LengthMilliseconds() const override;
  int ChannelCount() const override { return open_ ? open_->channels : 0; }
  int SampleRate() const override { return open_ ? open_->rate : 0; }
  SampleArray ReadArray(SampleCount samples) override;
  bool ReadFailed() const override { return readFailed_; }
  SampleCount SeekSample(SampleCount target) override;

  bool IsOpen() const { return open_ != nullptr; }

 private:
  /// Whether the block that is asked for now must be waited for.
  bool BlockIsLate();
  void ForgetRead();

  const SimulatedSound* open_ = nullptr;
  SampleCount position_ = 0;
  int status_ = 0;
  bool readFailed_ = false;
  bool stalled_ = false;
  bool waitedFor_ = false;  ///< A block was late, and its coming was not told.
  bool blockIsRead_ = false;
  bool endGiven_ = false;               ///< The last block was given, so what follows is known.
  std::optional<base::Timer> reading_;  ///< Runs while a block takes its time.
};

/// Stretches by counting: a block at half speed holds twice the samples.
class SimulatedTransform : public playback::AudioTransform {
 public:
  struct Call {
    playback::Side side;
    float speedPercent;
  };
  std::vector<Call> Calls;
  int Resets = 0;
  /// The next change of speed throws.
  bool Throws = false;

  void Reset(int) override { ++Resets; }
  void ChangeSpeed(SampleArray& block, float speedPercent) override;
  SampleArray SplitLeft(const SampleArray& interleaved) override;
  SampleArray SplitRight(const SampleArray& interleaved) override;
  SampleArray JoinChannels(const SampleArray& left, const SampleArray& right) override;
};

/// Plays in the loop's time. As strict as the real player: one event for each block that was heard,
/// the end only when every request was answered, nothing after a stop.
class SimulatedPlayer : public playback::AudioPlayer {
 public:
  explicit SimulatedPlayer(base::Loop& loop);

  int Devices = 1;
  /// The names of devices that have come since the start, behind those.
  std::vector<std::string> Added;
  bool TakesFormat = true;
  /// False: the device has been pulled out. What is queued waits for it, unheard, and nothing
  /// starts.
  bool Connected = true;
  int StatusAfterStart = 0;
  double Level = 70;
  /// The next block throws instead of being queued.
  bool QueueThrows = false;
  /// The furthest sample of any document that was heard; a test sets it back.
  double FurthestHeard = 0;
  std::vector<SampleArray> Queued;  ///< Every block ever queued.
  std::vector<int> Volumes;
  std::vector<playback::EqualizerGains> Gains;
  bool EqualizerOn = false;
  int Starts = 0;
  int Stops = 0;
  int Clears = 0;

  void SetOutputFormat(int samplesPerSecond, int channels) override;
  bool StartOutput() override;
  void StopOutput() override;
  void Silence() override;
  void QueueArray(SampleArray block) override;
  void HoldRequestOpen(bool open) override { requestOpen_ = open; }
  void ClearQueue() override;
  int OpenStatus() const override { return status_; }
  SampleCount MillisecondsToSamples(std::int64_t milliseconds) const override;
  std::int64_t SamplesToMilliseconds(double samples) const override;
  SampleCount PlayedSamples() const override { return static_cast<SampleCount>(heard_); }
  int DeviceCount() const override { return Devices + static_cast<int>(Added.size()); }
  std::vector<std::string> DeviceNames() const override;
  void AddDevices(const std::vector<std::string>& present) override;
  std::string DeviceName() const override;
  int CurrentDevice() const override { return device_; }
  void SelectDevice(int index) override;
  bool DeviceHasMixer() const override { return selected_; }
  void SetVolume(int volume) override { Volumes.push_back(volume); }
  void SetEqualizerGains(const playback::EqualizerGains& gains) override { Gains.push_back(gains); }
  bool EqualizerEnabled() const override { return EqualizerOn; }
  void SetEqualizerEnabled(bool enabled) override { EqualizerOn = enabled; }

  bool IsRunning() const { return running_; }
  int BlocksInFlight() const { return static_cast<int>(queue_.size()); }
  /// What the player told at its last timer event is never more than this far behind the ear.
  static constexpr base::Duration kTellsEvery = std::chrono::milliseconds{50};
  int Rate() const { return rate_; }
  int Channels() const { return channels_; }

 private:
  void Feed();
  void TakeHeard();
  void FinishBlock();

  base::Loop& loop_;
  base::Timer feed_;
  base::MonotonicTime playedUpTo_;
  base::MonotonicTime nextTimerEvent_;
  struct Playing {
    SampleArray block;
    double played = 0;  ///< Output samples of the block that were heard.

    /// The sample of the document that was heard last.
    double EarAt() const {
      const double part = block.values.empty() ? 0 : played / static_cast<double>(block.Samples());
      return block.sourceBegin + (block.sourceEnd - block.sourceBegin) * part;
    }
  };
  std::deque<Playing> queue_;
  double heard_ = 0;
  bool running_ = false;
  bool endRaised_ = false;
  bool requestOpen_ = false;
  bool hushed_ = false;
  bool freshQueue_ = false;  ///< No feed has looked at the queue since it was emptied.
  int rate_ = 8000;
  int channels_ = 1;
  int status_ = 0;
  int device_ = 0;
  bool selected_ = true;
};

}  // namespace tavlo::test
