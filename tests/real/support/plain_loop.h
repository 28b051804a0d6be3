#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "base/loop.h"
#include "platform/wake/descriptor_waits.h"
#include "support/patience.h"

namespace tavlo::test {

/// A loop on the real clock and without a toolkit: it sleeps until the next timer is due or a
/// descriptor that it waits for can be read.
class PlainLoop : public base::Loop, public platform::DescriptorWaits {
 public:
  base::MonotonicTime Now() const override;
  base::CalendarTime WallClock() const override;

  void Yield() override { RunPass(); }
  void Wait(base::Duration length) override;
  void Breathe() override { RunFeeds(); }
  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override;
  bool TurnUntil(const std::function<bool()>& done, base::MonotonicTime limit) override {
    return WaitUntil(done, limit - Now());
  }
  std::unique_ptr<platform::DescriptorWait> WaitFor(int descriptor, std::string name,
                                                    std::function<void()> call) override;
  std::unique_ptr<platform::DescriptorWait> WaitInBreathsToo(int descriptor, std::string name,
                                                             std::function<void()> call) override;

  /// Turns until `done` says so; false when `limit` passed first.
  bool WaitUntil(const std::function<bool()>& done, base::Duration limit);

  std::vector<base::MessageBox> Shown;
  int Wakenings = 0;  ///< How often it has slept and woken.

 protected:
  base::Reply ShowBox(const base::MessageBox& box) override;

 private:
  class Wakening;

  enum class Sleep { Whole, Breath };

  /// In a breath nothing but feeds and the waits that are taken in one end the sleep.
  void SleepUntilNextDue(base::MonotonicTime end, Sleep sleep);

  std::vector<Wakening*> waits_;
};

/// Lets real time pass without a pass of any loop.
void Sleep(base::Duration length);

}  // namespace tavlo::test
