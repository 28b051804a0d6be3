#pragma once

#include "platform/reach/hush.h"

namespace tavlo::test {

/// Counts how often the player was to be silent though no rule could be run.
class CountedHush : public platform::Hush {
 public:
  int silences = 0;

  void Silence() override { ++silences; }
};

}  // namespace tavlo::test
