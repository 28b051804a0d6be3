#pragma once

#include "intake/claims.h"

namespace tavlo::platform::desktop {

/// This process as others know it: the name of its machine, and its number there.
intake::ClaimOwner ThisProcess();

}  // namespace tavlo::platform::desktop
