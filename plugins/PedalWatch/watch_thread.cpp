#include "watch_thread.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <utility>

namespace tavlo::pedal_watch {
namespace {

/// From one look for a pedal to the next: what a person waits after plugging one in.
constexpr std::chrono::milliseconds kBetweenLooks{1000};

}  // namespace

WatchThread::WatchThread(const Picked& picked, std::unique_ptr<HidPort> port)
    : port_(std::move(port)),
      watch_(picked, *port_),
      thread_([this](const std::stop_token& stop) { Run(stop); }) {}

void WatchThread::Run(const std::stop_token& stop) {
  std::mutex mutex;
  std::condition_variable_any stopped;
  while (!stop.stop_requested()) {
    if (watch_.Turn()) continue;
    std::unique_lock lock(mutex);
    stopped.wait_for(lock, stop, kBetweenLooks, [] { return false; });
  }
}

}  // namespace tavlo::pedal_watch
