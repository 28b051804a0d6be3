#include "platform/convert/life_signs.h"

#include <pthread.h>

#include <chrono>
#include <ctime>
#include <system_error>

namespace tavlo::platform {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

/// Several looks within the patience of who waits.
constexpr milliseconds kLookEach{500};

nanoseconds UsedOf(clockid_t usedProcessor) {
  timespec used{};
  ::clock_gettime(usedProcessor, &used);
  return seconds(used.tv_sec) + nanoseconds(used.tv_nsec);
}

}  // namespace

LifeSigns::LifeSigns(Errands::Sign& sign) : sign_(sign) {
  clockid_t usedProcessor{};
  if (::pthread_getcpuclockid(::pthread_self(), &usedProcessor) != 0) return;
  try {
    watcher_ = std::thread([this, usedProcessor] { Watch(usedProcessor); });
  } catch (const std::system_error&) {
    // The work is done all the same.
  }
}

LifeSigns::~LifeSigns() {
  {
    const std::lock_guard lock(mutex_);
    over_ = true;
  }
  changed_.notify_all();
  if (watcher_.joinable()) watcher_.join();
}

/// Work that has been silent for so long that nobody waits any more is not looked at for good.
void LifeSigns::Watch(clockid_t usedProcessor) {
  nanoseconds seen = UsedOf(usedProcessor);
  milliseconds silent{0};
  std::unique_lock lock(mutex_);
  while (silent < 2 * Errands::kPatience) {
    if (changed_.wait_for(lock, kLookEach, [this] { return over_; })) return;
    silent += kLookEach;
    const nanoseconds used = UsedOf(usedProcessor);
    if (used == seen) continue;
    seen = used;
    silent = milliseconds{0};
    sign_.Give();
  }
}

}  // namespace tavlo::platform
