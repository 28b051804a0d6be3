#pragma once

#include <cubeb/cubeb.h>

#include <array>
#include <atomic>
#include <cstddef>

#include "platform/sound/output_device.h"
#include "platform/sound/rt_supply.h"

namespace tavlo::platform {

/// The sound devices of the desktop, through PulseAudio (PipeWire's server speaks it too), or
/// through ALSA where neither runs.
class CubebDevice : public OutputDevice {
 public:
  /// Sound that is on its way to the ear. Longer costs a later start and stop, shorter costs
  /// wake-ups, and gaps where the machine is busy. So it begins with the shortest, and takes the
  /// next one for good once a device ran dry. A device without a server has no use for a short one.
  static constexpr std::array kLatencyMilliseconds = {15, 25};

  CubebDevice() = default;
  ~CubebDevice() override;
  CubebDevice(const CubebDevice&) = delete;
  CubebDevice& operator=(const CubebDevice&) = delete;

  std::vector<std::string> FindDevices() override;
  std::vector<std::string> LearnDevices(const std::vector<std::string>& present) override;
  int PreferredRate() override;
  bool Open(int index, int framesPerSecond, RtMixer& mixer) override;
  void Close() override;
  bool IsOpen() const override { return stream_ != nullptr; }
  bool HasFailed() const override { return rtFailed_.load(std::memory_order_acquire); }
  bool TakeRanDry() override;
  FrameCount HeardFrames() override;
  void LetRender() override;

 private:
  bool Connect();
  void Disconnect();
  void ForgetDevices();
  bool ListDevices();
  cubeb_devid Identify(int index);
  cubeb_devid IdentifyListed(const std::string& name) const;
  int LatencyMilliseconds() const;
  bool OnAServer() const;

  static long RtData(cubeb_stream* stream, void* self, const void* input, void* output,
                     long frames);
  static void RtGoFirst();
  static void RtState(cubeb_stream* stream, void* self, cubeb_state state);

  cubeb* context_ = nullptr;
  cubeb_stream* stream_ = nullptr;
  /// Kept because the identifiers in it are only valid as long; a lost connection empties it.
  cubeb_device_collection devices_{};
  /// What was answered last, by which a device is known again on a new connection.
  std::vector<std::string> names_;
  RtMixer* mixer_ = nullptr;
  std::size_t latency_ = 0;  ///< Place in kLatencyMilliseconds.
  RtSupply supply_;
  bool rtWentFirst_ = false;  ///< The rendering thread's own while a device renders.
  std::atomic<bool> rtFailed_{false};
};

}  // namespace tavlo::platform
