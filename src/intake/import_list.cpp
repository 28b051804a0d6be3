#include "intake/import_list.h"

#include <memory>
#include <string_view>

#include "base/text.h"
#include "forms/control_groups.h"
#include "intake/file_progress.h"
#include "intake/import_directories.h"
#include "store/settings_fields.h"
#include "window/no_document.h"

namespace tavlo::intake {
namespace {

using base::operator""ms;
using store::DiskResult;
using store::WalkEnd;

constexpr forms::Twips kNameWidth = 5000;
constexpr forms::Twips kListWidth = 7500;

constexpr std::string_view kNothingToImport =
    "Nothing to import\nFiles that are put into this directory show here.";
/// What the directory still holds is not in the list until it is built anew.
constexpr std::string_view kSomeFilesStay =
    "Some files stay in the directory\nPress Refresh to see them.";
constexpr std::string_view kImportListIsNotWhole =
    "This list is not whole\nIt shows what is there once it can be read again.";

}  // namespace

ImportList::ImportList(base::Loop& loop, window::MainWindow& window,
                       const store::DocumentFiles& files, const playback::Playback& playback,
                       ImportConversion& conversion, Claims& claims)
    : loop_(loop),
      form_(window.Form()),
      window_(window),
      disk_(files.disk),
      folders_(files.folders),
      moves_(files.moves),
      rescued_(files.rescued),
      engine_(playback.engine),
      transport_(playback.transport),
      voice_(playback.voice),
      conversion_(conversion),
      claims_(claims),
      counts_(loop, window, disk_, folders_) {
  form_.cmdRefreshImportList.OnPress = [this] { RefreshByCommand(); };
  form_.cmdDeleteOneImportFile.OnPress = [this] { DeleteOne(); };
  form_.cmdDeleteAllImportFile.OnPress = [this] { DeleteAll(); };
  form_.scrollImportWavSubDirectories.OnChange = [this] { ShowChosenDirectory(); };
  form_.chkImportSynchronize.OnClick = [this] { TakeLink(); };
  form_.listViewImport.OnHeaderClick = [this](int column) {
    sorted_ = true;
    form_.listViewImport.SortByHeader(column);
  };
}

void ImportList::MakeColumns() {
  form_.listViewImport.SetColumns(
      {{"", 0},
       {"File Name", kNameWidth},
       {.title = "Length", .width = kListWidth - kNameWidth, .figures = true}});
  form_.listViewImport.WhenEmpty = std::string(kNothingToImport);
}

bool ImportList::RefreshImportList(const std::string& directory) {
  const forms::Hourglass hourglass(form_.frmMain);
  // A conversion may show a box, under which nothing else may change this list.
  const window::ListPause pause(window_.guards);
  window::ShowNoDocument(form_);
  moves_.TakeBackUnfinished();
  SelectedImportFile.clear();
  WalkEnd end = WalkEnd::Whole;
  {
    const std::string folder = ImportDirectoryPath(folders_, directory);
    claims_.TidyUp(folder);
    const std::unique_ptr<store::FolderWalk> walk = disk_.Walk(folder);
    if (walk->Started()) {
      ForgetRows();
      listedFolder_ = folder;
      end = AddRows(*walk, folder);
      engine_.CloseFile();
    } else {
      // Rows of another directory would pass for files of this one.
      if (folder != listedFolder_) ForgetRows();
      form_.listViewImport.ListIndex = -1;
      end = walk->End();
    }
  }
  ImportCount = static_cast<int>(form_.listViewImport.Rows().size());
  if (sorted_) {
    form_.listViewImport.Sort(form_.listViewImport.SortColumn(), form_.listViewImport.Order());
  }
  TellEnd(end, directory);
  rescued_.CountRescued();
  counts_.ListWasBuilt(ImportCount, end == WalkEnd::Whole);
  // An unattended run builds the lists of all directories by itself.
  if (!AutoImportRunning) counts_.LookAround();
  return end == WalkEnd::Whole;
}

void ImportList::TellEnd(WalkEnd end, const std::string& directory) {
  const bool whole = end == WalkEnd::Whole;
  form_.listViewImport.WhenEmpty = std::string(whole ? kNothingToImport : kImportListIsNotWhole);
  if (whole) WriteCaption(ImportCount, ImportTotalLength);
  window_.SayWhile(end == WalkEnd::ProcessInTrouble, ImportListCutShortInWords());
  if (end != WalkEnd::OutOfReach) return;
  // An unattended run would show the box once for each of its 26 directories.
  if (AutoImportRunning && AutoImportTold) return;
  AutoImportTold = true;
  loop_.Show(ImportPathFault(folders_, directory));
}

WalkEnd ImportList::AddRows(store::FolderWalk& walk, const std::string& folder) {
  FileProgress progress([this](const auto& text) { window_.SayHowFar(text); }, "Listing", {});
  while (walk.Next()) {
    progress.Next();
    loop_.Breathe();
    switch (store::WorkFolders::FileIsLocked(walk)) {
      case store::Locked::Yes:
        continue;
      case store::Locked::NotKnown:
        return WalkEnd::ProcessInTrouble;
      case store::Locked::OutOfReach:
        return WalkEnd::OutOfReach;
      case store::Locked::No:
        break;
    }
    const WalkEnd added = AddRow(walk, folder);
    if (added != WalkEnd::Whole) return added;
  }
  return walk.End();
}

WalkEnd ImportList::AddRow(store::FolderWalk& walk, const std::string& folder) {
  std::string name = walk.Name();
  const bool converts = base::EndsInEitherCase(name, ".dss");
  if (converts) conversion_.ConvertImportDssFile(name);
  if (engine_.IsPlaying) engine_.StopPlay();
  engine_.CloseFile();
  // The wave of a conversion is none of the files of the walk.
  const std::string path = folder + name;
  playback::OpenResult result = playback::OpenResult::Unplayable;
  if (converts) {
    result = engine_.File().OpenFile(path);
    // The row of a file that was not converted has the name of a wave that is not there.
    const std::string shown = disk_.Facts(path) ? path : folder + walk.Name();
    if (const auto facts = disk_.Facts(shown)) seen_[shown] = *facts;
  } else {
    const store::HeldFile& held = walk.Open();
    if (held.opened == DiskResult::OutOfReach) return WalkEnd::OutOfReach;
    if (held.opened == DiskResult::Done) seen_[path] = held.facts;
    result = engine_.File().OpenHeldFile(held);
  }
  if (engine_.File().OpenStatus() < 0) return WalkEnd::ProcessInTrouble;
  const bool gaveNoAnswer = result == playback::OpenResult::OutOfReach && disk_.OutOfReach(path);
  if (gaveNoAnswer) return WalkEnd::OutOfReach;
  const bool opened = result == playback::OpenResult::Opened;
  const double length = opened ? static_cast<double>(engine_.File().LengthMilliseconds()) : 0.0;
  ImportTotalLength += length;
  form_.listViewImport.Add(forms::Row{{{""}, {name}, {base::FormatHMS(length)}}});
  return WalkEnd::Whole;
}

void ImportList::ForgetRows() {
  ImportCount = 0;
  ImportTotalLength = 0;
  form_.listViewImport.Clear();
  SelectedImportFile.clear();
  seen_.clear();
}

void ImportList::SetImportButtons() { SetEnabled(forms::ImportKeys(form_), ImportCount != 0); }

void ImportList::RefreshByCommand() {
  // Automatic import works inside a list change of its own.
  if (!AutoImportRunning && !window_.guards.ListsMayChange()) return;
  transport_.StopWindAndPreview();
  engine_.StopPlay();
  {
    const window::ListPause pause(window_.guards);
    form_.listViewImport.Enabled = false;
    loop_.Yield();
    engine_.CloseFile();
    const forms::Hourglass hourglass(form_.frmMain);
    form_.frameImport.Caption = "Import";
    form_.listViewImport.Visible = false;
    form_.lblRefreshingImportList1.Visible = true;
    form_.lblRefreshingImportList2.Visible = true;
    form_.cmdRefreshImportList.Visible = false;
    SetEnabled(forms::Menus(form_), false);
    SetEnabled(forms::ImportKeys(form_), false);
    loop_.Wait(50ms);
    const bool whole = RefreshImportList(form_.txtWavImportSubdirectory.Value);
    SetImportButtons();
    form_.lblRefreshingImportList1.Visible = false;
    form_.lblRefreshingImportList2.Visible = false;
    form_.listViewImport.Visible = true;
    form_.listViewImport.Enabled = true;
    form_.cmdRefreshImportList.Visible = true;
    SetEnabled(forms::Menus(form_), true);
    // A list that could not be read is not said to be up to date.
    if (whole && !AutoImportRunning) voice_.PlayPrompt("RefreshImport");
  }
  if (!window_.guards.RefreshIsQuiet()) window_.FocusAway();
}

void ImportList::ShowChosenDirectory() {
  forms::Range& scroll = form_.scrollImportWavSubDirectories;
  // The choice that is inside its wait reads behind it what was chosen last.
  if (turning_) return;
  if (!window_.guards.ListsMayChange()) {
    // Another list change is inside a wait. Scroll bar and list must not tell of two directories.
    scroll.Value = static_cast<int>(form_.txtWavImportSubdirectory.WholeNumber()) + 1;
    return;
  }
  engine_.StopPlay();
  {
    const window::Raised turning(turning_);
    const window::ListPause pause(window_.guards);
    window_.DisableWindowControls();
    loop_.Yield();
    window_.EnableWindowControls();
  }
  form_.mnuReport.Enabled = false;
  engine_.CloseFile();
  form_.txtWavImportSubdirectory.Value = std::to_string(scroll.Value - 1);
  RefreshImportList(form_.txtWavImportSubdirectory.Value);
  SetImportButtons();
  if (store::IsYes(form_.txtImportSynchronize.Value.Get())) SelectLinkedProfile();
  if (!window_.guards.RefreshIsQuiet()) window_.FocusAway();
}

void ImportList::TakeLink() {
  form_.txtImportSynchronize.Value = store::YesNo(form_.chkImportSynchronize.Value);
  if (form_.chkImportSynchronize.Value) SelectLinkedProfile();
  window_.FocusAway();
}

void ImportList::SelectLinkedProfile() {
  const int profile = form_.scrollImportWavSubDirectories.Value - 1;
  forms::Table& profiles = form_.comboAuthorLastName;
  // While the settings are loaded no profile is listed yet.
  if (profile < static_cast<int>(profiles.Rows().size())) profiles.ListIndex = profile;
}

void ImportList::DeleteOne() {
  if (!window_.guards.ListsMayChange()) return;
  engine_.StopPlay();
  engine_.CloseFile();
  if (SelectedImportFile.empty()) {
    voice_.PlayPrompt("DeleteError");
    window_.FocusAway();
    return;
  }
  const std::string name = SelectedImportFile;
  const std::string directory = form_.txtWavImportSubdirectory.Value;
  if (!UserAgrees("Are you sure you want to delete the selected Imported file?", base::Reply::No)) {
    return;
  }
  engine_.tmrPlaySnipet.Stop();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    const ImportDeletion deletion = DeleteIfSeen(ImportDirectoryPath(folders_, directory) + name);
    window_.Say(ImportDeletionInWords(deletion, name));
    RefreshImportList(form_.txtWavImportSubdirectory.Value);
    SetImportButtons();
    SelectedImportFile.clear();
    if (deletion.stays == Stays::No) voice_.PlayPrompt("DeleteOne");
  }
  window_.FocusAway();
}

ImportDeletion ImportList::DeleteIfSeen(const std::string& path) {
  const auto seen = seen_.find(path);
  const auto facts = disk_.Facts(path);
  if (!facts) {
    const bool noAnswer = disk_.OutOfReach(path);
    return {Stays::Refused, noAnswer ? DiskResult::OutOfReach : DiskResult::NotFound,
            moves_.IsInDoubt(path)};
  }
  // A recorder may have put its next dictation there under the same name.
  if (seen == seen_.end() || seen->second != *facts) return {Stays::IsNew, DiskResult::Failed};
  // Elsewhere a file that is open can not be deleted. Here that would take away what is written.
  if (disk_.TestReadiness(path) == store::Readiness::InUse)
    return {Stays::InUse, DiskResult::Failed};
  const DiskResult deleted = moves_.DeleteForGood(path);
  return {deleted == DiskResult::Done ? Stays::No : Stays::Refused, deleted};
}

void ImportList::DeleteAll() {
  if (!window_.guards.ListsMayChange()) return;
  engine_.StopPlay();
  engine_.CloseFile();
  if (!UserAgrees("Are you sure you want to delete all the Imported files?", base::Reply::No) ||
      !UserAgrees("Are you absolutely sure you want to delete all the Imported files?",
                  base::Reply::No)) {
    return;
  }
  engine_.tmrPlaySnipet.Stop();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    const std::string folder = ImportDirectoryPath(folders_, form_.txtWavImportSubdirectory.Value);
    const ImportDeletions deletions = DeleteDirectory(folder);
    const std::string words = ImportDeletionsInWords(deletions);
    ShowAsEmptied(words.empty());
    window_.Say(words);
    if (words.empty()) voice_.PlayPrompt("DeleteAllImport");
  }
  window_.FocusAway();
}

ImportDeletions ImportList::DeleteDirectory(const std::string& folder) {
  const store::Listing listing = disk_.ListPlainFiles(folder);
  ImportDeletions deletions;
  FileProgress progress([this](const auto& text) { window_.SayHowFar(text); }, "Deleting",
                        listing.names.size());
  for (const std::string& name : listing.names) {
    progress.Next();
    loop_.Breathe();
    const ImportDeletion deletion = DeleteIfSeen(folder + name);
    deletions.areNew += deletion.stays == Stays::IsNew;
    deletions.inUse += deletion.stays == Stays::InUse;
    if (deletion.stays != Stays::Refused) continue;
    // Somebody else has taken it.
    if (deletion.result == DiskResult::NotFound) continue;
    ++deletions.refused;
    if (deletions.result == DiskResult::Done) deletions.result = deletion.result;
    // From here on nothing that is asked of the directory is done.
    if (deletion.result == DiskResult::OutOfReach) {
      deletions.result = DiskResult::OutOfReach;
      return deletions;
    }
  }
  if (!listing.finished && deletions.result == DiskResult::Done) {
    deletions.result = listing.processInTrouble   ? DiskResult::ProcessInTrouble
                       : disk_.OutOfReach(folder) ? DiskResult::OutOfReach
                                                  : DiskResult::Failed;
  }
  return deletions;
}

void ImportList::ShowAsEmptied(bool empty) {
  ForgetRows();
  window::ShowNoDocument(form_);
  form_.listViewImport.WhenEmpty = std::string(empty ? kNothingToImport : kSomeFilesStay);
  // This is intended: the caption counts the Completed list. The next scan puts it right.
  WriteCaption(static_cast<int>(form_.listViewCompleted.Rows().size()), 0);
  counts_.ListWasBuilt(0, empty);
  SetEnabled(forms::ImportKeys(form_), false);
  rescued_.CountRescued();
}

bool ImportList::UserAgrees(const char* question, base::Reply byDefault) {
  return loop_.Show({.title = "Tavlo Deck - Import",
                     .text = question,
                     .icon = base::Icon::Question,
                     .buttons = base::Buttons::YesNo,
                     .byDefault = byDefault}) == base::Reply::Yes;
}

void ImportList::WriteCaption(int count, double totalMilliseconds) {
  form_.frameImport.Caption =
      "Import:     " + std::to_string(count) + "     " + base::FormatHMS(totalMilliseconds);
}

}  // namespace tavlo::intake
