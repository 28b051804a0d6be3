#include "simulation/day.h"

#include <algorithm>
#include <iterator>

#include "intake/claims.h"
#include "simulation/invariants.h"

namespace tavlo::simulation {
namespace {

using base::operator""s;

constexpr int kStepsBetweenSettlings = 120;
constexpr int kTriesToStart = 3;
constexpr int kTicksOfACheck = 20;
constexpr base::Duration kLongestWaitForACheck = 600s;
/// Two of them come in one check at most, and a refresh after each.
constexpr base::Duration kLengthOfAnAlert = 30s;
/// Of the step that went wrong, beside what was done.
constexpr std::size_t kOperationsTold = 40;

}  // namespace

Day::Day(std::uint64_t seed, bool aloud)
    : conditions_(seed),
      chance_(Chance(seed).Child("day")),
      trace_(aloud),
      world_(desk_, ledger_, conditions_, Chance(seed).Child("world"), trace_),
      typist_(desk_, ledger_, conditions_, Chance(seed).Child("typist"), trace_) {
  typist_.OnMeanwhile = [this] { world_.Act(); };
  typist_.OnRival = [this](const std::string& path) { world_.DropAt(path); };
  desk_.disk.OnDelete = [this](const std::string& path) {
    if (!desk_.PurgeMayDelete(path)) return;
    trace_.Note("  the purge deletes " + Readable(path));
    ledger_.MayBeDeleted(desk_.disk, path);
  };
}

std::string Day::Run(int steps) {
  try {
    world_.KeepCompleted(conditions_.completedAtStart);
    Restart();
    for (int count = conditions_.documentsAtStart; count > 0; --count) world_.DropDictation();
    for (int step = 1; step <= steps; ++step) {
      trace_.Note("step " + std::to_string(step));
      std::string wrong = Step();
      if (wrong.empty() && step % kStepsBetweenSettlings == 0) wrong = Settle();
      RecordStep();
      if (!wrong.empty()) return wrong;
    }
    return Settle();
  } catch (const Storm& storm) {
    return storm.what;
  }
}

std::string Day::Step() {
  world_.BeginStep();
  const int drawn = chance_.Below(100);
  if (drawn < 50) {
    typist_.Act();
  } else if (drawn < 75) {
    typist_.WaitAWhile();
  } else if (drawn < 99) {
    world_.Act();
  } else if (conditions_.programIsKilled) {
    Perish();
  }
  // The end of a session crashes the disk, too, and it may come in the start behind a kill.
  if (desk_.disk.Crashed() && !desk_.SessionEnds()) Perish();
  if (desk_.SessionEnds()) return FollowTheEndOfTheSession();
  if (desk_.ended) {
    const std::string wrong = LookAtTheEnd();
    if (!wrong.empty()) return wrong;
    Restart();
  }
  return Look();
}

std::string Day::FollowTheEndOfTheSession() {
  if (!desk_.ended) return "The session has ended, and the program goes on.";
  trace_.Note("  the session has ended");
  world_.EndSession();
  Restart();
  return Look();
}

std::string Day::LookAtTheEnd() {
  // A start that failed ends without a question.
  if (!desk_.Rooms()) return "";
  if (!typist_.AgreedToExit()) return "The program ended without consent.";
  if (desk_.Main().bConnect.Caption.Get() == "Disconnect") return "The program ended connected.";
  return desk_.Main().cmdSkip.Enabled ? "The program ended with a document in work." : "";
}

void Day::Perish() {
  trace_.Note("  the program is killed");
  desk_.Kill();
  if (conditions_.powerFails && chance_.OneIn(2)) world_.LosePower();
  // What the kill left in two places is looked at with the step, so the blow still counts then.
  world_.MendDisk();
  Restart();
}

void Day::Restart() {
  typist_.HandsOff();
  desk_.Kill();
  world_.ForgetProgram();
  for (int tries = kTriesToStart; tries > 0; --tries) {
    const bool anotherHolds = chance_.OneIn(20);
    const bool lastTry = tries == 1;
    if (lastTry) world_.MendAll();
    if (anotherHolds && !lastTry) desk_.databases.HoldByAnother(Desk::SettingsPath());
    desk_.anotherCopy = !lastTry && chance_.OneIn(20);
    desk_.usbWatcher.CanStart = !conditions_.watcherFalters || !chance_.OneIn(5);
    desk_.usbWatcher.CanStop = !conditions_.watcherFalters || !chance_.OneIn(5);
    trace_.Note("  the program starts");
    desk_.Start();
    if (anotherHolds) desk_.databases.LetGo(Desk::SettingsPath());
    if (desk_.Rooms()) break;
    desk_.Kill();
  }
  desk_.loop.Advance(std::chrono::seconds{chance_.Below(10)});
}

std::string Day::Look() {
  if (!desk_.Rooms()) return "The program does not start.";
  const bool late = world_.TakeLate();
  std::string wrong = ledger_.Check(desk_.disk, world_.TakeStruck(), late);
  if (wrong.empty() && desk_.AtWork()) wrong = BrokenInvariant(desk_);
  if (wrong.empty()) wrong = desk_.hearing.TakeFault();
  if (wrong.empty()) wrong = typist_.TookWrongly();
  if (wrong.empty()) wrong = typist_.WaitedTooLong();
  if (wrong.empty()) wrong = typist_.ExitedWrongly();
  if (wrong.empty()) wrong = desk_.landing.TakeFault();
  if (wrong.empty()) wrong = desk_.alerts.TakeFault();
  if (wrong.empty()) wrong = desk_.TakeSilence();
  if (wrong.empty()) wrong = typist_.DisobeyedPedal();
  if (wrong.empty()) wrong = typist_.DisobeyedMixer();
  if (wrong.empty()) wrong = typist_.DisobeyedFromAfar();
  if (!wrong.empty()) NoteWhatLedToIt();
  return wrong;
}

void Day::NoteWhatLedToIt() {
  const std::vector<std::string>& operations = desk_.disk.Operations;
  const std::size_t first = operations.size() - std::min(kOperationsTold, operations.size());
  for (std::size_t at = first; at < operations.size(); ++at) {
    trace_.Note("  disk: " + operations[at]);
  }
  trace_.Note(Described(desk_));
}

std::string Day::Settle() {
  trace_.Note("  everything is mended and settles");
  typist_.StayCalm(true);
  world_.StayCalm(true);
  const std::string wrong = SettleCalmly();
  world_.StayCalm(false);
  typist_.StayCalm(false);
  return wrong;
}

std::string Day::SettleCalmly() {
  const Blow struck = world_.TakeStruck();
  world_.MendAll();
  const bool late = world_.TakeLate();
  if (desk_.ended) Restart();
  forms::MainForm& main = desk_.Main();
  if (!typist_.GoTo(main.mnuViewCompleted, main.frameCompleted)) {
    return "The typist does not find the completed documents.";
  }
  std::string wrong = ledger_.Check(desk_.disk, struck, late);
  if (wrong.empty()) wrong = CompareListWithFolder(main.listViewCompleted, "/Files/Completed");
  if (wrong.empty()) wrong = SettleTheWatch();
  if (wrong.empty()) wrong = SettleTheServer();
  if (wrong.empty()) wrong = SettleFolders();
  if (!wrong.empty()) return wrong;
  desk_.loop.Advance(2s);
  wrong = Look();
  if (wrong.empty()) wrong = ledger_.CheckSettled(desk_.disk);
  if (wrong.empty()) wrong = CompareListWithFolder(main.listViewInQueue, "/Files/InQueue");
  if (wrong.empty()) wrong = typist_.TypeOneDocument();
  return wrong.empty() ? Look() : wrong;
}

std::string Day::SettleTheWatch() {
  world_.TransferSome();
  const base::Duration period =
      desk_.Rooms()->waitingWork.tmrWorkWaitingAlert.Interval() * kTicksOfACheck;
  if (period > kLongestWaitForACheck) return "";
  const base::Duration check = period + kLengthOfAnAlert;
  if (desk_.Config().chkFtpAutoRetrieve.Value) {
    desk_.loop.Advance(check);
    // Log-ins without an answer hold a check back for longer than that, and what a run fetches may
    // come right behind a check. So what is owed is judged by one that comes without such runs.
    typist_.StopAutoRetrieve();
  }
  const std::size_t boxes = desk_.loop.Shown.size();
  desk_.loop.Advance(check);
  if (desk_.alerts.SomethingIsDue()) return "Work has come, and nobody is told.";
  // It waits for the end of a preview, which some settings let sound for years.
  const bool refreshes = desk_.Config().chkAutoRefreshMode.Value &&
                         !desk_.Rooms()->engine.tmrPlaySnipet.Enabled() && !PassesEndedEarly(boxes);
  const std::string left = refreshes ? world_.LeftBehind() : "";
  // A claim of a program that was killed is given back later.
  const bool stays = !left.empty() && !Ledger::IsClaim(left.substr(left.rfind('/') + 1));
  return stays ? "The automatic refresh does not bring in " + Readable(left) : "";
}

std::string Day::SettleTheServer() {
  // What the connection lost it takes a new start to fetch.
  if (typist_.ServersAreDead()) Restart();
  const auto [wrong, deletes] = typist_.FetchAll();
  if (!wrong.empty()) return wrong;
  return deletes ? world_.LeftOnServer(*deletes) : "";
}

bool Day::PassesEndedEarly(std::size_t boxes) const {
  return std::any_of(
      desk_.loop.Shown.begin() + static_cast<std::ptrdiff_t>(boxes), desk_.loop.Shown.end(),
      [](const base::MessageBox& box) { return box.title.starts_with("Tavlo Deck - "); });
}

std::string Day::SettleFolders() {
  forms::MainForm& main = desk_.Main();
  desk_.loop.Advance(intake::Claims::kAbandonedAfter);
  for (const int directory : world_.ClaimedDirectories()) {
    if (!typist_.GoTo(main.mnuViewImport, main.frameImport)) return "There is no way to the files.";
    typist_.TurnToDirectory(directory);
  }
  const std::vector<int> claimed = world_.ClaimedDirectories();
  if (!claimed.empty()) return "Not given back in the directory " + std::to_string(claimed[0]);
  const std::size_t boxes = desk_.loop.Shown.size();
  if (!typist_.GoHome()) return "The typist finds no way back to the list.";
  const std::string left = PassesEndedEarly(boxes) ? "" : world_.LeftBehind();
  return left.empty() ? "" : "Though nothing is wrong it stays: " + Readable(left);
}

std::string Day::CompareListWithFolder(const forms::Table& list, const std::string& folder) {
  std::vector<std::string> shown;
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    shown.push_back(list.TextAt(row, forms::document_column::FileName));
  }
  std::sort(shown.begin(), shown.end());
  std::vector<std::string> names = desk_.disk.NamesIn(Desk::Path(folder));
  std::erase_if(names, [](const std::string& name) { return name.starts_with('.'); });
  std::vector<std::string> apart;
  std::set_symmetric_difference(shown.begin(), shown.end(), names.begin(), names.end(),
                                std::back_inserter(apart));
  if (apart.empty()) return "";
  return list.Name + " shows " + std::to_string(shown.size()) + " documents of " +
         std::to_string(names.size()) + " in the folder; they differ in " + Readable(apart.front());
}

void Day::RecordStep() {
  for (const std::string& operation : desk_.disk.Operations) trace_.Fold(operation);
  trace_.Fold(std::to_string(desk_.loop.Now().sinceStart.count()));
  trace_.Fold(std::to_string(desk_.Main().listViewInQueue.Rows().size()));
  trace_.Fold(std::to_string(desk_.Main().listViewCompleted.Rows().size()));
  trace_.EndStep();
  // Whatever the edges write down would fill the memory in a long run.
  desk_.disk.Operations.clear();
  desk_.loop.Shown.clear();
  desk_.notifier.notified.clear();
  desk_.file.Seeks.clear();
  desk_.transform.Calls.clear();
  desk_.player.Volumes.clear();
  desk_.usbWatcher.Picked.clear();
  desk_.serialPort.Opened.clear();
  desk_.keys.Wished.clear();
  desk_.bus.Told.clear();
  desk_.promptControl.Told.clear();
  desk_.promptControl.Sounded.clear();
  for (const std::string& call : desk_.ftp.calls) trace_.Fold(call);
  desk_.ftp.calls.clear();
  desk_.ftp.server.sent.clear();
  desk_.ftp.server.deleted.clear();
  if (desk_.Settings()) desk_.Settings()->Saves.clear();
  auto& queued = desk_.player.Queued;
  if (queued.size() > 1) queued.erase(queued.begin(), queued.end() - 1);
  auto& gains = desk_.player.Gains;
  if (gains.size() > 1) gains.erase(gains.begin(), gains.end() - 1);
}

}  // namespace tavlo::simulation
