#pragma once

#include <functional>
#include <memory>

namespace tavlo::platform {

/// Does beside the loop what may stall and what nobody waits for.
class SideWork {
 public:
  virtual ~SideWork() = default;

  /// Has `work` done at some time; one work after the other, on any thread. What was asked for
  /// before and has not begun is forgotten. `work` may outlive whoever asks, so it owns all that it
  /// touches. What it throws is forgotten with it.
  virtual void Do(std::function<void()> work) = 0;
};

/// The same on a thread of its own, which is there from the first work on and sleeps in between.
/// Where the process can have no thread, all work is forgotten.
class SideThread : public SideWork {
 public:
  SideThread();
  /// Gives work that has begun a moment to end. After that it is left behind with its thread: it
  /// stands in a call that gets no answer.
  ~SideThread() override;
  SideThread(const SideThread&) = delete;

  void Do(std::function<void()> work) override;

 private:
  struct Shared;
  static void Run(Shared& shared);

  const std::shared_ptr<Shared> shared_;
};

}  // namespace tavlo::platform
