#pragma once

#include <memory>
#include <string>
#include <utility>

#include "platform/reach/errands.h"

namespace tavlo::platform {

/// Lets go of what has something open below `path`: to close it may stall as well as to open it.
/// Where the place is out of reach it stays open until the process ends.
template <typename Held>
void LetGo(Errands& errands, const std::string& path, std::shared_ptr<Held> held) {
  // Owned by nobody, so that an errand that is refused closes nothing on this thread.
  auto* const last = new std::shared_ptr<Held>(std::move(held));
  errands.Run(path, [last](Errands::Sign&) { delete last; });
}

}  // namespace tavlo::platform
