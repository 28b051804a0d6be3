#include "hid_pedal.h"

#include <fcntl.h>
#include <linux/input.h>
#include <linux/uhid.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "support/screen.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kButtons = 3;

bool Send(int handle, const uhid_event& event) {
  return ::write(handle, &event, sizeof event) == static_cast<::ssize_t>(sizeof event);
}

}  // namespace

bool HidPedal::Plug(const HidMake& make) {
  Unplug();
  const std::size_t before = InputDevices().size();
  handle_ = ::open("/dev/uhid", O_RDWR | O_CLOEXEC | O_NONBLOCK);
  if (handle_ < 0) return false;
  uhid_event event{};
  event.type = UHID_CREATE2;
  uhid_create2_req& create = event.u.create2;
  std::snprintf(reinterpret_cast<char*>(create.name), sizeof create.name, "Foot pedal");
  const std::vector<std::uint8_t> descriptor = Descriptor(make);
  create.rd_size = static_cast<std::uint16_t>(descriptor.size());
  std::ranges::copy(descriptor, create.rd_data);
  create.bus = BUS_USB;
  create.vendor = make.vendor;
  create.product = make.product;
  return Send(handle_, event) && Until([&] { return InputDevices().size() > before; });
}

void HidPedal::Unplug() {
  if (handle_ < 0) return;
  const std::size_t before = InputDevices().size();
  ::close(handle_);
  handle_ = -1;
  Until([&] { return InputDevices().size() < before; });
}

bool HidPedal::Report(std::span<const std::uint8_t> bytes) const {
  uhid_event event{};
  event.type = UHID_INPUT2;
  event.u.input2.size = static_cast<std::uint16_t>(bytes.size());
  std::ranges::copy(bytes, event.u.input2.data);
  return Send(handle_, event);
}

bool HidPedal::Permit(bool everybody) {
  return std::ranges::all_of(InputDevices(), [&](const std::string& path) {
    return ::chmod(path.c_str(), everybody ? 0666 : 0600) == 0;
  });
}

std::vector<std::uint8_t> HidPedal::Descriptor(const HidMake& make) {
  const auto filling = static_cast<std::uint8_t>(make.reportBytes * 8U - kButtons);
  return {0x05, make.usagePage, 0x09, make.usage,                  // what it is
          0xA1, 0x01,                                              // one application
          0x05, 0x09,           0x19, 0x01,       0x29, kButtons,  // buttons 1 to 3
          0x15, 0x00,           0x25, 0x01,                        // each 0 or 1
          0x75, 0x01,           0x95, kButtons,   0x81, 0x02,      // a bit for each
          0x75, 0x01,           0x95, filling,    0x81, 0x03,      // the bits that mean nothing
          0xC0};
}

std::vector<std::string> HidPedal::InputDevices() {
  std::vector<std::string> paths;
  for (const auto& entry : fs::directory_iterator("/dev")) {
    if (entry.path().filename().string().starts_with("hidraw")) paths.push_back(entry.path());
  }
  return paths;
}

}  // namespace tavlo::test
