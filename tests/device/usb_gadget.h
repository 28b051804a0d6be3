#pragma once

#include "hid_pedal.h"

namespace tavlo::test {

/// A pedal that hangs on a USB bus of its own and goes the whole way through the kernel's USB
/// drivers: it has what udev rules look at. Its reports come no faster than such a bus asks for
/// them. Takes the rights of root.
class UsbGadget {
 public:
  UsbGadget() = default;
  ~UsbGadget() { Unplug(); }
  UsbGadget(const UsbGadget&) = delete;

  /// Plugs it in and waits until it can be seen. False when the kernel does not take it.
  bool Plug(const HidMake& make);
  void Unplug();
  /// Waits until the report before has been read; false when it is not.
  bool Report(std::span<const std::uint8_t> bytes) const;

 private:
  bool plugged_ = false;
};

}  // namespace tavlo::test
