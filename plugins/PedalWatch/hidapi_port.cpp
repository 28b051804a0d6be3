#include "hidapi_port.h"

#include <unistd.h>

namespace tavlo::pedal_watch {
namespace {

/// Short enough that the end of a watch, which waits for it, is not noticed.
constexpr int kWaitMilliseconds = 30;

}  // namespace

HidapiPort::~HidapiPort() {
  Close();
  hid_exit();
}

std::vector<HidDevice> HidapiPort::List() {
  std::vector<HidDevice> devices;
  hid_device_info* const first = hid_enumerate(0, 0);
  for (const hid_device_info* info = first; info != nullptr; info = info->next) {
    if (info->path == nullptr) continue;
    devices.push_back({.path = info->path,
                       .vendor = info->vendor_id,
                       .product = info->product_id,
                       .usagePage = info->usage_page,
                       .usage = info->usage});
  }
  hid_free_enumeration(first);
  return devices;
}

Opening HidapiPort::Open(const std::string& path) {
  device_.reset(hid_open_path(path.c_str()));
  if (device_) return Opening::Done;
  const bool stands = ::access(path.c_str(), F_OK) == 0;
  const bool permitted = ::access(path.c_str(), R_OK | W_OK) == 0;
  return stands && !permitted ? Opening::NoPermission : Opening::Failed;
}

std::optional<std::size_t> HidapiPort::Read(std::span<std::uint8_t> buffer) {
  const int bytes =
      hid_read_timeout(device_.get(), buffer.data(), buffer.size(), kWaitMilliseconds);
  if (bytes < 0) return {};
  return static_cast<std::size_t>(bytes);
}

}  // namespace tavlo::pedal_watch
