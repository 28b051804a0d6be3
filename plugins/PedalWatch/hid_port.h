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

/// The input devices of this machine, of which one can be open. Called on the watch's thread only,
/// save for `Interrupt`.
class HidPort {
 public:
  virtual ~HidPort() = default;

  virtual std::vector<HidDevice> List() = 0;
  virtual Opening Open(const std::string& path) = 0;
  virtual void Close() = 0;
  /// Waits for a report of the open device and returns how many bytes it has; 0 when the wait ended
  /// without one, nothing when the device has gone.
  virtual std::optional<std::size_t> Read(std::span<std::uint8_t> buffer) = 0;
  /// Waits until `List` or `Open` may answer otherwise than when they were last asked.
  virtual void AwaitNews() = 0;
  /// Ends the wait that is under way and every later one. On any thread.
  virtual void Interrupt() = 0;
};

}  // namespace tavlo::pedal_watch
