#include "support/simulated_audio.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <utility>

namespace tavlo::test {
namespace {

using base::operator""ms;
using playback::OpenResult;
using playback::Side;

double Seconds(base::Duration length) { return std::chrono::duration<double>(length).count(); }

/// Throws once where a test asked for it.
void FaultIf(bool& asked) {
  if (std::exchange(asked, false)) throw std::runtime_error("a fault that a test asked for");
}

}  // namespace

OpenResult SimulatedAudioFile::OpenFile(const std::string& path) {
  ++OpenCount;
  CloseFile();
  if (OnOpen) OnOpen(path);
  position_ = 0;
  status_ = InTrouble || path == TroubleWith ? -1 : 0;
  readFailed_ = false;
  if (status_ < 0 || OutOfReach.contains(path)) return OpenResult::OutOfReach;
  const auto found = Sounds.find(path);
  if (found == Sounds.end()) return OpenResult::Unplayable;
  open_ = &found->second;
  return OpenResult::Opened;
}

OpenResult SimulatedAudioFile::OpenHeldFile(const store::HeldFile& held) {
  if (held.opened == store::DiskResult::Done) {
    ++HeldOpenCount;
    return OpenFile(held.path);
  }
  CloseFile();
  status_ = held.opened == store::DiskResult::ProcessInTrouble ? -1 : 0;
  return OpenResult::OutOfReach;
}

std::int64_t SimulatedAudioFile::LengthMilliseconds() const {
  return open_ ? open_->samples * 1000 / open_->rate : 0;
}

void SimulatedAudioFile::CloseFile() {
  open_ = nullptr;
  ForgetRead();
}

void SimulatedAudioFile::GoOn() {
  stalled_ = false;
  if (std::exchange(waitedFor_, false) && OnReady) OnReady();
}

void SimulatedAudioFile::TakeTime(base::Loop& loop, base::Duration forEachBlock) {
  ForgetRead();
  reading_.reset();
  if (forEachBlock <= 0ms) return;
  reading_.emplace(loop, "SimulatedReader", forEachBlock, base::TimerKind::Feed);
  reading_->OnTick = [this, &loop] {
    reading_->Stop();
    blockIsRead_ = true;
    loop.Post([this] {
      if (!stalled_) GoOn();
    });
  };
}

bool SimulatedAudioFile::BlockIsLate() {
  if (endGiven_) return false;
  if (!stalled_ && (!reading_ || std::exchange(blockIsRead_, false))) return false;
  if (reading_ && !blockIsRead_ && !reading_->Enabled()) reading_->Start();
  waitedFor_ = true;
  ++LateBlocks;
  return true;
}

void SimulatedAudioFile::ForgetRead() {
  waitedFor_ = false;
  blockIsRead_ = false;
  endGiven_ = false;
  if (reading_) reading_->Stop();
}

SampleArray SimulatedAudioFile::ReadArray(SampleCount samples) {
  FaultIf(ReadThrows);
  SampleArray block;
  readFailed_ = false;
  if (!open_) return block;
  block.channels = open_->channels;
  block.late = BlockIsLate();
  if (block.late) return block;
  const SampleCount total = std::min(open_->samples, open_->sounding);
  const SampleCount wanted = std::max(position_, std::min(position_ + samples, total));
  const SampleCount end = std::max(position_, std::min(wanted, open_->readable));
  readFailed_ = end < wanted;
  block.sourceBegin = static_cast<double>(position_);
  block.sourceEnd = static_cast<double>(end);
  block.last = endGiven_ = end == total || readFailed_;
  for (; position_ < end; ++position_) {
    block.values.insert(block.values.end(), open_->channels, static_cast<float>(position_));
  }
  return block;
}

SampleCount SimulatedAudioFile::SeekSample(SampleCount target) {
  Seeks.push_back(target);
  ForgetRead();
  const SampleCount told = std::clamp<SampleCount>(target, 0, TotalSamples());
  position_ = std::exchange(LandsAt, std::nullopt).value_or(told);
  return told;
}

void SimulatedTransform::ChangeSpeed(SampleArray& block, float speedPercent) {
  FaultIf(Throws);
  Calls.push_back({block.side, speedPercent});
  const double length = static_cast<double>(block.values.size()) * 100.0 / speedPercent;
  block.values.resize(static_cast<std::size_t>(std::nearbyint(length)));
}

SampleArray SimulatedTransform::SplitLeft(const SampleArray& interleaved) {
  SampleArray half = interleaved;
  half.channels = 1;
  half.side = Side::Left;
  half.values.resize(interleaved.values.size() / 2);
  return half;
}

SampleArray SimulatedTransform::SplitRight(const SampleArray& interleaved) {
  SampleArray half = SplitLeft(interleaved);
  half.side = Side::Right;
  return half;
}

SampleArray SimulatedTransform::JoinChannels(const SampleArray& left, const SampleArray& right) {
  SampleArray whole = left;
  whole.channels = 2;
  whole.side = Side::Whole;
  whole.values.insert(whole.values.end(), right.values.begin(), right.values.end());
  return whole;
}

SimulatedPlayer::SimulatedPlayer(base::Loop& loop)
    : loop_(loop), feed_(loop, "SimulatedPlayer", 10ms, base::TimerKind::Feed) {
  feed_.OnTick = [this] { Feed(); };
}

void SimulatedPlayer::SetOutputFormat(int samplesPerSecond, int channels) {
  rate_ = samplesPerSecond;
  channels_ = channels;
}

bool SimulatedPlayer::StartOutput() {
  ++Starts;
  if (!TakesFormat) return false;
  if (DeviceCount() > 0 && !Connected) {
    status_ = -1;
    return false;
  }
  status_ = DeviceCount() > 0 ? StatusAfterStart : -1;
  queue_.clear();
  heard_ = 0;
  endRaised_ = false;
  requestOpen_ = false;
  hushed_ = false;
  freshQueue_ = true;
  running_ = status_ >= 0;
  playedUpTo_ = loop_.Now();
  nextTimerEvent_ = loop_.Now() + kTellsEvery;
  if (running_) feed_.Start();
  return true;
}

void SimulatedPlayer::StopOutput() {
  ++Stops;
  if (!running_) return;
  TakeHeard();
  if (OnTimer) OnTimer(PlayedSamples(), Level, Level);
  running_ = false;
  requestOpen_ = false;
  hushed_ = false;
  feed_.Stop();
  queue_.clear();
}

void SimulatedPlayer::Silence() {
  if (!running_) return;
  TakeHeard();
  hushed_ = true;
}

void SimulatedPlayer::QueueArray(SampleArray block) {
  FaultIf(QueueThrows);
  Queued.push_back(block);
  freshQueue_ = false;
  endRaised_ = false;
  if (queue_.empty()) playedUpTo_ = loop_.Now();
  queue_.push_back({std::move(block)});
}

void SimulatedPlayer::ClearQueue() {
  ++Clears;
  queue_.clear();
  endRaised_ = false;
  requestOpen_ = false;
  hushed_ = false;
  freshQueue_ = true;
  heard_ = 0;
}

SampleCount SimulatedPlayer::MillisecondsToSamples(std::int64_t milliseconds) const {
  return milliseconds * rate_ / 1000;
}

std::int64_t SimulatedPlayer::SamplesToMilliseconds(double samples) const {
  return static_cast<std::int64_t>(samples * 1000.0 / rate_);
}

std::vector<std::string> SimulatedPlayer::DeviceNames() const {
  std::vector<std::string> names;
  for (int index = 0; index < Devices; ++index) names.push_back("Device " + std::to_string(index));
  names.insert(names.end(), Added.begin(), Added.end());
  return names;
}

void SimulatedPlayer::AddDevices(const std::vector<std::string>& present) {
  if (DeviceCount() == 0 && !present.empty()) Added.emplace_back("System default");
  for (const std::string& name : present) {
    const std::vector<std::string> known = DeviceNames();
    if (std::ranges::find(known, name) == known.end()) Added.push_back(name);
  }
}

std::string SimulatedPlayer::DeviceName() const {
  const std::vector<std::string> names = DeviceNames();
  const auto place = static_cast<std::size_t>(device_);
  return place < names.size() ? names[place] : "";
}

void SimulatedPlayer::SelectDevice(int index) {
  selected_ = index >= 0 && index < DeviceCount();
  if (selected_) device_ = index;
}

void SimulatedPlayer::TakeHeard() {
  // What a busy loop let pass beyond the queued blocks was silence and is not heard time.
  double passed = Seconds(loop_.Now() - playedUpTo_) * rate_;
  playedUpTo_ = loop_.Now();
  if (!Connected || hushed_) return;
  for (Playing& next : queue_) {
    const auto samples = static_cast<double>(next.block.Samples());
    const double played = std::min(passed, samples - next.played);
    if (samples > 0) {
      heard_ += (next.block.sourceEnd - next.block.sourceBegin) * played / samples;
    }
    next.played += played;
    FurthestHeard = std::max(FurthestHeard, next.EarAt());
    passed -= played;
    if (passed <= 0) return;
  }
}

void SimulatedPlayer::Feed() {
  TakeHeard();
  const auto finished = [](const Playing& next) {
    return next.played >= static_cast<double>(next.block.Samples());
  };
  while (running_ && !queue_.empty() && finished(queue_.front())) FinishBlock();
  if (!running_) return;
  // The rule that emptied the queue may be about to fill it.
  const bool fresh = std::exchange(freshQueue_, false);
  if (queue_.empty() && !requestOpen_) {
    if (!fresh && !std::exchange(endRaised_, true) && OnEndPlay) OnEndPlay();
    return;
  }
  if (loop_.Now() >= nextTimerEvent_) {
    nextTimerEvent_ = loop_.Now() + kTellsEvery;
    if (OnTimer) OnTimer(PlayedSamples(), Level, Level);
  }
}

void SimulatedPlayer::FinishBlock() {
  queue_.pop_front();
  if (OnEndArrayPlay) OnEndArrayPlay();
}

}  // namespace tavlo::test
