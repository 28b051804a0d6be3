#pragma once

#include <sys/types.h>

#include <cstdint>
#include <string>
#include <vector>

#include "hid_pedal.h"
#include "serial_box.h"
#include "usb_gadget.h"

namespace tavlo::test {

/// The picked USB pedal.
inline constexpr HidMake kPickedPedal{0x05F3, 0x00FF, 0x0C, 0x03, 2};
/// Number of the port that the serial box plugs into.
inline constexpr const char* kSerialPort = "5";

/// Pedals that are plugged in and pressed. A process of its own keeps them, which has the rights of
/// root while this one may give up its own. Each call returns when the thing has been done; false
/// when it could not be.
class Hardware {
 public:
  /// Must be made before this process has threads.
  Hardware();
  ~Hardware();
  Hardware(const Hardware&) = delete;

  bool PlugPedal(const HidMake& make = kPickedPedal);
  bool UnplugPedal();
  /// One report after the other.
  bool Report(const std::vector<std::vector<std::uint8_t>>& reports);
  /// The same for the picked pedal, by the bits alone: 1 left, 2 center, 4 right.
  bool Press(const std::vector<std::uint8_t>& bits);
  /// Does what the udev rule does for whoever sits at the desk, or takes it back.
  bool PermitPedal(bool everybody = true);

  /// The same on a real bus, which is slower and has what udev looks at.
  bool PlugBusPedal(const HidMake& make = kPickedPedal);
  bool UnplugBusPedal();
  bool PressOnBus(std::uint8_t bits);
  /// What udev says that it makes of the one input device that is plugged in, with the rules of the
  /// system and this file of ours beside them; empty when it could not be asked.
  std::string AskUdev(const std::string& rulesPath);

  bool PlugSerialBox();
  bool UnplugSerialBox();
  SerialWires& Wires() { return *wires_; }

 private:
  enum class Deed : std::uint8_t {
    PlugPedal,
    UnplugPedal,
    Report,
    Permit,
    PlugBusPedal,
    UnplugBusPedal,
    ReportOnBus,
    AskUdev,
    PlugBox,
    UnplugBox
  };
  struct Request {
    Deed deed = Deed::UnplugPedal;
    HidMake make;
    bool everybody = false;
    std::uint8_t size = 0;
    std::uint8_t bytes[8] = {};
    char path[1024] = {};
  };
  struct Keeper;

  bool Do(const Request& request) const;
  [[noreturn]] static void Serve(int socket, SerialWires& wires);

  SerialWires* wires_;
  int socket_ = -1;
  pid_t keeper_ = -1;
};

}  // namespace tavlo::test
