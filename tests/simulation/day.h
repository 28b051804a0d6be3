#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "simulation/conditions.h"
#include "simulation/desk.h"
#include "simulation/ledger.h"
#include "simulation/trace.h"
#include "simulation/typist.h"
#include "simulation/world.h"

namespace tavlo::simulation {

/// One day from one seed: the typist and the world act by turns, and after each step everything
/// that must be true is looked at. Now and then all faults end, and the program must settle.
class Day {
 public:
  explicit Day(std::uint64_t seed, bool aloud = false);

  /// The empty text, or what was found wrong; then nothing more happens.
  std::string Run(int steps);

  const Conditions& Circumstances() const { return conditions_; }
  const Trace& Recorded() const { return trace_; }

 private:
  std::string Step();
  std::string Settle();
  std::string SettleCalmly();
  /// What comes while nobody does anything is told of, or brought in, by the next check.
  std::string SettleTheWatch();
  /// Everything that the server has can be fetched.
  std::string SettleTheServer();
  /// Every claim is given back and every finished file taken, once all folders answer.
  std::string SettleFolders();
  /// Since so many boxes stood in the record of the loop, a run of the passes has said why it ended
  /// before it was through.
  bool PassesEndedEarly(std::size_t boxes) const;
  std::string FollowTheEndOfTheSession();
  void Restart();
  void Perish();
  std::string Look();
  void NoteWhatLedToIt();
  /// The program has just ended by itself.
  std::string LookAtTheEnd();
  std::string CompareListWithFolder(const forms::Table& list, const std::string& folder);
  void RecordStep();

  Conditions conditions_;
  Chance chance_;
  Trace trace_;
  Desk desk_{conditions_};
  Ledger ledger_{test::kRoot};
  World world_;
  Typist typist_;
};

}  // namespace tavlo::simulation
