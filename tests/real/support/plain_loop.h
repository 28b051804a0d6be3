#pragma once

#include <vector>

#include "base/loop.h"

namespace tavlo::test {

/// A loop on the real clock and without a toolkit: it sleeps until the next timer is due.
class PlainLoop : public base::Loop {
 public:
  base::MonotonicTime Now() const override;
  base::CalendarTime WallClock() const override;

  void Yield() override { RunPass(); }
  void Wait(base::Duration length) override;
  void Breathe() override { RunFeeds(); }

  /// Turns until `done` says so; false when `limit` passed first.
  bool WaitUntil(const std::function<bool()>& done, base::Duration limit);

  std::vector<base::MessageBox> Shown;

 protected:
  base::Reply ShowBox(const base::MessageBox& box) override;

 private:
  void SleepUntilNextDue(base::MonotonicTime end);
};

/// Lets real time pass without a pass of any loop.
void Sleep(base::Duration length);

}  // namespace tavlo::test
