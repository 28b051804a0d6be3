#pragma once

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "platform/sound/output_device.h"
#include "support/sound_analysis.h"

namespace tavlo::test {

/// A device that asks for frames on a thread of its own, as real ones do, only faster: a second of
/// sound passes in an eighth of one. The ear trails by 20 ms of sound.
class ThreadedDevice : public platform::OutputDevice {
 public:
  static constexpr int kRate = 48000;
  static constexpr int kHaste = 8;

  ThreadedDevice() = default;
  ~ThreadedDevice() override { Close(); }
  ThreadedDevice(const ThreadedDevice&) = delete;

  std::vector<std::string> FindDevices() override { return {"System default", "Headset"}; }
  std::vector<std::string> LearnDevices(const std::vector<std::string>&) override {
    return FindDevices();
  }
  int PreferredRate() override { return kRate; }
  bool Open(int index, int framesPerSecond, platform::RtMixer& mixer) override;
  void Close() override;
  bool IsOpen() const override { return thread_.joinable(); }
  bool HasFailed() const override { return failed_.load(std::memory_order_acquire); }
  bool TakeRanDry() override { return false; }
  platform::FrameCount HeardFrames() override;
  void LetRender() override;

  /// Lets the open device die, as a headset does that is unplugged: on its own thread.
  void Unplug() { unplugged_.store(true, std::memory_order_release); }
  int Opens = 0;

  /// Everything that the devices have rendered, the left ear. Only while none is open.
  const Sound& Out() const { return out_; }

 private:
  void Run(platform::RtMixer& mixer);

  Sound out_{.rate = kRate};
  std::thread thread_;
  std::atomic<bool> over_{false};
  std::atomic<bool> unplugged_{false};
  std::atomic<bool> failed_{false};
  std::atomic<platform::FrameCount> rendered_{0};
};

}  // namespace tavlo::test
