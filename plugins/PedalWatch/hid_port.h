#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace tavlo::pedal_watch {

/// An input device as the system lists it.
struct HidDevice {
  std::string path;
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint16_t usagePage = 0;
  std::uint16_t usage = 0;
};

enum class Opening { Done, NoPermission, Failed };

/// The input devices of this machine, of which one can be open. Called on the watch's thread only.
class HidPort {
 public:
  virtual ~HidPort() = default;

  virtual std::vector<HidDevice> List() = 0;
  virtual Opening Open(const std::string& path) = 0;
  virtual void Close() = 0;
  /// Waits a short while for a report of the open device and returns how many bytes it has; 0 when
  /// none came, nothing when the device has gone.
  virtual std::optional<std::size_t> Read(std::span<std::uint8_t> buffer) = 0;
};

}  // namespace tavlo::pedal_watch
