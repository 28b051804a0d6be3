#pragma once

#include <optional>
#include <string>
#include <utility>

#include "base/loop.h"
#include "simulation/ledger.h"
#include "support/simulated_audio.h"

namespace tavlo::simulation {

/// Knows how far the dictation that was opened last may count as typed: as far as somebody heard
/// it, went by hand, or had gone before by what stood in its name. It asks the ear and the hand
/// alone, so that what the program believes can be held against it.
class Hearing {
 public:
  Hearing(base::Loop& loop, test::SimulatedPlayer& player) : loop_(loop), player_(player) {}

  /// The program could look into the file; `sound` is what can be heard of it, if anything.
  void Opened(const std::string& path, const std::optional<Recording>& sound);
  /// A hand or a foot has put the position there.
  void Chosen(double position);
  /// What was heard so far does not count any more.
  void Forget();

  /// Full path of the dictation that was opened last; empty before the first.
  const std::string& Path() const { return path_; }
  /// It was heard or brought to its end, or could not be played when it was opened.
  bool CameToItsEnd() const;
  /// The program has given a file another path. Looks at the position that a name stores.
  void Renamed(const std::string& from, const std::string& to);
  /// The empty text, or what was stored wrongly first since the last call.
  std::string TakeFault() { return std::exchange(fault_, ""); }

 private:
  /// The furthest sample that may count as typed.
  double Reach() const;
  double HalfASecond() const;

  base::Loop& loop_;
  test::SimulatedPlayer& player_;
  std::string path_;
  std::optional<Recording> sound_;
  bool couldNotBePlayed_ = false;
  double storedOrChosen_ = 0;
  std::string fault_;
};

}  // namespace tavlo::simulation
