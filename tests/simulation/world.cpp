#include "simulation/world.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "simulation/names.h"
#include "simulation/places.h"
#include "support/documents.h"

namespace tavlo::simulation {
namespace {

using store::DiskResult;
using test::SimulatedDisk;
using test::SimulatedPlaces;

constexpr std::array kFolders{kInQueue, kCompleted, kRescued};
constexpr std::array kVanishing{"/Files/InQueue", "/Files/Completed", "/Files/Rescued", "/Prompts"};
constexpr std::array kFaults{DiskResult::NoSpace, DiskResult::Failed, DiskResult::OtherFileSystem,
                             DiskResult::NoAccess, DiskResult::NotFound};
constexpr std::array<playback::SampleCount, 8> kLengths{0,      1,      7,       4000,
                                                        80'000, 80'000, 400'000, 20'000'000};
constexpr std::array kRates{8000, 11'025, 16'000, 44'100};
constexpr std::uint64_t kPlentyOfSpace = 1'000'000'000;
/// Of a move to another file system. The wave of a conversion is none.
constexpr std::string_view kCopyUnderWay = ".TavloDeckMove";
/// Files in a folder from which somebody begins to clear it.
constexpr std::size_t kFullFolder = 40;

}  // namespace

World::World(Desk& desk, Ledger& ledger, const Conditions& conditions, Chance chance, Trace& trace)
    : desk_(desk),
      ledger_(ledger),
      conditions_(conditions),
      chance_(chance),
      trace_(trace),
      recorders_(desk, ledger, chance.Child("recorders"), trace),
      neighbour_(desk, chance.Child("neighbour"), trace),
      serverSide_(desk, ledger, conditions, chance.Child("server"), trace),
      comesBack_(desk.loop, "a late folder", std::chrono::seconds{1}, base::TimerKind::Feed) {
  comesBack_.OnTick = [this] {
    comesBack_.Stop();
    AnswerLate();
  };
  recorders_.NewContents = [this] { return NewContents(); };
  serverSide_.NewContents = [this] { return NewContents(); };
  desk_.disk.BetweenOperations = [this] { ActInBetween(); };
  desk_.disk.ForEachFile([this](const std::string&, const std::string& contents) {
    if (Recording::Of(contents)) ledger_.Came(contents);
  });
  std::ranges::copy_if(Events(), std::back_inserter(possible_), [this](const Event& event) {
    return !event.needs || conditions_.*event.needs;
  });
}

const std::vector<World::Event>& World::Events() {
  static const std::vector<Event> events{
      {"drop", 30, nullptr, &World::DropDictation},
      {"drop many", 1, nullptr, &World::DropMany},
      {"begin a slow drop", 6, nullptr, &World::BeginSlowDrop},
      {"write into a drop folder", 30, nullptr, &World::WriteIntoDropFolder},
      {"go on writing", 40, nullptr, &World::GoOnWriting},
      {"a neighbour sweeps", 8, &Conditions::hasNeighbour, &World::LetNeighbourSweep},
      {"something happens at the server", 30, nullptr, &World::ActAtTheServer},
      {"put on the desktop", 4, nullptr, &World::PutOnDesktop},
      {"conversions change", 5, nullptr, &World::BreakConversion},
      {"conversions are mended", 5, nullptr, &World::MendConversion},
      {"collect", 20, nullptr, &World::Collect},
      {"make read-only", 3, nullptr, &World::MakeReadOnly},
      {"take away", 4, &Conditions::othersInterfere, &World::TakeAway},
      {"change", 4, &Conditions::othersInterfere, &World::Change},
      {"interfere", 4, &Conditions::othersInterfere, &World::InterfereWithNextCopy},
      {"bar a file", 3, &Conditions::foldersVanish, &World::BarFile},
      {"break a listing", 4, &Conditions::foldersVanish, &World::BreakListing},
      {"remove a folder", 3, &Conditions::foldersVanish, &World::RemoveEmptyFolder},
      {"mend the folders", 8, &Conditions::foldersVanish, &World::MendFolders},
      {"a folder is slow", 3, &Conditions::foldersAreLate, &World::SlowFolder},
      {"a folder stalls", 4, &Conditions::foldersAreLate, &World::StallFolder},
      {"a folder stalls soon", 8, &Conditions::foldersAreLate, &World::StallSoon},
      {"a late folder answers", 10, &Conditions::foldersAreLate, &World::AnswerLate},
      {"disk fails", 10, &Conditions::diskFails, &World::FailDisk},
      {"disk is full", 3, &Conditions::diskFails, &World::FillDisk},
      {"disk is mended", 8, &Conditions::diskFails, &World::MendDisk},
      {"kill soon", 6, &Conditions::programIsKilled, &World::KillSoon},
      {"sound breaks", 8, &Conditions::soundFails, &World::BreakSound},
      {"sound is mended", 10, &Conditions::soundFails, &World::MendSound},
      {"reading breaks", 5, &Conditions::soundFails, &World::BreakReading},
      {"reading is mended", 5, &Conditions::soundFails, &World::MendReading},
      {"a block is lost", 5, &Conditions::soundFails, &World::LoseBlock},
      {"cut off", 4, &Conditions::othersInterfere, &World::CutOff},
      {"a source is turned", 4, &Conditions::othersMix, &World::TurnSource},
      {"a source comes", 2, &Conditions::othersMix, &World::AddSource},
      {"a source goes", 2, &Conditions::othersMix, &World::RemoveSource},
      {"a device is plugged", 2, &Conditions::othersMix, &World::PlugDevice},
      {"a device is pulled", 2, &Conditions::othersMix, &World::PullDevice},
      {"the mixer tells", 4, &Conditions::othersMix, &World::TellMixer},
      {"settings are refused", 4, &Conditions::settingsFail, &World::RefuseSettings},
      {"settings are accepted", 6, &Conditions::settingsFail, &World::AcceptSettings},
  };
  return events;
}

void World::Act() {
  // The program is as good as dead; what happens now, happens after it is gone.
  if (desk_.disk.Crashed()) return;
  const Event& event = chance_.PickByWeight(possible_);
  Note(event.name);
  (this->*event.happen)();
}

void World::DropDictation() {
  // Somebody who tidies up may put one where it does not belong.
  const std::string folder = chance_.OneIn(10) ? kCompleted : kInQueue;
  const std::string name = FreeName(Desk::Path(folder));
  if (!name.empty()) DropAt(Desk::Path(folder) + name);
}

void World::KeepCompleted(int count) {
  constexpr std::array<const char*, 4> kMoments{"12 31 1999 0 0 0", "2 29 2004 23 59 59",
                                                "3 8 2004 12 30 0", "3 9 2004 9 0 0"};
  for (; count > 0; --count) {
    const std::string name =
        test::Document().Id(1 + chance_.Below(3000)).At(chance_.Pick(kMoments)).Name();
    DropAt(Desk::Path(kCompleted) + name);
  }
}

void World::DropAt(const std::string& path) {
  const auto slash = path.rfind('/');
  if (desk_.disk.Crashed() || desk_.disk.Has(path)) return;
  if (!desk_.disk.Has(path.substr(0, slash)) || path.size() - slash - 1 > kMostBytesOfAName) return;
  const std::string contents = NewContents();
  desk_.disk.WithFile(path, contents);
  ledger_.Came(contents);
  trace_.Fold(path.substr(slash + 1));
}

std::vector<std::string> World::AllFolders() const {
  std::vector<std::string> all = recorders_.Folders();
  for (const char* folder : kFolders) all.push_back(Desk::Path(folder));
  if (conditions_.hasNeighbour) all.push_back(Neighbour::InQueue());
  return all;
}

std::string World::SomeFolder() {
  return chance_.OneIn(2) ? Desk::Path(chance_.Pick(kFolders)) : chance_.Pick(AllFolders());
}

void World::DropMany() {
  for (int count = 10 + chance_.Below(40); count > 0; --count) DropDictation();
}

void World::BeginSlowDrop() {
  // A name with a saved position says that its writer has long been done, so this has none.
  const std::string name = test::Document().Id(chance_.Below(30'000)).Name();
  recorders_.BeginAt(Desk::Path(chance_.OneIn(6) ? kCompleted : kInQueue) + name);
}

void World::LosePower() {
  Note("the power fails");
  recorders_.LosePower();
  desk_.disk.Places.ForgetProcess(SimulatedPlaces::Late::Fails);
  desk_.disk.LoseWhatWasNotFlushed();
  struck_ = true;
}

void World::TakeAway() {
  const std::string path = SomeDictation(SomeFolder());
  if (path.empty()) return;
  ForgetAllCopies(desk_.disk.Contents(path));
}

void World::Collect() {
  for (const std::string& folder : AllFolders()) {
    if (desk_.disk.NamesIn(folder).size() < kFullFolder) continue;
    for (int count = static_cast<int>(kFullFolder) / 2; count > 0; --count) {
      const std::string path = SomeDictation(folder);
      if (!path.empty()) ForgetAllCopies(desk_.disk.Contents(path));
    }
  }
}

void World::Change() {
  const std::string path = SomeDictation(SomeFolder());
  if (path.empty()) return;
  const std::string before = desk_.disk.Contents(path);
  if (Ledger::FilesOf(desk_.disk, before).size() != 1 || desk_.file.Barred.contains(before)) return;
  const std::string after = NewContents();
  desk_.disk.Write(path, after);
  ledger_.Becomes(before, after);
}

void World::InterfereWithNextCopy() {
  desk_.disk.OnNextCopy = [this] {
    Note("interferes with a copy");
    struck_ = true;
    for (const char* folder : kFolders) {
      for (const std::string& name : desk_.disk.NamesIn(Desk::Path(folder))) {
        const std::string copied = desk_.disk.Contents(Desk::Path(folder) + name);
        if (name.starts_with(kCopyUnderWay) && ledger_.Knows(copied)) ChangeSourceOf(copied);
      }
    }
  };
}

void World::ChangeSourceOf(const std::string& copied) {
  std::vector<std::string> sources = Ledger::FilesOf(desk_.disk, copied);
  std::erase_if(sources, [](const std::string& path) {
    return Ledger::IsHalfCopy(path.substr(path.rfind('/') + 1));
  });
  if (sources.empty()) return;
  const std::string after = NewContents();
  for (const std::string& path : sources) desk_.disk.Write(path, after);
  ledger_.Becomes(copied, after);
}

void World::MakeReadOnly() {
  const std::string path = SomeDictation(Desk::Path(kInQueue));
  if (!path.empty()) desk_.disk.SetReadOnly(path);
}

void World::FailDisk() {
  const auto failing =
      chance_.OneIn(3) ? SimulatedDisk::Failing::ForGood : SimulatedDisk::Failing::Once;
  desk_.disk.FailOperation(1 + chance_.Below(30), chance_.Pick(kFaults), failing);
  diskFailing_ = true;
}

void World::FillDisk() {
  desk_.disk.SetFreeSpace(Desk::Path(chance_.Pick(kVanishing)),
                          static_cast<std::uint64_t>(chance_.Below(200)));
  diskFailing_ = true;
}

void World::MendDisk() {
  struck_ = struck_ || diskFailing_;
  killed_ = killed_ || desk_.disk.Crashed();
  desk_.disk.Heal();
  for (const char* folder : kVanishing) desk_.disk.SetFreeSpace(Desk::Path(folder), kPlentyOfSpace);
  diskFailing_ = false;
}

void World::KillSoon() { desk_.disk.CrashAtOperation(1 + chance_.Below(25)); }

void World::BreakListing() {
  const bool ofCompleted = chance_.OneIn(4);
  const std::string folder = ofCompleted ? Desk::Path(kCompleted) : SomeFolder();
  desk_.completedOutOfReach = desk_.completedOutOfReach || folder == Desk::Path(kCompleted);
  if (chance_.OneIn(2)) {
    desk_.disk.BreakListing(folder);
  } else {
    desk_.disk.BreakListingAfter(folder, static_cast<std::size_t>(chance_.Below(5)));
  }
}

void World::RemoveEmptyFolder() {
  const std::string folder = Desk::Path(chance_.Pick(kVanishing));
  if (desk_.disk.NamesIn(folder).empty()) desk_.disk.Remove(folder);
}

void World::MendFolders() {
  for (const std::string& folder : AllFolders()) desk_.disk.MendListing(folder);
  desk_.completedOutOfReach = false;
  // Before its first start there is no tree that anybody could mend.
  if (desk_.disk.Has(Desk::SettingsPath())) {
    for (const char* folder : {"/Files/InQueue", "/Files/Completed"}) {
      desk_.disk.WithFolder(Desk::Path(folder));
    }
  }
  for (const std::string& contents : desk_.file.Barred) {
    const auto places = desk_.disk.FilesHolding(contents);
    // Whoever saves both of two files anew makes them different ones.
    struck_ = struck_ || places.size() > 1;
    for (const std::string& path : places) {
      desk_.disk.Remove(path);
      desk_.disk.WithFile(path, contents);
    }
  }
  desk_.file.Barred.clear();
}

void World::BarFile() {
  const std::string path = SomeDictation(Desk::Path(kInQueue));
  if (path.empty()) return;
  desk_.disk.SetUnreadable(path);
  desk_.file.Barred.insert(desk_.disk.Contents(path));
}

void World::RefuseSettings() {
  if (desk_.Settings()) desk_.Settings()->RefuseWrites("The disk is full.");
}

void World::AcceptSettings() {
  if (desk_.Settings()) desk_.Settings()->AcceptWrites();
}

void World::MendAll() {
  MendDisk();
  AnswerLate();
  MendFolders();
  recorders_.Finish();
  serverSide_.Mend();
  MendConversion();
  MendSound();
  TellMixer();
  AcceptSettings();
  desk_.disk.OnNextCopy = nullptr;
  desk_.anotherCopy = false;
}

bool World::TakeLate() {
  const bool wasLate = wasLate_;
  wasLate_ = desk_.disk.Places.AnyStalls();
  return wasLate || wasLate_;
}

Blow World::TakeStruck() {
  const bool fault = std::exchange(struck_, false) || diskFailing_;
  const bool kill = std::exchange(killed_, false) || desk_.disk.Crashed();
  if (fault) return Blow::Fault;
  return kill ? Blow::Kill : Blow::None;
}

std::string World::NewContents() {
  const Recording recording{.number = ledger_.NewNumber(),
                            .samples = chance_.Pick(kLengths),
                            .rate = chance_.Pick(kRates),
                            .channels = 1 + chance_.Below(2)};
  return chance_.OneIn(8) ? "text " + std::to_string(recording.number) +
                                ": whatever plays it, nothing is heard of this"
                          : recording.Contents();
}

std::string World::FreeName(const std::string& folder) {
  for (int tries = 5; tries > 0; --tries) {
    const std::string name = chance_.OneIn(4) ? LookAlike() : DrawName(chance_);
    if (!name.empty() && !desk_.disk.Has(folder + name)) return name;
  }
  return "";
}

std::string World::LookAlike() {
  const std::string path = SomeDictation(Desk::Path(chance_.Pick(kFolders)));
  const std::string name = path.substr(path.rfind('/') + 1);
  // What a killed move left behind bears a name of the program's own, which no dictation is given.
  return path.empty() || Ledger::IsHalfCopy(name) ? "" : DrawLookAlike(name, chance_);
}

std::string World::SomeDictation(const std::string& folder) {
  const auto names = desk_.disk.NamesIn(folder);
  if (names.empty()) return "";
  const std::string path = folder + chance_.Pick(names);
  if (path == desk_.ftp.LandingPath()) return "";
  return ledger_.Knows(desk_.disk.Contents(path)) ? path : "";
}

void World::ForgetAllCopies(const std::string& contents) {
  for (const std::string& path : Ledger::FilesOf(desk_.disk, contents)) {
    if (path != desk_.ftp.LandingPath()) desk_.disk.Remove(path);
  }
  ledger_.Forget(contents);
  desk_.file.Barred.erase(contents);
  desk_.file.Readable.erase(contents);
}

}  // namespace tavlo::simulation
