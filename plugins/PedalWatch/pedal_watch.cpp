#include "pedal_watch.h"

#include <cstddef>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <span>
#include <system_error>

#include "hidapi_port.h"
#include "watch_thread.h"

namespace {

using tavlo::pedal_watch::HidapiPort;
using tavlo::pedal_watch::Picked;
using tavlo::pedal_watch::WatchThread;

constexpr std::uint8_t kTrue = 1;
constexpr std::uint8_t kFalse = 0;

/// The handles of C calls need a place that outlives each call, so this library keeps one.
struct Watches {
  std::mutex mutex;
  std::map<std::int32_t, std::unique_ptr<WatchThread>> running;
  std::int32_t lastHandle = 0;

  WatchThread* Find(std::int32_t handle) {
    const auto found = running.find(handle);
    return found == running.end() ? nullptr : found->second.get();
  }
};

/// Never destroyed: a process that ends by exit() may still stop its watch behind that.
Watches& AllWatches() {
  static Watches& watches = *new Watches;
  return watches;
}

bool IsIdentifier(std::int32_t figure) {
  return figure >= 0 && figure <= std::numeric_limits<std::uint16_t>::max();
}

}  // namespace

std::uint8_t StartWatch(std::int32_t product, std::int32_t usagePage, std::int32_t usage,
                        std::int32_t* monitor) {
  if (monitor == nullptr) return kFalse;
  *monitor = 0;
  if (!IsIdentifier(product) || !IsIdentifier(usagePage) || !IsIdentifier(usage)) return kFalse;
  Watches& watches = AllWatches();
  const std::lock_guard lock(watches.mutex);
  try {
    const Picked picked{.product = static_cast<std::uint16_t>(product),
                        .usagePage = static_cast<std::uint16_t>(usagePage),
                        .usage = static_cast<std::uint16_t>(usage)};
    auto watch = std::make_unique<WatchThread>(picked, std::make_unique<HidapiPort>());
    watches.running.emplace(++watches.lastHandle, std::move(watch));
  } catch (const std::system_error&) {
    // The machine has no thread left, or the process no descriptor.
    return kFalse;
  }
  *monitor = watches.lastHandle;
  return kTrue;
}

std::uint8_t GetData(std::int32_t* monitor, std::uint8_t* buffer, std::int32_t size,
                     std::int32_t* count) {
  if (count != nullptr) *count = 0;
  if (monitor == nullptr || buffer == nullptr || count == nullptr || size < 0) return kFalse;
  Watches& watches = AllWatches();
  const std::lock_guard lock(watches.mutex);
  WatchThread* const watch = watches.Find(*monitor);
  if (watch == nullptr) return kFalse;
  const std::size_t taken = watch->TakeReports({buffer, static_cast<std::size_t>(size)});
  *count = static_cast<std::int32_t>(taken);
  return kTrue;
}

std::uint8_t StopWatch(std::int32_t* monitor) {
  if (monitor == nullptr) return kFalse;
  Watches& watches = AllWatches();
  const std::lock_guard lock(watches.mutex);
  const bool stopped = watches.running.erase(*monitor) == 1;
  *monitor = 0;
  return stopped ? kTrue : kFalse;
}

std::int32_t PedalPresence(std::int32_t monitor) {
  Watches& watches = AllWatches();
  const std::lock_guard lock(watches.mutex);
  const WatchThread* const watch = watches.Find(monitor);
  return watch == nullptr ? 0 : static_cast<std::int32_t>(watch->State());
}

std::int32_t NewsDescriptor(std::int32_t monitor) {
  Watches& watches = AllWatches();
  const std::lock_guard lock(watches.mutex);
  const WatchThread* const watch = watches.Find(monitor);
  return watch == nullptr ? -1 : watch->NewsDescriptor();
}
