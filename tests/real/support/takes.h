#pragma once

#include <functional>

namespace tavlo::test {

/// Takes a recording and expects something of it, in `take`, which must begin and end with the same
/// state of the player. Sound stutters where other programs keep those that make it from a
/// processor, and no player can help it. So a take of which something failed while that happened is
/// forgotten and taken again, up to twenty times in all. A take without such a disturbance counts
/// as it is, and so does one that broke off.
void Retake(const std::function<void()>& take);

}  // namespace tavlo::test
