#include "hidapi_port.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace tavlo::pedal_watch {
namespace {

/// Devices that come and go, and those that become readable: the udev rule takes effect a moment
/// after the device is there.
constexpr std::uint32_t kNews = IN_CREATE | IN_DELETE | IN_MOVED_TO | IN_MOVED_FROM | IN_ATTRIB;

/// From one look to the next where news cannot be relied on.
constexpr int kBetweenLooksMilliseconds = 1000;
constexpr int kForGood = -1;

/// Hears of the folder; below 0 where the kernel tells nothing of it.
int HearOf(const std::string& folder) {
  const int news = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (news >= 0 && ::inotify_add_watch(news, folder.c_str(), kNews) >= 0) return news;
  if (news >= 0) ::close(news);
  return -1;
}

}  // namespace

HidapiPort::HidapiPort(const std::string& deviceFolder) : news_(HearOf(deviceFolder)) {}

HidapiPort::~HidapiPort() {
  Close();
  if (news_ >= 0) ::close(news_);
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
  Close();
  device_ = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  if (device_ >= 0) return Opening::Done;
  if (errno == EACCES || errno == EPERM) return Opening::NoPermission;
  unsettled_ = true;
  return Opening::Failed;
}

void HidapiPort::Close() {
  if (device_ >= 0) ::close(std::exchange(device_, -1));
}

std::optional<std::size_t> HidapiPort::Read(std::span<std::uint8_t> buffer) {
  std::array<pollfd, 2> waited{
      pollfd{.fd = device_, .events = POLLIN, .revents = 0},
      pollfd{.fd = interrupted_.Descriptor(), .events = POLLIN, .revents = 0}};
  if (::poll(waited.data(), waited.size(), kForGood) < 0) return 0;
  const short came = waited[0].revents;
  // What a device said before it went is still read.
  if ((came & POLLIN) == 0) {
    if ((came & (POLLERR | POLLHUP | POLLNVAL)) == 0) return 0;
    unsettled_ = true;
    return {};
  }
  const ssize_t bytes = ::read(device_, buffer.data(), buffer.size());
  if (bytes >= 0) return static_cast<std::size_t>(bytes);
  if (errno == EAGAIN || errno == EINTR) return 0;
  // Its node may stay, and then no news comes of it.
  unsettled_ = true;
  return {};
}

void HidapiPort::AwaitNews() {
  std::array<pollfd, 2> waited{
      pollfd{.fd = news_, .events = POLLIN, .revents = 0},
      pollfd{.fd = interrupted_.Descriptor(), .events = POLLIN, .revents = 0}};
  const bool waitsForGood = news_ >= 0 && !unsettled_;
  ::poll(waited.data(), waited.size(), waitsForGood ? kForGood : kBetweenLooksMilliseconds);
  unsettled_ = false;
  alignas(inotify_event) std::array<char, 4096> events{};
  while (news_ >= 0 && ::read(news_, events.data(), events.size()) > 0) {
    // A device may be told of a moment before it can be listed and opened.
    unsettled_ = true;
  }
}

}  // namespace tavlo::pedal_watch
