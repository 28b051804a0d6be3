#include "platform/sound/queue_player.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>
#include <utility>

namespace tavlo::platform {
namespace {

using base::Duration;
using playback::SampleArray;
using playback::SampleCount;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr double kTopVolume = 65535;
/// Longer than a ramp at any rate that a device may have.
constexpr FrameCount kNowhereFrames = 1024;

double Level(float peak) {
  if (peak <= 0) return 0;
  return std::clamp(100 + 20 * std::log10(static_cast<double>(peak)), 0.0, 100.0);
}

}  // namespace

QueuePlayer::QueuePlayer(base::Loop& loop, OutputDevice& device)
    : loop_(loop),
      device_(device),
      feedTimer_(loop, "AudioPlayer", milliseconds(kFeedMilliseconds), base::TimerKind::Feed),
      idleTimer_(loop, "AudioPlayerIdle", seconds(kIdleSeconds), base::TimerKind::Feed),
      deviceNames_(device.FindDevices()) {
  feedTimer_.OnTick = [this] { Feed(); };
  idleTimer_.OnTick = [this] { CloseDevice(); };
}

QueuePlayer::~QueuePlayer() { device_.Close(); }

void QueuePlayer::SetOutputFormat(int samplesPerSecond, int /*channels*/) {
  samplesPerSecond_ = std::max(samplesPerSecond, 0);
  resampler_.reset();
  // A device that cannot be had now is tried again, and reported, by StartOutput.
  if (!device_.IsOpen() && !deviceNames_.empty()) OpenDevice();
  if (!outputOn_) KeepOpenFor(seconds(kIdleSeconds));
}

bool QueuePlayer::StartOutput() {
  if (device_.HasFailed()) CloseDevice();
  const bool open = samplesPerSecond_ > 0 && (device_.IsOpen() || OpenDevice());
  openStatus_ = open ? 0 : -1;
  if (!open) return deviceNames_.empty();
  BeginRun();
  outputOn_ = true;
  // It does not matter whether the device ran dry while nothing sounded.
  device_.TakeRanDry();
  mixer_.TakePeaks();
  nextReport_ = loop_.Now() + milliseconds(kReportMilliseconds);
  nextRetry_ = loop_.Now();
  idleTimer_.Stop();
  SleepUntilNeeded();
  return true;
}

void QueuePlayer::StopOutput() {
  if (!outputOn_) return;
  const std::uint64_t stopped = run_;
  HeardNow();
  const bool deviceLives = device_.IsOpen() && !device_.HasFailed();
  mixer_.BeginRun();
  Settle();
  // All that a living device was given still reaches the ear, so the ear stops where the ramp ends.
  if (deviceLives && mixer_.Settled()) {
    heard_ = std::max(heard_, mixer_.Heard(stopped, mixer_.RenderedFrames()));
  }
  outputOn_ = false;
  hushed_ = false;
  requestOpen_ = false;
  feedTimer_.Stop();
  KeepOpenFor(seconds(kIdleSeconds));
  playedRuns_.clear();
  RaiseTimer();
}

void QueuePlayer::QueueArray(SampleArray block) {
  if (!outputOn_ || block.channels < 1 || block.channels > 2) return;
  if (!std::exchange(runBegun_, true)) runOrigin_ = block.sourceBegin;
  if (!resampler_) resampler_ = std::make_unique<BlockResampler>(samplesPerSecond_, deviceRate_);
  auto converted = std::make_unique<RtBlock>();
  converted->channels = block.channels;
  converted->run = run_;
  converted->values = resampler_->Convert(block);
  converted->heardBegin = block.sourceBegin - runOrigin_;
  converted->heardEnd = block.sourceEnd - runOrigin_;
  endRaised_ = false;
  ++blocksAhead_;
  const FrameCount begin = blockEnds_.empty() ? mixer_.RenderedFrames() : blockEnds_.back();
  const FrameCount end = begin + converted->Frames();
  if (mixer_.Queue(std::move(converted))) {
    blockEnds_.push_back(end);
  } else {
    // A block that finds no room is lost to the ear, and its event still asks for the next.
    playedRuns_.push_back(run_);
  }
  SleepUntilNeeded();
}

void QueuePlayer::HoldRequestOpen(bool open) {
  if (requestOpen_ == open) return;
  requestOpen_ = open;
  SleepUntilNeeded();
}

void QueuePlayer::Silence() {
  if (!outputOn_) return;
  mixer_.Hold();
  hushed_ = true;
  SleepUntilNeeded();
}

void QueuePlayer::ClearQueue() {
  if (!outputOn_) return;
  BeginRun();
  SleepUntilNeeded();
}

SampleCount QueuePlayer::MillisecondsToSamples(std::int64_t milliseconds) const {
  return milliseconds * samplesPerSecond_ / 1000;
}

std::int64_t QueuePlayer::SamplesToMilliseconds(double samples) const {
  if (samplesPerSecond_ == 0) return 0;
  return static_cast<std::int64_t>(samples * 1000 / samplesPerSecond_);
}

SampleCount QueuePlayer::PlayedSamples() const { return std::llround(HeardNow()); }

void QueuePlayer::AddDevices(const std::vector<std::string>& present) {
  deviceNames_ = device_.LearnDevices(present);
}

std::string QueuePlayer::DeviceName() const {
  if (currentDevice_ >= DeviceCount()) return {};
  return deviceNames_[static_cast<std::size_t>(currentDevice_)];
}

void QueuePlayer::SelectDevice(int index) {
  selectionExists_ = index >= 0 && index < DeviceCount();
  if (!selectionExists_ || index == currentDevice_) return;
  currentDevice_ = index;
  // Only a device that is in use is changed at once: going through the list must open nothing.
  if (device_.IsOpen()) OpenDevice();
}

bool QueuePlayer::DeviceHasMixer() const { return selectionExists_ && DeviceCount() > 0; }

void QueuePlayer::SetVolume(int volume) {
  mixer_.SetVolume(static_cast<float>(std::clamp<double>(volume, 0, kTopVolume) / kTopVolume));
}

void QueuePlayer::SetEqualizerGains(const playback::EqualizerGains& gains) {
  BandGains curve{};
  std::copy_n(gains.begin(), curve.size(), curve.begin());
  mixer_.SetEqualizerCurve(curve);
}

bool QueuePlayer::PlayPrompt(SampleArray prompt, int samplesPerSecond) {
  const bool isSound = prompt.Samples() > 0 && prompt.channels <= 2 && samplesPerSecond > 0;
  if (!isSound || !HaveDeviceForPrompt()) return false;
  if (!outputOn_) {
    const auto length = milliseconds(prompt.Samples() * 1000 / samplesPerSecond);
    KeepOpenFor(length + seconds(kIdleSecondsAfterPrompt));
  }
  prompt.last = true;
  auto block = std::make_unique<RtBlock>();
  block->channels = prompt.channels;
  try {
    block->values = BlockResampler(samplesPerSecond, deviceRate_).Convert(prompt);
  } catch (const std::bad_alloc&) {
    return false;
  }
  return mixer_.PlayPrompt(std::move(block));
}

void QueuePlayer::StopPrompt() { mixer_.StopPrompt(); }

/// A wind asks for tones many times a second, so a device that cannot be had is not tried each
/// time. While a document plays it is looked for anyway.
bool QueuePlayer::HaveDeviceForPrompt() {
  if (outputOn_) return device_.IsOpen() && !device_.HasFailed();
  if (device_.HasFailed()) CloseDevice();
  if (device_.IsOpen()) return true;
  if (deviceNames_.empty() || loop_.Now() < nextRetry_) return false;
  nextRetry_ = loop_.Now() + milliseconds(kRetryMilliseconds);
  return OpenDevice();
}

/// Opens the selected device. While sound is queued it keeps the rate that the queue was made for.
bool QueuePlayer::OpenDevice() {
  HeardNow();
  device_.Close();
  // What is left of a prompt was made for the rate of the device that is gone.
  mixer_.StopPrompt();
  Settle();
  if (!outputOn_) deviceRate_ = device_.PreferredRate();
  mixer_.SetRate(deviceRate_);
  framesBeforeOpen_ = mixer_.RenderedFrames();
  return device_.Open(currentDevice_, deviceRate_, mixer_);
}

void QueuePlayer::KeepOpenFor(base::Duration length) {
  idleFrom_ = std::max(idleFrom_, loop_.Now() + length);
  idleTimer_.SetInterval(idleFrom_ - loop_.Now());
  idleTimer_.Start();
}

void QueuePlayer::CloseDevice() {
  idleTimer_.Stop();
  idleFrom_ = {};
  HeardNow();
  device_.Close();
  mixer_.StopPrompt();
  Settle();
}

/// While output is on, a device that has gone is opened again (OutputDevice says what stands in for
/// it), and one that made a gap is opened with more ahead of it.
void QueuePlayer::FollowDevice() {
  const bool lives = device_.IsOpen() && !device_.HasFailed();
  if (lives ? !device_.TakeRanDry() : loop_.Now() < nextRetry_) return;
  nextRetry_ = loop_.Now() + milliseconds(kRetryMilliseconds);
  openStatus_ = OpenDevice() ? 0 : -1;
}

void QueuePlayer::BeginRun() {
  run_ = mixer_.BeginRun();
  runBegun_ = false;
  runOrigin_ = 0;
  heard_ = 0;
  blocksAhead_ = 0;
  blockEnds_.clear();
  endRaised_ = false;
  freshQueue_ = true;
  requestOpen_ = false;
  hushed_ = false;
  playedRuns_.clear();
  resampler_.reset();
}

/// Waits until the ramp of what was dropped is rendered. Without a living device the loop renders
/// it itself and drops it, so that the next device does not begin with it.
void QueuePlayer::Settle() {
  if (device_.HasFailed()) device_.Close();
  for (int waited = 0; waited < kSettleMilliseconds && !mixer_.Settled(); ++waited) {
    if (device_.IsOpen()) {
      device_.LetRender();
    } else {
      std::vector<float> nowhere(2 * kNowhereFrames);
      mixer_.RtRender(nowhere.data(), kNowhereFrames);
    }
  }
}

void QueuePlayer::Feed() {
  CollectPlayedBlocks();
  FollowDevice();
  while (outputOn_ && !playedRuns_.empty()) {
    const std::uint64_t run = playedRuns_.front();
    playedRuns_.pop_front();
    RaiseForBlock(run);
  }
  if (outputOn_ && loop_.Now() >= nextReport_) {
    nextReport_ = loop_.Now() + milliseconds(kReportMilliseconds);
    HeardNow();
    RaiseTimer();
  }
  RaiseEndIfDry();
  SleepUntilNeeded();
}

/// While output is on, the feed ticks when there is something for it to do: a report or the end of
/// a block.
void QueuePlayer::SleepUntilNeeded() {
  if (!outputOn_) return;
  constexpr Duration kSoon = milliseconds(kFeedMilliseconds);
  const bool mayBeTheEnd = blocksAhead_ == 0 && !endRaised_ && !requestOpen_;
  const bool undecided = mayBeTheEnd || !playedRuns_.empty();
  const Duration next =
      std::min(nextReport_ - loop_.Now(), undecided ? kSoon : UntilBlockIsPlayed());
  feedTimer_.Stop();
  feedTimer_.SetInterval(next > Duration{0} ? next : kSoon);
  feedTimer_.Start();
}

/// How long the device still renders the front block; not positive when it should have done so by
/// now, and longer than to any report when there is none or it renders none.
Duration QueuePlayer::UntilBlockIsPlayed() const {
  if (blockEnds_.empty() || deviceRate_ == 0 || hushed_) return milliseconds(kReportMilliseconds);
  const FrameCount frames = blockEnds_.front() - mixer_.RenderedFrames();
  return std::chrono::ceil<milliseconds>(std::chrono::duration<double>(
      static_cast<double>(frames) / static_cast<double>(deviceRate_)));
}

void QueuePlayer::CollectPlayedBlocks() {
  while (const std::unique_ptr<RtBlock> block = mixer_.TakeFreed()) {
    if (block->run != run_) continue;
    playedRuns_.push_back(block->run);
    blockEnds_.pop_front();
  }
}

void QueuePlayer::RaiseForBlock(std::uint64_t run) {
  if (run != run_) return;
  --blocksAhead_;
  struct Request {
    explicit Request(int& running) : running_(running) { ++running_; }
    ~Request() { --running_; }
    int& running_;
  };
  const Request request(handlersRunning_);
  // Something still plays: a block has ended. Nothing does: the player wants one.
  const auto handler = blocksAhead_ > 0 ? OnEndArrayPlay : OnRequestOnLoadArray;
  if (handler) handler();
}

void QueuePlayer::RaiseEndIfDry() {
  // One whole feed passes before an empty queue is taken for the end, since whoever emptied it may
  // be about to fill it.
  if (std::exchange(freshQueue_, false)) return;
  if (!outputOn_ || endRaised_ || handlersRunning_ > 0 || requestOpen_) return;
  if (blocksAhead_ > 0 || !playedRuns_.empty()) return;
  endRaised_ = true;
  const auto handler = OnEndPlay;
  if (handler) handler();
}

void QueuePlayer::RaiseTimer() {
  const std::array<float, 2> peaks = mixer_.TakePeaks();
  const auto handler = OnTimer;
  if (handler) handler(std::llround(heard_), Level(peaks[0]), Level(peaks[1]));
}

/// Brings the figure of what was heard up to the moment, where the device can tell.
double QueuePlayer::HeardNow() const {
  if (!outputOn_ || !device_.IsOpen()) return heard_;
  const FrameCount sinceOpen = device_.HeardFrames();
  if (sinceOpen < 0) return heard_;
  const FrameCount frame = std::min(framesBeforeOpen_ + sinceOpen, mixer_.RenderedFrames());
  heard_ = std::max(heard_, mixer_.Heard(run_, frame));
  return heard_;
}

}  // namespace tavlo::platform
