#pragma once

namespace tavlo::store {

/// Who tells the user how many documents the rescue folder holds. Rules move documents into it
/// around the lists that they build, so each list asks for the count at its end.
class RescueCount {
 public:
  virtual ~RescueCount() = default;

  /// Counts anew.
  virtual void CountRescued() = 0;
};

}  // namespace tavlo::store
