#include <array>
#include <chrono>

#include "simulation/places.h"
#include "simulation/world.h"

namespace tavlo::simulation {
namespace {

/// Of so many operations of the program one meets another program at work.
constexpr int kOperationsUndisturbed = 25;
/// What the libraries answer when they fail.
constexpr std::array<int, 10> kFailures{1, 3, 4, 6, 10, 20, 22, 24, 27, 41};
constexpr std::array<std::chrono::seconds, 4> kTimesOfConversions{
    std::chrono::seconds{1}, std::chrono::seconds{20}, std::chrono::seconds{90},
    std::chrono::minutes{12}};
/// The second success of the header library.
constexpr int kHadAHeader = 5;

}  // namespace

void World::ActInBetween() {
  if (calm_ || inBetween_ || !desk_.Rooms() || !chance_.OneIn(kOperationsUndisturbed)) return;
  inBetween_ = true;
  chance_.OneIn(3) ? recorders_.Begin() : recorders_.GoOn();
  inBetween_ = false;
}

void World::PutOnDesktop() {
  const std::string name = FreeName(kDesktop);
  if (!name.empty()) desk_.disk.WithFile(kDesktop + name, NewContents());
}

void World::BreakConversion() {
  test::SimulatedConversion& libraries = desk_.conversionLibraries;
  switch (chance_.Below(5)) {
    case 0:
      libraries.status = chance_.Pick(kFailures);
      break;
    case 1:
      libraries.result =
          static_cast<std::uint8_t>(chance_.OneIn(2) ? kHadAHeader : chance_.Pick(kFailures));
      break;
    case 2:
      libraries.givesNoAnswer = conditions_.foldersAreLate;
      wasLate_ = wasLate_ || libraries.givesNoAnswer;
      break;
    case 3:
      libraries.makesNothing = chance_.OneIn(4);
      break;
    default:
      libraries.takes = chance_.Pick(kTimesOfConversions);
      break;
  }
}

void World::MendConversion() {
  test::SimulatedConversion& libraries = desk_.conversionLibraries;
  libraries.status = 0;
  libraries.result = 0;
  libraries.givesNoAnswer = false;
  libraries.makesNothing = false;
  libraries.takes = base::Duration{0};
}

void World::EndSession() {
  killed_ = true;
  desk_.disk.Heal();
}

}  // namespace tavlo::simulation
