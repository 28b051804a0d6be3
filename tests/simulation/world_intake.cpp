#include <algorithm>
#include <array>
#include <chrono>

#include "base/text.h"
#include "intake/claims.h"
#include "intake/import_directories.h"
#include "simulation/places.h"
#include "simulation/world.h"

namespace tavlo::simulation {
namespace {

/// Of so many operations of the program one meets another program at work.
constexpr int kOperationsUndisturbed = 25;
/// Of a step, in which hours may pass.
constexpr int kMostInBetween = 40;
/// What the libraries answer when they fail.
constexpr std::array<int, 10> kFailures{1, 3, 4, 6, 10, 20, 22, 24, 27, 41};
constexpr std::array<std::chrono::seconds, 4> kTimesOfConversions{
    std::chrono::seconds{1}, std::chrono::seconds{20}, std::chrono::seconds{90},
    std::chrono::minutes{12}};
/// The second success of the header library.
constexpr int kHadAHeader = 5;

/// What has no kind of its own is marked with a long number at each of its dots, and where it must
/// be claimed for that with more in front.
bool FitsBehindItsMark(const std::string& name) {
  constexpr std::size_t kLongestMark = 16;
  constexpr std::size_t kLongestClaim = 40;
  const auto dots = static_cast<std::size_t>(std::ranges::count(name, '.'));
  return name.size() + dots * kLongestMark + kLongestClaim <= kMostBytesOfAName;
}

}  // namespace

void World::ActInBetween() {
  if (neighbour_.IsAtWork()) neighbour_.BeforeOperation();
  if (calm_ || inBetween_ || !desk_.Rooms() || !chance_.OneIn(kOperationsUndisturbed)) return;
  if (++betweenThisStep_ > kMostInBetween) return;
  inBetween_ = true;
  if (conditions_.hasNeighbour && chance_.OneIn(6)) {
    LetNeighbourSweep();
  } else {
    chance_.OneIn(3) ? recorders_.Begin() : recorders_.GoOn();
  }
  inBetween_ = false;
}

void World::TransferSome() {
  for (int count = 1 + chance_.Below(3); count > 0; --count) recorders_.WriteAtOnce();
}

void World::LetNeighbourSweep() {
  if (neighbour_.Sweep(conditions_.programIsKilled)) killed_ = true;
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

std::string World::LeftBehind() const {
  const store::WorkFolders& folders = desk_.Rooms()->folders;
  struct Swept {
    std::string folder;
    const char* ending;
  };
  const std::array<Swept, 5> all{{{folders.FtpQueuePath, ""},
                                  {folders.Ew2QueuePath, ".eW2"},
                                  {folders.Ds2QueuePath, ".dS2"},
                                  {folders.Eu2QueuePath, ".eU2"},
                                  {desk_.disk.CurrentFolder + "/", ".eE2"}}};
  // What a run has fetched so far waits for its end.
  const bool runIsOn = desk_.Main().bConnect.Caption.Get() == "Disconnect";
  for (const Swept& swept : all) {
    if (runIsOn && &swept == &all[0]) continue;
    for (const std::string& name : desk_.disk.NamesIn(swept.folder)) {
      const bool staysThere = &swept == &all[0] && !FitsBehindItsMark(name);
      const bool waits = !name.starts_with('.') && base::EndsInEitherCase(name, swept.ending);
      if ((!waits || staysThere) && !Ledger::IsClaim(name)) continue;
      if (ledger_.Knows(desk_.disk.Contents(swept.folder + name))) return swept.folder + name;
    }
  }
  return "";
}

std::vector<int> World::ClaimedDirectories() const {
  std::vector<int> numbers;
  for (int number = 0; number < intake::kImportDirectories; ++number) {
    const auto names = desk_.disk.NamesIn(
        intake::ImportDirectoryPath(desk_.Rooms()->folders, std::to_string(number)));
    if (std::ranges::any_of(names, &Ledger::IsClaim)) numbers.push_back(number);
  }
  return numbers;
}

void World::EndSession() {
  killed_ = true;
  desk_.disk.Heal();
}

}  // namespace tavlo::simulation
