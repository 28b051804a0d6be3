#pragma once

namespace tavlo::intake {

/// Brings finished files from the drop folders into the Queue.
class Retrieval {
 public:
  virtual ~Retrieval() = default;

  /// Runs all passes, one after the other.
  virtual void RunRetrievalPasses() = 0;
};

}  // namespace tavlo::intake
