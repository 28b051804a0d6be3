#include "lists/completed_list.h"

#include <string_view>
#include <vector>

#include "base/text.h"
#include "forms/control_groups.h"
#include "lists/document_rows.h"
#include "lists/outcome_in_words.h"
#include "window/no_document.h"

namespace tavlo::lists {
namespace {

/// A completed document is never marked Saved, so the column is not shown.
constexpr forms::Twips kSavedWidthInCompleted = 0;

constexpr std::string_view kNothingCompleted =
    "Nothing completed yet\nA dictation comes here when you press Complete.";
/// What the folder still holds is not in the list until it is built anew.
constexpr std::string_view kSomeStay =
    "Some files stay in the folder\nThe list shows them when you come back.";

}  // namespace

CompletedList::CompletedList(base::Loop& loop, window::MainWindow& window,
                             const store::DocumentFiles& files, const playback::Playback& playback,
                             Opening& opening)
    : loop_(loop),
      form_(window.Form()),
      window_(window),
      disk_(files.disk),
      folders_(files.folders),
      names_(files.names),
      moves_(files.moves),
      rescued_(files.rescued),
      engine_(playback.engine),
      transport_(playback.transport),
      opening_(opening),
      voice_(playback.voice),
      scan_(loop, form_, disk_, names_, engine_) {
  form_.cmdMoveToQueue.OnPress = [this] { ReturnToQueue(); };
  form_.cmdDeleteOneCompleted.OnPress = [this] { DeleteOne(); };
  form_.cmdDeleteAllCompleted.OnPress = [this] { DeleteAll(); };
  form_.listViewCompleted.OnHeaderClick = [this](int column) {
    form_.listViewCompleted.SortByHeader(column);
  };
}

void CompletedList::MakeColumns(const std::string& subjectHeading) {
  form_.listViewCompleted.SetColumns(DocumentColumns(subjectHeading, kSavedWidthInCompleted));
  form_.listViewCompleted.WhenEmpty = std::string(kNothingCompleted);
}

void CompletedList::RefreshCompletedList() {
  const forms::Hourglass hourglass(form_.frmMain);
  moves_.TakeBackUnfinished();
  const ScanEnd end =
      scan_.Run(form_.listViewCompleted, folders_.CompletedPath(), [this](store::FolderWalk& walk) {
        const store::Locked locked = store::WorkFolders::FileIsLocked(walk);
        if (locked == store::Locked::No) names_.ParseDocumentName(walk.Name());
        return locked;
      });
  CompletedCount = static_cast<int>(form_.listViewCompleted.Rows().size());
  CompletedTotalLength = scan_.TotalLength;
  form_.listViewCompleted.WhenEmpty =
      std::string(end == ScanEnd::Whole ? kNothingCompleted : kListIsNotWhole);
  if (end == ScanEnd::OutOfReach) loop_.Show(folders_.CompletedPathFault());
  if (end == ScanEnd::Whole) WriteCaption(CompletedTotalLength);
  window_.SayWhile(end == ScanEnd::CutShort, CutShortInWords("Completed"));
  rescued_.CountRescued();
}

void CompletedList::SetCompletedButtons() {
  SetEnabled(forms::CompletedKeys(form_), CompletedCount > 0);
}

void CompletedList::ReturnToQueue() {
  // A selection is inside its wait: it would go on with a file that is no longer there.
  if (!window_.guards.ListsMayChange()) return;
  transport_.StopWindAndPreview();
  engine_.StopPlay();
  LetPendingEventsPass();
  engine_.CloseFile();
  const std::string chosen = HighlightedFile();
  if (chosen.empty()) {
    voice_.PlayPrompt("MoveErrQueue");
    window_.FocusAway();
    return;
  }
  {
    const forms::Hourglass hourglass(form_.frmMain);
    // This is intended: the document leaves this folder even when its copy failed, and is then kept
    // in the rescue folder. A document of the same name that waits in the Queue stays where it is.
    const store::Moved moved = moves_.MoveOrRescue(
        folders_.CompletedPath() + chosen, folders_.InQueuePath + chosen, store::InTheWay::Stays);
    window_.Say(MoveInWords(Trip::ToQueue, moved, chosen, folders_));
    RefreshCompletedList();
    WriteCaption(0);
    SetCompletedButtons();
    if (moved.result == store::DiskResult::Done) voice_.PlayPrompt("MovedToQueue");
  }
  window_.FocusAway();
}

void CompletedList::LetPendingEventsPass() {
  const window::ListPause pause(window_.guards);
  // A click that waits would choose another document, and a second press would move one that is
  // gone.
  form_.frameCompleted.Enabled = false;
  loop_.Yield();
  form_.frameCompleted.Enabled = true;
}

void CompletedList::DeleteOne() {
  if (!window_.guards.ListsMayChange()) return;
  engine_.StopPlay();
  engine_.CloseFile();
  const std::string chosen = HighlightedFile();
  if (chosen.empty()) {
    voice_.PlayPrompt("DeleteError");
    window_.FocusAway();
    return;
  }
  if (!UserAgrees("Tavlo Deck - Delete",
                  "Are you sure you want to delete the selected Completed document?")) {
    return;
  }
  engine_.tmrPlaySnipet.Stop();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    const std::string path = folders_.CompletedPath() + chosen;
    const store::DiskResult deleted = moves_.DeleteForGood(path);
    const bool done = deleted == store::DiskResult::Done;
    if (!done) window_.Say(DeleteFailureInWords(deleted, moves_.IsInDoubt(path), chosen));
    RefreshCompletedList();
    SetCompletedButtons();
    opening_.SelectedCompletedFile.clear();
    if (done) voice_.PlayPrompt("DeleteOne");
  }
  window_.FocusAway();
}

void CompletedList::DeleteAll() {
  if (!window_.guards.ListsMayChange()) return;
  engine_.StopPlay();
  engine_.CloseFile();
  if (!UserAgrees("Delete all Completed documents",
                  "Are you sure you want to delete all the Completed documents?") ||
      !UserAgrees("Tavlo Deck - Delete",
                  "Are you absolutely sure you want to delete all the Completed documents?")) {
    return;
  }
  engine_.tmrPlaySnipet.Stop();
  form_.frmMain.MousePointer = forms::Pointer::Hourglass;
  CompletedCount = 0;
  form_.listViewCompleted.Clear();
  window::ShowNoDocument(form_);
  WriteCaption(0);
  SetCompletedButtons();
  const Deletion deletion = DeleteWaves();
  const bool done = deletion.result == store::DiskResult::Done;
  form_.listViewCompleted.WhenEmpty =
      std::string(done && !deletion.othersStay ? kNothingCompleted : kSomeStay);
  if (!done) window_.Say(DeleteAllFailureInWords(deletion.result));
  // This is intended: where there was nothing to delete the hourglass stays until the next list is
  // built. Under it the window can not be closed, so it does not stay where the folder is not
  // known.
  if (!deletion.any && done) return;
  opening_.SelectedCompletedFile.clear();
  if (done) voice_.PlayPrompt("DeleteAllComp");
  form_.frmMain.MousePointer = forms::Pointer::Arrow;
  window_.FocusAway();
}

store::DiskResult CompletedList::WhyCutShort(const store::Listing& walk) {
  if (walk.processInTrouble) return store::DiskResult::ProcessInTrouble;
  return disk_.OutOfReach(folders_.CompletedPath()) ? store::DiskResult::OutOfReach
                                                    : store::DiskResult::Failed;
}

CompletedList::Deletion CompletedList::DeleteWaves() {
  using store::DiskResult;
  const std::string folder = folders_.CompletedPath();
  const store::Listing walk = disk_.ListPlainFiles(folder);
  Deletion deletion;
  for (const std::string& name : walk.names) {
    if (!base::EndsInEitherCase(name, ".wav")) {
      deletion.othersStay = true;
      continue;
    }
    deletion.any = true;
    loop_.Breathe();
    const DiskResult deleted = moves_.DeleteForGood(folder + name);
    // From here on nothing that is asked of the folder is done.
    if (deleted == DiskResult::OutOfReach) return {deletion.any, deletion.othersStay, deleted};
    if (deletion.result == DiskResult::Done) deletion.result = deleted;
  }
  if (!walk.finished && deletion.result == DiskResult::Done) deletion.result = WhyCutShort(walk);
  return deletion;
}

void CompletedList::WriteCaption(double totalMilliseconds) {
  form_.frameCompleted.Caption = ListCaption("Completed", CompletedCount, totalMilliseconds);
}

bool CompletedList::UserAgrees(const char* title, const char* question) {
  return loop_.Show({.title = title,
                     .text = question,
                     .icon = base::Icon::Question,
                     .buttons = base::Buttons::YesNo,
                     .byDefault = base::Reply::No}) == base::Reply::Yes;
}

std::string CompletedList::HighlightedFile() const {
  const forms::Table& list = form_.listViewCompleted;
  return list.TextAt(list.ListIndex, forms::document_column::FileName);
}

}  // namespace tavlo::lists
