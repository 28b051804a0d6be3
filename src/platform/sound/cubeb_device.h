#pragma once

#include <cubeb/cubeb.h>

#include <atomic>

#include "platform/sound/output_device.h"

namespace tavlo::platform {

/// The sound devices of the desktop, through PulseAudio (PipeWire's server speaks it too), or
/// through ALSA where neither runs.
class CubebDevice : public OutputDevice {
 public:
  /// Sound that is on its way to the ear. Longer costs a later start and stop, shorter costs
  /// wake-ups, and gaps where the machine is busy.
  static constexpr int kLatencyMilliseconds = 25;

  CubebDevice() = default;
  ~CubebDevice() override;
  CubebDevice(const CubebDevice&) = delete;
  CubebDevice& operator=(const CubebDevice&) = delete;

  std::vector<std::string> FindDevices() override;
  int PreferredRate() override;
  bool Open(int index, int framesPerSecond, RtMixer& mixer) override;
  void Close() override;
  bool IsOpen() const override { return stream_ != nullptr; }
  bool HasFailed() const override { return rtFailed_.load(std::memory_order_acquire); }
  FrameCount HeardFrames() override;
  void LetRender() override;

 private:
  bool Connect();
  void Disconnect();
  void ForgetDevices();
  bool ListDevices();
  cubeb_devid Identify(int index);

  static long RtData(cubeb_stream* stream, void* self, const void* input, void* output,
                     long frames);
  static void RtState(cubeb_stream* stream, void* self, cubeb_state state);

  cubeb* context_ = nullptr;
  cubeb_stream* stream_ = nullptr;
  /// Kept because the identifiers in it are only valid as long; a lost connection empties it.
  cubeb_device_collection devices_{};
  /// What the last FindDevices answered, by which a device is known again on a new connection.
  std::vector<std::string> names_;
  RtMixer* mixer_ = nullptr;
  std::atomic<bool> rtFailed_{false};
};

}  // namespace tavlo::platform
