#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "platform/sound/device_names.h"
#include "platform/sound/output_device.h"
#include "support/simulated_loop.h"
#include "support/sound_analysis.h"

namespace tavlo::test {

/// A device that renders in the loop's time and lets the ear trail by 20 ms.
class StandInDevice : public platform::OutputDevice {
 public:
  explicit StandInDevice(SimulatedLoop& loop) : loop_(loop) {}

  static constexpr platform::FrameCount kLatency = 960;

  std::vector<std::string> Names = {"System default", "Headset", "Speakers"};
  bool Reachable = true;
  bool Failed = false;
  bool RanDry = false;
  int Tries = 0;  ///< Opens that were asked for.
  int Opens = 0;
  int OpenIndex = -1;
  int Looks = 0;  ///< How often it was asked whether it ran dry, as each feed of the player does.
  Sound Out{.rate = 48000};

  std::vector<std::string> FindDevices() override { return Names; }
  std::vector<std::string> LearnDevices(const std::vector<std::string>& present) override {
    return Names = platform::WithNewNames(std::move(Names), present);
  }
  int PreferredRate() override { return 48000; }
  bool Open(int index, int framesPerSecond, platform::RtMixer& mixer) override {
    Close();
    EXPECT_EQ(framesPerSecond, 48000);
    ++Tries;
    if (!Reachable) return false;
    ++Opens;
    OpenIndex = index;
    Failed = false;
    mixer_ = &mixer;
    rendered_ = 0;
    openedAt_ = loop_.Now();
    return true;
  }
  void Close() override {
    mixer_ = nullptr;
    Failed = false;
  }
  bool IsOpen() const override { return mixer_ != nullptr; }
  bool HasFailed() const override { return Failed; }
  bool TakeRanDry() override {
    ++Looks;
    return std::exchange(RanDry, false);
  }
  platform::FrameCount HeardFrames() override {
    if (Failed) return -1;
    CatchUp();
    return std::max<platform::FrameCount>(0, rendered_ - kLatency);
  }
  void LetRender() override { Render(48); }

  /// Renders all that the clock asks for.
  void CatchUp() {
    if (!IsOpen() || Failed) return;
    const platform::FrameCount due = (loop_.Now() - openedAt_).count() * 48 / 1000;
    if (due > rendered_) Render(due - rendered_);
  }

 private:
  void Render(platform::FrameCount frames) {
    if (Failed) return;
    std::vector<float> both(static_cast<std::size_t>(2 * frames));
    mixer_->RtRender(both.data(), frames);
    for (std::size_t i = 0; i < both.size(); i += 2) Out.samples.push_back(both[i]);
    rendered_ += frames;
  }

  SimulatedLoop& loop_;
  platform::RtMixer* mixer_ = nullptr;
  platform::FrameCount rendered_ = 0;
  base::MonotonicTime openedAt_;
};

}  // namespace tavlo::test
