#pragma once

#include "base/timer_queue.h"

namespace tavlo::remote {

/// Interval of a timer that is only ever started due: it brings what an edge tells to a rule of its
/// own, and nobody waits for it.
inline constexpr base::Duration kAtOnce = std::chrono::milliseconds{1};

}  // namespace tavlo::remote
