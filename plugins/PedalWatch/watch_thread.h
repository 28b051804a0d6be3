#pragma once

#include <memory>
#include <thread>

#include "watch.h"

namespace tavlo::pedal_watch {

/// A watch that turns on a thread of its own until it is destroyed.
class WatchThread {
 public:
  /// Throws std::system_error when the machine has no thread left.
  WatchThread(const Picked& picked, std::unique_ptr<HidPort> port);
  ~WatchThread();
  WatchThread(const WatchThread&) = delete;

  Presence State() const { return watch_.State(); }
  std::size_t TakeReports(std::span<std::uint8_t> buffer) { return watch_.TakeReports(buffer); }
  int NewsDescriptor() const { return watch_.NewsDescriptor(); }

 private:
  void Run(const std::stop_token& stop);

  std::unique_ptr<HidPort> port_;
  Watch watch_;
  std::jthread thread_;
};

}  // namespace tavlo::pedal_watch
