#pragma once

#include <hidapi/hidapi.h>

#include <memory>

#include "hid_port.h"

namespace tavlo::pedal_watch {

/// The kernel's raw input devices, through hidapi.
class HidapiPort : public HidPort {
 public:
  HidapiPort() = default;
  ~HidapiPort() override;
  HidapiPort(const HidapiPort&) = delete;

  std::vector<HidDevice> List() override;
  Opening Open(const std::string& path) override;
  void Close() override { device_.reset(); }
  std::optional<std::size_t> Read(std::span<std::uint8_t> buffer) override;

 private:
  struct Closer {
    void operator()(hid_device* device) const { hid_close(device); }
  };
  std::unique_ptr<hid_device, Closer> device_;
};

}  // namespace tavlo::pedal_watch
