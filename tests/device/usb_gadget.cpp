#include "usb_gadget.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "support/screen.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

const fs::path kGadget = "/sys/kernel/config/usb_gadget/pedal";
const fs::path kFunction = kGadget / "functions/hid.0";
const fs::path kConfiguration = kGadget / "configs/c.1";
constexpr const char* kBus = "dummy_udc.0";
constexpr const char* kReports = "/dev/hidg0";

/// These files take one write each.
bool Set(const fs::path& file, const std::string& value) {
  std::ofstream out(file, std::ios::binary);
  out << value << std::flush;
  return out.good();
}

std::string Hexadecimal(unsigned number) {
  char text[10];
  std::snprintf(text, sizeof text, "0x%04x", number);
  return text;
}

}  // namespace

bool UsbGadget::Plug(const HidMake& make) {
  Unplug();
  const std::size_t before = HidPedal::InputDevices().size();
  const std::vector<std::uint8_t> descriptor = HidPedal::Descriptor(make);
  fs::create_directory(kGadget);
  fs::create_directory(kFunction);
  fs::create_directory(kConfiguration);
  plugged_ = true;
  const bool described = Set(kGadget / "idVendor", Hexadecimal(make.vendor)) &&
                         Set(kGadget / "idProduct", Hexadecimal(make.product)) &&
                         Set(kFunction / "report_length", std::to_string(make.reportBytes)) &&
                         Set(kFunction / "report_desc", {descriptor.begin(), descriptor.end()});
  if (!described) return false;
  fs::create_directory_symlink(kFunction, kConfiguration / "hid.0");
  return Set(kGadget / "UDC", kBus) &&
         Until([&] { return HidPedal::InputDevices().size() > before; });
}

void UsbGadget::Unplug() {
  if (!plugged_) return;
  plugged_ = false;
  const std::size_t before = HidPedal::InputDevices().size();
  Set(kGadget / "UDC", "\n");
  std::error_code ignored;
  for (const fs::path& part : {kConfiguration / "hid.0", kConfiguration, kFunction, kGadget}) {
    fs::remove(part, ignored);
  }
  Until([&] { return HidPedal::InputDevices().size() < before; });
}

bool UsbGadget::Report(std::span<const std::uint8_t> bytes) const {
  const int handle = ::open(kReports, O_WRONLY | O_NONBLOCK | O_CLOEXEC);
  const bool sent = Until([&] {
    return ::write(handle, bytes.data(), bytes.size()) == static_cast<::ssize_t>(bytes.size());
  });
  ::close(handle);
  return sent;
}

}  // namespace tavlo::test
