#pragma once

#include <cstdio>
#include <cstdlib>

namespace tavlo::fuzz {

/// Ends the run when the code under test has broken a promise; the input that did it is kept.
inline void Promise(bool kept, const char* text) {
  if (kept) return;
  std::fprintf(stderr, "broken promise: %s\n", text);
  std::abort();
}

}  // namespace tavlo::fuzz
