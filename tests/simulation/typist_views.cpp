#include <string_view>

#include "simulation/places.h"
#include "simulation/typist.h"
#include "store/saved_position.h"

namespace tavlo::simulation {
namespace {

using base::operator""s;

constexpr std::string_view kDeleteOneQuestion =
    "Are you sure you want to delete the selected Completed document?";
/// The second of the two questions.
constexpr std::string_view kDeleteAllQuestion =
    "Are you absolutely sure you want to delete all the Completed documents?";
constexpr std::string_view kExitQuestion = "Are you sure you want to exit the Tavlo Deck?";

bool IsWave(const std::string& name) {
  constexpr std::string_view kLower = ".wav";
  constexpr std::string_view kUpper = ".WAV";
  if (name.size() < kLower.size()) return false;
  for (std::size_t at = 0; at < kLower.size(); ++at) {
    const char c = name[name.size() - kLower.size() + at];
    if (c != kLower[at] && c != kUpper[at]) return false;
  }
  return true;
}

}  // namespace

void Typist::ChangeView() {
  forms::MainForm& main = desk_.Main();
  Press(Some<forms::Command>({{&main.mnuViewQueue, 2},
                              {&main.mnuViewCompleted, 2},
                              {&main.mnuViewImport, 1},
                              {&main.mnuViewFtp, 1}}));
}

void Typist::ClickCompletedRow() {
  forms::MainForm& main = desk_.Main();
  forms::Table& list = main.listViewCompleted;
  if (!list.Reachable() && chance_.OneIn(2)) Press(main.mnuViewCompleted);
  const int rows = static_cast<int>(list.Rows().size());
  if (rows == 0) return;
  ClickRowOf(list, chance_.Below(rows));
}

void Typist::WorkOnCompleted() {
  forms::MainForm& main = desk_.Main();
  if (chance_.OneIn(2)) ClickCompletedRow();
  if (chance_.OneIn(3)) WaitAWhile();
  if (chance_.OneIn(6)) {
    Press(main.cmdDeleteAllCompleted);
  } else {
    Press(chance_.OneIn(2) ? main.cmdMoveToQueue : main.cmdDeleteOneCompleted);
  }
}

void Typist::ClickImportRow() {
  forms::MainForm& main = desk_.Main();
  forms::Table& list = main.listViewImport;
  if (!list.Reachable()) Press(main.mnuViewImport);
  if (list.Rows().empty()) return;
  ClickRowOf(list, chance_.Below(static_cast<int>(list.Rows().size())));
}

void Typist::FinishAfterSomethingElse() {
  forms::MainForm& main = desk_.Main();
  ClickRow();
  switch (chance_.Below(5)) {
    case 0:
      Press(main.cmdUpdateFileList);
      break;
    case 1:
      Press(main.mnuViewCompleted);
      Press(main.mnuViewQueue);
      break;
    case 2:
      ClickImportRow();
      break;
    default:
      Press(main.mnuViewCompleted);
      ClickCompletedRow();
      break;
  }
  WaitAWhile();
  if (chance_.OneIn(3)) {
    Press(main.cmdPlay);
    WaitAWhile();
  }
  Press(main.cmdComplete);
}

void Typist::FinishBesideRival() {
  forms::MainForm& main = desk_.Main();
  if (!main.cmdSkip.Reachable()) ChooseAndPlay();
  Press(main.cmdStop);
  if (!main.cmdSkip.Reachable()) return;
  if (chance_.OneIn(2)) Press(main.cmdSkipEnd);
  const std::string path = desk_.hearing.Path();
  const std::string name = path.substr(path.rfind('/') + 1);
  const std::string saved =
      store::WithSavedPosition(name, desk_.Rooms()->documentInWork.CurrentSamplePosition);
  const std::string unsaved = store::WithSavedPosition(name, 0);
  const std::string inQueue = Desk::Path("/Files/InQueue/");
  const std::string completed = Desk::Path(kCompleted);
  if (OnRival) {
    for (const std::string& taken :
         {inQueue + saved, inQueue + unsaved, completed + name, completed + unsaved}) {
      if (chance_.OneIn(2)) OnRival(taken);
    }
  }
  Press(chance_.OneIn(2) ? main.cmdSave : main.cmdComplete);
}

void Typist::EndSession() {
  if (!conditions_.sessionEnds) return;
  if (conditions_.foldersAreLate && chance_.OneIn(2)) {
    session_.SetInterval(std::chrono::milliseconds{1 + chance_.Below(8000)});
    session_.Start();
    return;
  }
  takings_.EndSession(/*now=*/chance_.OneIn(2));
}

void Typist::LookAtAbout() {
  shell::Windows& windows = desk_.Windows();
  Press(windows.main.mnuAbout);
  if (chance_.OneIn(2)) WaitAWhile();
  Press(windows.about.mnuSystemInfo);
  if (chance_.OneIn(2)) {
    windows.about.frmAbout.CloseRequest();
  } else {
    Press(windows.about.mnuClose);
  }
}

void Typist::NoteConsent(const base::MessageBox& box, base::Reply reply) {
  // A consent after the end of the session has no effect.
  if (reply != base::Reply::Yes || desk_.ended) return;
  if (box.text == kExitQuestion) agreedToExit_ = true;
  NoteImportConsent(box);
  const std::string folder = Desk::Path(kCompleted);
  if (box.text == kDeleteOneQuestion && !clickedCompleted_.empty()) {
    ledger_.AgreedToDelete(desk_.disk, folder + clickedCompleted_);
  }
  if (box.text != kDeleteAllQuestion) return;
  std::vector<std::string> names = desk_.disk.NamesIn(folder);
  std::erase_if(names,
                [](const std::string& name) { return name.starts_with('.') || !IsWave(name); });
  for (const std::string& name : names) {
    desk_.completedOutOfReach ? ledger_.MayBeDeleted(desk_.disk, folder + name)
                              : ledger_.AgreedToDelete(desk_.disk, folder + name);
  }
  // A folder that cannot be listed shows no wave either.
  desk_.nothingToDelete = names.empty() || desk_.completedOutOfReach || desk_.disk.FaultPending();
}

}  // namespace tavlo::simulation
