#pragma once

#include <functional>
#include <memory>

namespace tavlo::platform {

/// Does beside the loop what may stall and what nobody waits for. Asked on the loop's thread.
class SideWork {
 public:
  virtual ~SideWork() = default;

  /// Has `work` done at some time; one work after the other, on any thread. What was asked for
  /// before and has not begun is forgotten. `work` may outlive whoever asks, so it owns all that it
  /// touches. Never waits. A std::exception that the work throws is forgotten with it; anything
  /// else would end the process.
  virtual void Do(std::function<void()> work) = 0;
};

/// The same on a thread of its own, which is there from the first work on and sleeps in between.
/// Where the process can have no thread, all work is forgotten.
class SideThread : public SideWork {
 public:
  SideThread();
  /// On the thread that asks. Waits up to 300 ms for work that has begun; after that it is left
  /// behind with its thread, since it stands in a call that gets no answer. What has not begun is
  /// forgotten.
  ~SideThread() override;
  SideThread(const SideThread&) = delete;

  void Do(std::function<void()> work) override;

 private:
  struct Shared;
  static void Run(Shared& shared);

  const std::shared_ptr<Shared> shared_;
};

}  // namespace tavlo::platform
