#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "base/loop.h"
#include "platform/reach/hush.h"
#include "platform/sound/block_resampler.h"
#include "platform/sound/output_device.h"
#include "platform/sound/rt_mixer.h"
#include "playback/audio_objects.h"

namespace tavlo::platform {

/// The player of documents: blocks go through the resampler into the mixer, and what the mixer has
/// played comes back as events on the loop's thread.
///
/// The device is opened when a format is set, so that the first sound is not swallowed, and stays
/// open on silence until it has been idle for kIdleSeconds, or for kIdleSecondsAfterPrompt when
/// nothing but a prompt has sounded. When it dies while output is on, there is silence, the
/// position stands where it was, and the device is opened again at once and then every second; the
/// queue goes on where it stopped. OutputDevice decides what stands in for a device that has gone.
///
/// Prompts sound beside the document and know nothing of it: no start and no stop of it reaches
/// them. They end with the device and are not taken up again.
class QueuePlayer : public playback::AudioPlayer, public Hush {
 public:
  /// Silence after which the device is given back. Longer keeps the first sound after a pause
  /// prompt and costs the device's wake-ups meanwhile. No prompt may be longer.
  static constexpr int kIdleSeconds = 60;
  /// Shorter, because no document is about to sound.
  static constexpr int kIdleSecondsAfterPrompt = 1;
  /// How soon what cannot be foretold is looked at again: a block that should have been played by
  /// now, and an empty queue that may be the end.
  static constexpr int kFeedMilliseconds = 10;
  static constexpr int kReportMilliseconds = 50;
  static constexpr int kRetryMilliseconds = 1000;
  /// How long StopOutput may wait for the ramp.
  static constexpr int kSettleMilliseconds = 30;

  /// Both must outlive the player.
  QueuePlayer(base::Loop& loop, OutputDevice& device);
  ~QueuePlayer() override;

  void SetOutputFormat(int samplesPerSecond, int channels) override;
  bool StartOutput() override;
  void StopOutput() override;
  void QueueArray(playback::SampleArray block) override;
  void HoldRequestOpen(bool open) override;
  void ClearQueue() override;
  int OpenStatus() const override { return openStatus_; }
  void Silence() override;

  playback::SampleCount MillisecondsToSamples(std::int64_t milliseconds) const override;
  std::int64_t SamplesToMilliseconds(double samples) const override;
  playback::SampleCount PlayedSamples() const override;

  int DeviceCount() const override { return static_cast<int>(deviceNames_.size()); }
  std::vector<std::string> DeviceNames() const override { return deviceNames_; }
  void AddDevices(const std::vector<std::string>& present) override;
  std::string DeviceName() const override;
  int CurrentDevice() const override { return currentDevice_; }
  void SelectDevice(int index) override;
  bool DeviceHasMixer() const override;

  void SetVolume(int volume) override;
  void SetEqualizerGains(const playback::EqualizerGains& gains) override;
  bool EqualizerEnabled() const override { return mixer_.EqualizerEnabled(); }
  void SetEqualizerEnabled(bool enabled) override { mixer_.SetEqualizerEnabled(enabled); }

  /// Sounds a whole prompt beside the document; the one that sounds fades out first. Opens the
  /// device when nothing else has. False when there is none, and for an empty sound.
  [[nodiscard]] bool PlayPrompt(playback::SampleArray prompt, int samplesPerSecond);
  /// Fades out the prompt that sounds.
  void StopPrompt();

 private:
  bool OpenDevice();
  bool HaveDeviceForPrompt();
  /// Gives the device back that much later, or later still if that was promised before.
  void KeepOpenFor(base::Duration length);
  void CloseDevice();
  void FollowDevice();
  void BeginRun();
  void Settle();
  void CollectPlayedBlocks();
  void RaiseForBlock(std::uint64_t run);
  void RaiseEndIfDry();
  void RaiseTimer();
  void Feed();
  void SleepUntilNeeded();
  base::Duration UntilBlockIsPlayed() const;
  double HeardNow() const;

  base::Loop& loop_;
  OutputDevice& device_;
  /// Asking it for the position takes marks off its queue, which no caller can see.
  mutable RtMixer mixer_;
  base::Timer feedTimer_;
  base::Timer idleTimer_;
  base::MonotonicTime idleFrom_;

  std::vector<std::string> deviceNames_;
  int currentDevice_ = 0;
  bool selectionExists_ = true;

  int samplesPerSecond_ = 0;
  int deviceRate_ = 0;
  int openStatus_ = 0;
  bool outputOn_ = false;
  FrameCount framesBeforeOpen_ = 0;  ///< Frames that were rendered before the device was opened.
  base::MonotonicTime nextRetry_;
  base::MonotonicTime nextReport_;

  std::unique_ptr<BlockResampler> resampler_;
  std::uint64_t run_ = 0;
  bool runBegun_ = false;  ///< A block of the run has been queued.
  double runOrigin_ = 0;   ///< Where in the document the run began.
  mutable double heard_ = 0;
  int blocksAhead_ = 0;  ///< Blocks of the run that are queued and not played.
  /// Where each of those ends, in the mixer's rendered frames, as far as no gap comes between.
  std::deque<FrameCount> blockEnds_;
  int handlersRunning_ = 0;   ///< Events that ask for a block and have not returned.
  bool requestOpen_ = false;  ///< The block comes later than the handler returned.
  bool hushed_ = false;
  bool freshQueue_ = false;  ///< The queue was emptied since the last feed.
  bool endRaised_ = false;
  std::deque<std::uint64_t> playedRuns_;  ///< Runs of the played blocks whose events are due.
};

}  // namespace tavlo::platform
