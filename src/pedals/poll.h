#pragma once

#include "base/timer_queue.h"

namespace tavlo::pedals {

using base::operator""ms;

/// Time from one look at a pedal to the next; it bounds how late a press is noticed.
inline constexpr base::Duration kPollInterval = 50ms;

/// Makes a tick one-shot: it stops the timer, and starts it again when the tick has ended or
/// failed, provided that `goesOn` still holds then. So a slow tick cannot stack up.
class OneShot {
 public:
  OneShot(base::Timer& timer, const bool& goesOn) : timer_(timer), goesOn_(goesOn) {
    timer_.Stop();
  }
  ~OneShot() {
    if (goesOn_) timer_.Start();
  }
  OneShot(const OneShot&) = delete;

 private:
  base::Timer& timer_;
  const bool& goesOn_;
};

}  // namespace tavlo::pedals
