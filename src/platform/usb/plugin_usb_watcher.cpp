#include "platform/usb/plugin_usb_watcher.h"

#include <dlfcn.h>
#include <fcntl.h>

#include <utility>

#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {
namespace {

using pedals::MonitorHandle;
using pedals::UsbPresence;

constexpr std::uint8_t kTrue = 1;

template <typename Function>
void Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
}

}  // namespace

PluginUsbWatcher::PluginUsbWatcher(std::string libraryPath)
    : libraryPath_(std::move(libraryPath)) {}

void PluginUsbWatcher::Load() {
  // A pipe would keep the loader waiting for good. One that takes the file's place between this
  // look and the load would still do that; it is not guarded against, since it does not happen by
  // mistake.
  if (!OpenPlainFile(libraryPath_, Links::Followed)) return;
  void* const library = ::dlopen(libraryPath_.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return;
  Find(library, "StartWatch", calls_.startWatch);
  Find(library, "GetData", calls_.getData);
  Find(library, "StopWatch", calls_.stopWatch);
  Find(library, "PedalPresence", calls_.pedalPresence);
  Find(library, "NewsDescriptor", calls_.newsDescriptor);
}

bool PluginUsbWatcher::StartWatch(int product, int usagePage, int usage, MonitorHandle& monitor) {
  monitor = 0;
  if (!calls_.Complete()) Load();
  if (!calls_.Complete() || calls_.startWatch(product, usagePage, usage, &monitor) != kTrue) {
    return false;
  }
  news_ = FindNews(monitor);
  return true;
}

std::unique_ptr<ReadableOnce> PluginUsbWatcher::FindNews(MonitorHandle monitor) const {
  if (!calls_.newsDescriptor) return {};
  const int descriptor = calls_.newsDescriptor(monitor);
  if (::fcntl(descriptor, F_GETFD) < 0) return {};
  return std::make_unique<ReadableOnce>(descriptor);
}

bool PluginUsbWatcher::GetData(MonitorHandle& monitor, std::span<std::uint8_t> buffer,
                               std::int32_t& count) {
  count = 0;
  if (!calls_.Complete()) return false;
  const auto size = static_cast<std::int32_t>(buffer.size());
  return calls_.getData(&monitor, buffer.data(), size, &count) == kTrue;
}

bool PluginUsbWatcher::StopWatch(MonitorHandle& monitor) {
  // Its descriptor ends with the watch.
  news_.reset();
  const bool stopped = calls_.Complete() && calls_.stopWatch(&monitor) != 0;
  monitor = 0;
  return stopped;
}

UsbPresence PluginUsbWatcher::Presence(MonitorHandle monitor) {
  if (monitor == 0) return UsbPresence::NotWatched;
  if (!calls_.pedalPresence) return UsbPresence::Ready;
  switch (calls_.pedalPresence(monitor)) {
    case 1:
      return UsbPresence::NoPedal;
    case 2:
      return UsbPresence::NoPermission;
    case 3:
      return UsbPresence::Ready;
    default:
      return UsbPresence::NotWatched;
  }
}

bool PluginUsbWatcher::TellOnce(MonitorHandle monitor, base::Listener& listener) {
  if (monitor == 0 || !news_) return false;
  news_->Tell(listener);
  return true;
}

}  // namespace tavlo::platform
