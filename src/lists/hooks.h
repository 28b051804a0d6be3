#pragma once

#include <functional>

namespace tavlo::lists {

/// What the lists start in other rooms. A hook that nobody filled does nothing.
struct Hooks {
  std::function<void()> runRetrievalPasses;
  std::function<void()> countWaitingWork;
  std::function<void()> userActed;

  /// Brings finished files from the drop folders into the Queue.
  void RunRetrievalPasses() const { Call(runRetrievalPasses); }
  /// Takes the present figures of waiting work as seen, so that only later work raises an alert.
  void TakeWaitingWorkAsSeen() const { Call(countWaitingWork); }
  /// Somebody is at the desk: the next check for new work comes a full period later.
  void UserActed() const { Call(userActed); }

 private:
  static void Call(const std::function<void()>& hook) {
    if (hook) hook();
  }
};

}  // namespace tavlo::lists
