#pragma once

#include <algorithm>
#include <atomic>
#include <limits>
#include <memory>
#include <stdexcept>
#include <thread>

#include "playback/audio_objects.h"
#include "support/held_calls.h"

namespace tavlo::test {

/// The daemon of a mount that a test stops: calls that come while it is shut wait.
class Gate : public HeldCalls {
 public:
  /// From this sample on a file cannot be read.
  std::atomic<playback::SampleCount> ReadableTo = std::numeric_limits<int>::max();
  std::atomic<bool> CallsThrow = false;
  std::atomic<int> FilesThere = 0;
  /// Files that were closed on the thread that made this gate.
  std::atomic<int> ClosedByTheLoop = 0;
  const std::thread::id Loop = std::this_thread::get_id();
};

/// Ten minutes of sound in which each sample has its own number, behind a gate for whatever is
/// asked of it once it is open.
class GatedFile : public playback::AudioFile {
 public:
  static constexpr int kRate = 8000;
  static constexpr playback::SampleCount kSamples = 600 * kRate;

  explicit GatedFile(std::shared_ptr<Gate> gate) : gate_(std::move(gate)) { ++gate_->FilesThere; }
  ~GatedFile() override {
    if (open_) gate_->Pass();
    if (std::this_thread::get_id() == gate_->Loop && open_) ++gate_->ClosedByTheLoop;
    --gate_->FilesThere;
  }
  GatedFile(const GatedFile&) = delete;

  playback::OpenResult OpenFile(const std::string&) override {
    open_ = true;
    return playback::OpenResult::Opened;
  }
  playback::OpenResult OpenHeldFile(const store::HeldFile&) override { return OpenFile({}); }
  void CloseFile() override {}
  int OpenStatus() const override { return 0; }
  playback::SampleCount TotalSamples() const override { return kSamples; }
  std::int64_t LengthMilliseconds() const override { return kSamples * 1000 / kRate; }
  int ChannelCount() const override { return 1; }
  int SampleRate() const override { return kRate; }
  playback::SampleArray ReadArray(playback::SampleCount samples) override {
    gate_->Pass();
    ThrowIfAsked();
    playback::SampleArray block{.sourceBegin = static_cast<double>(position_)};
    const playback::SampleCount end = std::min(kSamples, gate_->ReadableTo.load());
    for (; samples > 0 && position_ < end; --samples) {
      block.values.push_back(static_cast<float>(position_++));
    }
    block.sourceEnd = static_cast<double>(position_);
    block.last = position_ == kSamples;
    failed_ = samples > 0 && position_ < kSamples;
    return block;
  }
  bool ReadFailed() const override { return failed_; }
  playback::SampleCount SeekSample(playback::SampleCount target) override {
    gate_->Pass();
    ThrowIfAsked();
    return position_ = std::clamp<playback::SampleCount>(target, 0, kSamples);
  }

 private:
  void ThrowIfAsked() const {
    if (gate_->CallsThrow) throw std::runtime_error("a fault that a test asked for");
  }

  const std::shared_ptr<Gate> gate_;
  bool open_ = false;
  bool failed_ = false;
  playback::SampleCount position_ = 0;
};

}  // namespace tavlo::test
