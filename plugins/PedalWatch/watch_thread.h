#pragma once

#include <memory>
#include <thread>

#include "watch.h"

namespace tavlo::pedal_watch {

/// A watch that turns on a thread of its own until it is destroyed.
class WatchThread {
 public:
  WatchThread(const Picked& picked, std::unique_ptr<HidPort> port);

  Presence State() const { return watch_.State(); }
  ReportQueue& Reports() { return watch_.Reports(); }

 private:
  void Run(const std::stop_token& stop);

  std::unique_ptr<HidPort> port_;
  Watch watch_;
  std::jthread thread_;
};

}  // namespace tavlo::pedal_watch
