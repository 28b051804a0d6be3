#pragma once

#include "base/timer_queue.h"

namespace tavlo::pedals {

using base::operator""ms;

/// Time from one look at a pedal to the next while something goes on; a contact that bounces for
/// less is seen once.
inline constexpr base::Duration kPollInterval = 50ms;

/// Makes a tick one-shot: it stops the timer, and starts it again when the tick has ended or
/// failed, provided that `goesOn` still holds then and it was not started meanwhile. So a slow
/// tick cannot stack up.
class OneShot {
 public:
  OneShot(base::Timer& timer, const bool& goesOn) : timer_(timer), goesOn_(goesOn) {
    timer_.Stop();
  }
  ~OneShot() {
    if (goesOn_ && !rests_ && !timer_.Enabled()) timer_.Start();
  }
  OneShot(const OneShot&) = delete;

  /// Nothing goes on: the timer stays off until something comes.
  void Rest() { rests_ = true; }

 private:
  base::Timer& timer_;
  const bool& goesOn_;
  bool rests_ = false;
};

}  // namespace tavlo::pedals
