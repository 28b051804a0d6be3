#pragma once

#include <hidapi/hidapi.h>

#include <string>

#include "hid_port.h"
#include "platform/wake/bell.h"

namespace tavlo::pedal_watch {

/// The kernel's raw input devices. hidapi lists them, since it knows how to read what they say of
/// themselves. It hands out no descriptor that could be waited for beside another, so reports are
/// read without it.
class HidapiPort : public HidPort {
 public:
  /// The folder is where devices come and go.
  explicit HidapiPort(const std::string& deviceFolder = "/dev");
  ~HidapiPort() override;
  HidapiPort(const HidapiPort&) = delete;

  std::vector<HidDevice> List() override;
  Opening Open(const std::string& path) override;
  void Close() override;
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer) override;
  void AwaitNews() override;
  void Interrupt() override { interrupted_.Ring(); }

 private:
  platform::Bell interrupted_;
  int news_ = -1;    ///< Tells of what changes in the folder; below 0 where the kernel does not.
  int device_ = -1;  ///< The open device.
  /// What is there may change without news, so the next wait for some is short.
  bool unsettled_ = true;
};

}  // namespace tavlo::pedal_watch
