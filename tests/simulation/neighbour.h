#pragma once

#include <memory>

#include "simulation/chance.h"
#include "simulation/desk.h"
#include "simulation/trace.h"
#include "support/intake_bench.h"

namespace tavlo::simulation {

/// Another deck, on another machine, that sweeps the same drop folders into a Queue of its own. It
/// has neither window nor typist. Its runs come at any time, also between two operations of the
/// deck at the desk, and it is killed between any two of its own.
class Neighbour {
 public:
  /// Full path of its Queue, with a separator at its end.
  static std::string InQueue();

  Neighbour(Desk& desk, Chance chance, Trace& trace)
      : desk_(desk), chance_(chance), trace_(trace) {}

  /// One run over the folders as they are set at the desk. True when it was killed in the middle,
  /// which happens where it `mayBeKilled`.
  bool Sweep(bool mayBeKilled);
  bool IsAtWork() const { return atWork_; }
  /// It is about to ask something of the disk.
  void BeforeOperation();

 private:
  struct Killed {};

  void Start();

  Desk& desk_;
  Chance chance_;
  Trace& trace_;
  test::SimulatedLoop loop_;
  std::unique_ptr<test::IntakeDeck> deck_;
  int process_ = 0;
  bool atWork_ = false;
  /// So many operations are left to it; below 0 it is not killed.
  int operationsToLive_ = -1;
};

}  // namespace tavlo::simulation
