#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tavlo::test {

/// What a USB device says of itself.
struct HidMake {
  std::uint16_t vendor = 0;
  std::uint16_t product = 0;
  std::uint8_t usagePage = 0;
  std::uint8_t usage = 0;
  std::uint8_t reportBytes = 0;
};

/// A pedal that this process makes up and the kernel takes for a USB one. It can say anything, as
/// fast as it likes. Takes the rights of root.
class HidPedal {
 public:
  HidPedal() = default;
  ~HidPedal() { Unplug(); }
  HidPedal(const HidPedal&) = delete;

  /// Plugs it in and waits until it can be seen; only root may read it then. False when the
  /// kernel does not take it.
  bool Plug(const HidMake& make);
  void Unplug();
  bool Report(std::span<const std::uint8_t> bytes) const;
  /// Lets everybody read the input devices that are plugged in, or root alone.
  static bool Permit(bool everybody);

  /// Paths of the input devices that are plugged in, of whatever make.
  static std::vector<std::string> InputDevices();
  /// Says in the language of input devices: three buttons of a bit each, filled up to whole bytes.
  static std::vector<std::uint8_t> Descriptor(const HidMake& make);

 private:
  int handle_ = -1;
};

}  // namespace tavlo::test
