#include <string_view>

#include "intake/import_directories.h"
#include "simulation/places.h"
#include "simulation/typist.h"

namespace tavlo::simulation {
namespace {

constexpr std::string_view kDeleteImportQuestion =
    "Are you sure you want to delete the selected Imported file?";
/// The second of the two questions.
constexpr std::string_view kDeleteAllImportsQuestion =
    "Are you absolutely sure you want to delete all the Imported files?";
/// What is let go over a list beside files: a folder, something that is not there, what is no path
/// of this computer, and what lies in the deck's own folders.
constexpr const char* kNoFiles[] = {"/home/typist/Desktop", "/home/typist/Desktop/not there.wav",
                                    "smb://server/share/a.wav", "/home/typist/../etc"};

}  // namespace

void Typist::WorkOnImports() {
  forms::MainForm& main = desk_.Main();
  if (!main.listViewImport.Reachable()) Press(main.mnuViewImport);
  for (int deeds = 1 + chance_.Below(4); deeds > 0; --deeds) {
    switch (chance_.Below(9)) {
      case 0:
      case 1:
        // As a rule one of a few, so that what comes in is met.
        TurnToDirectory(chance_.OneIn(3) ? chance_.Below(intake::kImportDirectories)
                                         : chance_.Below(4));
        break;
      case 2:
        Press(main.cmdRefreshImportList);
        break;
      case 3:
        Press(main.cmdSendAllImportFilesToQueue);
        break;
      case 4:
        Press(chance_.OneIn(2) ? main.cmdDeleteOneImportFile : main.cmdDeleteAllImportFile);
        break;
      case 5:
        Note("chooses a profile");
        if (!main.comboAuthorLastName.Rows().empty()) {
          main.comboAuthorLastName.RowClick(
              chance_.Below(static_cast<int>(main.comboAuthorLastName.Rows().size())));
        }
        break;
      case 6:
        Note("clicks " + main.chkImportSynchronize.Name);
        main.chkImportSynchronize.Click();
        break;
      default:
        ClickImportRow();
        if (chance_.OneIn(3)) WaitAWhile();
        Press(main.cmdSendImportFileToQueue);
        break;
    }
  }
}

void Typist::TurnToDirectory(int directory) {
  forms::Range& scroll = desk_.Main().scrollImportWavSubDirectories;
  Note("turns to the directory " + std::to_string(directory));
  scroll.Press();
  scroll.Change(directory + 1);
  scroll.Release();
}

std::vector<std::string> Typist::FreshOnDesktop() const {
  std::vector<std::string> paths;
  for (const std::string& name : desk_.disk.NamesIn(kDesktop)) {
    // A file that is taken there again would rightly stand there twice.
    const std::string path = kDesktop + name;
    if (paths.size() < 3 && !dropped_.contains(path)) paths.push_back(path);
  }
  return paths;
}

void Typist::TakeThere(const std::vector<std::string>& paths) {
  for (const std::string& path : paths) {
    dropped_.insert(path);
    ledger_.MayCome(desk_.disk.Contents(path));
  }
}

void Typist::DropFiles() {
  forms::MainForm& main = desk_.Main();
  forms::Table& list = main.listViewImport.Reachable() ? main.listViewImport : main.listViewInQueue;
  std::vector<std::string> paths = FreshOnDesktop();
  if (list.Reachable()) TakeThere(paths);
  if (chance_.OneIn(3)) paths.push_back(chance_.Pick(kNoFiles));
  if (chance_.OneIn(6)) {
    for (const std::string& name : desk_.disk.NamesIn(Desk::Path(kInQueue))) {
      paths.push_back("/home/typist/../.." + Desk::Path(kInQueue) + name);
    }
  }
  Note("drops " + std::to_string(paths.size()) + " files over " + list.Name);
  list.DropFiles(paths);
}

void Typist::OpenFiles() {
  if (!desk_.handover.Listens()) return;
  std::vector<std::string> paths = FreshOnDesktop();
  TakeThere(paths);
  if (paths.empty() || chance_.OneIn(3)) paths.push_back(chance_.Pick(kNoFiles));
  Note("opens " + std::to_string(paths.size()) + " files");
  desk_.handover.Come(paths);
}

void Typist::NoteImportConsent(const base::MessageBox& box) {
  const forms::MainForm& main = desk_.Main();
  const std::string folder =
      intake::ImportDirectoryPath(desk_.Rooms()->folders, main.txtWavImportSubdirectory.Value);
  const forms::Table& list = main.listViewImport;
  if (box.text == kDeleteImportQuestion && list.ListIndex >= 0) {
    NoteConsentFor(folder + list.TextAt(list.ListIndex, forms::import_column::FileName));
  }
  if (box.text != kDeleteAllImportsQuestion) return;
  // What the list does not show nobody has agreed to.
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    NoteConsentFor(folder + list.TextAt(row, forms::import_column::FileName));
  }
}

void Typist::NoteConsentFor(const std::string& shown) {
  ledger_.MayBeDeleted(desk_.disk, shown);
  // A row of what could not be converted bears the name of the wave that was to be made of it.
  if (desk_.disk.Has(shown)) return;
  const std::string stem = shown.substr(0, shown.rfind('.'));
  for (const char* ending : {".dss", ".DSS"}) ledger_.MayBeDeleted(desk_.disk, stem + ending);
}

}  // namespace tavlo::simulation
