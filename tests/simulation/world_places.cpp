#include <chrono>
#include <string>
#include <vector>

#include "simulation/world.h"

namespace tavlo::simulation {

using Late = test::SimulatedPlaces::Late;

namespace {

/// Calls of a slow folder take up to so long, which is less than the program's patience.
constexpr int kSlowestMilliseconds = 1500;

}  // namespace

void World::SlowFolder() {
  const std::chrono::milliseconds length{chance_.Below(kSlowestMilliseconds)};
  desk_.disk.Places.SlowDown(SomePlace(), length);
}

void World::StallFolder() {
  desk_.disk.Places.Stall(SomePlace());
  wasLate_ = true;
  MayComeBackSoon();
}

void World::StallSoon() {
  desk_.disk.StallAtOperation(1 + chance_.Below(20), SomePlace());
  wasLate_ = true;
  MayComeBackSoon();
}

void World::MayComeBackSoon() {
  if (!chance_.OneIn(2)) return;
  comesBack_.SetInterval(std::chrono::milliseconds{1 + chance_.Below(15'000)});
  comesBack_.Start();
}

void World::AnswerLate() {
  comesBack_.Stop();
  wasLate_ = wasLate_ || desk_.disk.Places.AnyStalls();
  desk_.disk.Places.Mend(SomeOutcome());
  desk_.disk.ForgetStall();
}

void World::ForgetProgram() {
  // Nobody is left who would take back the copy of a move that is finished now.
  struck_ = struck_ || desk_.disk.Places.AnyOwes();
  desk_.disk.Places.ForgetProcess(SomeOutcome());
  ledger_.ProgramIsGone();
}

std::string World::SomePlace() {
  // What stalls is a mount: the root as a whole, or a folder with a file system of its own.
  std::vector<std::string> places = conditions_.fileSystems;
  places.emplace_back("");
  return Desk::Path(chance_.Pick(places));
}

Late World::SomeOutcome() { return chance_.OneIn(2) ? Late::Happens : Late::Fails; }

}  // namespace tavlo::simulation
