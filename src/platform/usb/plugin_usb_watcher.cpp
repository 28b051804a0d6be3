#include "platform/usb/plugin_usb_watcher.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <link.h>
#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <utility>

#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {
namespace {

using pedals::MonitorHandle;
using pedals::UsbPresence;

constexpr std::uint8_t kTrue = 1;
constexpr std::uint8_t kPedals = 7;
/// As much as the rules read at once.
constexpr std::size_t kMostBytesOfARead = 100;

/// How long each report is, as far as the bytes of several tell; 0 when they may be of either size.
std::size_t ReportSizeIn(std::size_t bytes) {
  if (bytes % 2 != 0) return 3;
  return bytes % 3 != 0 ? 2 : 0;
}

template <typename Function>
void Find(void* library, const char* name, Function& function) {
  function = reinterpret_cast<Function>(::dlsym(library, name));
}

/// Keeps one loaded object's bytes in memory, when it is the one that is looked for.
int LockSegments(dl_phdr_info* object, std::size_t, void* wanted) {
  if (object->dlpi_addr != *static_cast<const ElfW(Addr)*>(wanted)) return 0;
  for (int i = 0; i < object->dlpi_phnum; ++i) {
    const ElfW(Phdr)& segment = object->dlpi_phdr[i];
    if (segment.p_type != PT_LOAD) continue;
    ::mlock(reinterpret_cast<const void*>(object->dlpi_addr + segment.p_vaddr), segment.p_memsz);
  }
  return 1;
}

/// Reads all of a library now. Otherwise the kernel would read its code from the disk when it is
/// first run, and again when memory was short, on the thread that calls it. Where so much may not
/// be held it is left at that.
void HoldInMemory(void* library) {
  link_map* map = nullptr;
  if (::dlinfo(library, RTLD_DI_LINKMAP, static_cast<void*>(&map)) != 0) return;
  ElfW(Addr) base = map->l_addr;
  ::dl_iterate_phdr(LockSegments, &base);
}

}  // namespace

PluginUsbWatcher::PluginUsbWatcher(Errands& errands, std::string libraryPath)
    : errands_(errands), libraryPath_(std::move(libraryPath)) {}

PluginUsbWatcher::Calls PluginUsbWatcher::Load(const std::string& libraryPath) {
  Calls calls;
  // A pipe would keep the loader waiting for good. One that takes the file's place between this
  // look and the load would still do that; it is not guarded against, since it does not happen by
  // mistake.
  if (!OpenPlainFile(libraryPath, Links::Followed)) return calls;
  void* const library = ::dlopen(libraryPath.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) return calls;
  HoldInMemory(library);
  Find(library, "StartWatch", calls.startWatch);
  Find(library, "GetData", calls.getData);
  Find(library, "StopWatch", calls.stopWatch);
  Find(library, "PedalPresence", calls.pedalPresence);
  Find(library, "NewsDescriptor", calls.newsDescriptor);
  return calls;
}

void PluginUsbWatcher::Fetch() {
  const auto calls = std::make_shared<Calls>();
  const bool answered = errands_.Run(
      libraryPath_, [calls, path = libraryPath_](Errands::Sign&) { *calls = Load(path); });
  // A library that is loaded after that serves the next start of the watch.
  if (answered) calls_ = *calls;
}

bool PluginUsbWatcher::StartWatch(int product, int usagePage, int usage, MonitorHandle& monitor) {
  monitor = 0;
  if (!calls_.Complete()) Fetch();
  if (!calls_.Complete() || calls_.startWatch(product, usagePage, usage, &monitor) != kTrue) {
    return false;
  }
  news_ = FindNews(monitor);
  monitor_ = monitor;
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
  if (ahead_.empty()) {
    const bool read = TakeData(monitor, buffer, count);
    Follow(buffer.first(static_cast<std::size_t>(count)));
    return read;
  }
  std::vector<std::uint8_t>& reports = ahead_.front();
  const std::size_t given = std::min(reports.size(), buffer.size());
  std::ranges::copy_n(reports.begin(), static_cast<std::ptrdiff_t>(given), buffer.begin());
  count = static_cast<std::int32_t>(given);
  reports.erase(reports.begin(), reports.begin() + count);
  if (reports.empty()) ahead_.pop_front();
  return true;
}

bool PluginUsbWatcher::TakeData(MonitorHandle& monitor, std::span<std::uint8_t> buffer,
                                std::int32_t& count) {
  if (!calls_.Complete()) return false;
  const auto size = static_cast<std::int32_t>(buffer.size());
  if (calls_.getData(&monitor, buffer.data(), size, &count) != kTrue) return false;
  count = std::clamp(count, 0, size);
  return true;
}

bool PluginUsbWatcher::LetGo() {
  if (monitor_ == 0) return false;
  std::array<std::uint8_t, kMostBytesOfARead> reports{};
  std::int32_t count = 0;
  const bool read = TakeData(monitor_, reports, count);
  // The descriptor is quiet now, so whoever waits for it would not hear of what was taken.
  if (news_) news_->TellNow();
  if (!read || count == 0) return false;
  ahead_.emplace_back(reports.begin(), reports.begin() + count);
  return Follow(ahead_.back());
}

bool PluginUsbWatcher::Follow(std::span<const std::uint8_t> reports) {
  if (reportSize_ == 0) reportSize_ = ReportSizeIn(reports.size());
  bool letGo = false;
  for (std::size_t at = 0; reportSize_ > 0 && at + reportSize_ <= reports.size();
       at += reportSize_) {
    if (reports[at] != 0) continue;
    const bool held = (reports[at + 1] & kPedals) != 0;
    letGo = letGo || (held_ && !held);
    held_ = held;
  }
  return letGo;
}

bool PluginUsbWatcher::StopWatch(MonitorHandle& monitor) {
  // Its descriptor ends with the watch.
  news_.reset();
  monitor_ = 0;
  ahead_.clear();
  held_ = false;
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
  if (monitor == 0 || !news_ || !ahead_.empty()) return false;
  news_->Tell(listener);
  return true;
}

}  // namespace tavlo::platform
