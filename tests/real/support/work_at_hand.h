#pragma once

#include <functional>
#include <utility>

#include "platform/beside/side_thread.h"

namespace tavlo::test {

/// Work beside the loop that is done where it is asked for, or as late as a test wants.
class WorkAtHand : public platform::SideWork {
 public:
  /// From here on work waits for `Answer`.
  bool Stalls = false;
  int Asked = 0;

  void Do(std::function<void()> work) override {
    ++Asked;
    waiting_ = std::move(work);
    if (!Stalls) Answer();
  }
  /// Does what was asked for last, if that waits still.
  void Answer() {
    const std::function<void()> work = std::exchange(waiting_, {});
    if (work) work();
  }

 private:
  std::function<void()> waiting_;
};

}  // namespace tavlo::test
