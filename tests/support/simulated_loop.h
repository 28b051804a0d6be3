#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "base/loop.h"

namespace tavlo::test {

/// A loop in virtual time: it jumps from due time to due time, so that a working day runs in
/// milliseconds. Nothing moves unless a test (or a wait inside a rule) moves it.
class SimulatedLoop : public base::Loop {
 public:
  base::MonotonicTime Now() const override { return {now_}; }
  base::CalendarTime WallClock() const override;

  void Yield() override { RunPass(); }
  void Wait(base::Duration length) override;
  void Breathe() override;
  bool BreatheUntil(const std::function<bool()>& done, base::MonotonicTime limit) override;
  bool TurnUntil(const std::function<bool()>& done, base::MonotonicTime limit) override;

  /// Runs everything that becomes due while `length` passes, each at its own moment.
  void Advance(base::Duration length) { Wait(length); }
  /// Lets `length` pass in one jump, as a machine that was busy or asleep does, then makes one
  /// pass.
  void Oversleep(base::Duration length);
  /// Lets time pass without a pass of the loop: a rule that computes for long.
  void Busy(base::Duration length) { now_ += length; }

  /// Sets the wall clock; it goes on with the loop's time from here.
  void SetWallClock(base::CalendarTime moment);

  /// What the person in front of the boxes will do: the reply, after `delay` of looking at it, with
  /// `meanwhile` run while the box stands. A box that the test did not expect is answered Ok (or
  /// No) at once and stands in `Shown` like all others.
  struct Answer {
    base::Reply reply = base::Reply::Ok;
    base::Duration delay{0};
    std::function<void()> meanwhile;
  };
  void Expect(Answer answer) { answers_.push_back(std::move(answer)); }
  std::vector<base::MessageBox> Shown;
  int Breaths = 0;
  /// How long BreatheUntil has waited, all in all.
  base::Duration BreathedFor{0};

  /// Called once a box has closed and none is open.
  std::function<void()> OnLastBoxClosed;

 protected:
  base::Reply ShowBox(const base::MessageBox& box) override;
  void LastBoxClosed() override {
    if (OnLastBoxClosed) OnLastBoxClosed();
  }

 private:
  base::Duration now_{0};
  /// Milliseconds between 1970 and the wall clock's start, in local time.
  std::int64_t wallClockStart_ = 1'078'840'000'000;
  std::deque<Answer> answers_;
};

}  // namespace tavlo::test
