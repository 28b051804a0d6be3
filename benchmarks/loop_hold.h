#pragma once

#include <QObject>
#include <chrono>

namespace tavlo::bench {

/// How long the loop is held: the most processor time that its thread uses between two looks at the
/// desktop's events, as long as this lives. A look is one for the toolkit's own dispatcher, so what
/// the looks themselves cost counts, too. On the loop's thread.
class LoopHold {
 public:
  LoopHold();

  /// Counts what was used since the last look as well.
  double Milliseconds();

 private:
  void Look();

  std::chrono::nanoseconds atLastLook_;
  std::chrono::nanoseconds most_{0};
  QObject context_;  ///< The connections end with it.
};

}  // namespace tavlo::bench
