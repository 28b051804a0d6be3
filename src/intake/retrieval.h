#pragma once

namespace tavlo::intake {

/// Brings finished files from the drop folders into the Queue.
class Retrieval {
 public:
  virtual ~Retrieval() = default;

  /// Runs all passes, one after the other.
  virtual void RunRetrievalPasses() = 0;
};

/// Spreads what servers sent.
class FtpSort {
 public:
  virtual ~FtpSort() = default;

  /// Runs the pass over the landing folder alone. While other passes run it does nothing: they, or
  /// the next ones, sort what has landed.
  virtual void RunFtpSort() = 0;
};

}  // namespace tavlo::intake
