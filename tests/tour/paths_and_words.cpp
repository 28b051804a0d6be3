// A folder of the typist's own for the recorder, and the words and ways of the deck made theirs.
#include <QDir>
#include <QFile>
#include <QTableView>
#include <string>
#include <utility>

#include "day.h"
#include "desk.h"

namespace tavlo::tour {
namespace {

namespace column = forms::document_column;

constexpr const char* kFolder = "Recorder";
constexpr const char* kDictation = "0040 0 Ekwueme 7 3 2 2004 9 0 0 6 0 8 ward 0 0_.eW2";

std::string RecorderFolder() { return InHome(kFolder).toStdString(); }

}  // namespace

void Day::AddPaths(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(
      {.says = "a recorder keeps its dictations in a folder of its own",
       .act =
           [] {
             QDir::home().mkdir(kFolder);
             QFile::copy(InHome("Lyrane/TavloDeck/Files/InQueue/Memo from Anna.wav"),
                         InHome(QString(kFolder) + "/" + kDictation));
           },
       .seen = [] { return QFile::exists(InHome(QString(kFolder) + "/" + kDictation)); }});
  AddPage(steps, 'p', config.frameConfigAlternatePath,
          "the page of the paths shows the home folder", "paths");
  steps.push_back(
      {.says = "the recorder's folder is clicked",
       .act = [this] { ClickFolder(kFolder); },
       .seen = [&config] { return config.Dir1.TextAt(config.Dir1.ListIndex, 0) == kFolder; }});
  steps.push_back(Keys({keys::kReturn}, "and Enter opens it", [&config] {
    return config.lblBrowsedFolder.Value.Get() == RecorderFolder();
  }));
  steps.push_back(Click(
      "cmdSetEw2QueuePath", "Set takes it for the .eW2 files",
      [&config] { return config.txtEw2QueuePath.Value.Get() == RecorderFolder(); }, "path-set"));
  steps.push_back(CloseSettings());
  steps.push_back(Click(
      "cmdUpdateFileList", "and a refresh brings the dictation from there",
      [this] { return Ready() && RowOf("Ekwueme") >= 0 && QDir(InHome(kFolder)).isEmpty(); }));
  AddPage(steps, 'p', config.frameConfigAlternatePath, "the path can be had back");
  steps.push_back(Click("cmdEw2QueuePathDefault", "by its Default", [&config] {
    return config.txtEw2QueuePath.Value.Get().ends_with("/Lyrane/TavloDeck/Files/eW2Queue");
  }));
}

void Day::AddOwnWays(std::vector<Step>& steps) {
  forms::ConfigurationForm& config = program_.Deck().windows.configuration;
  steps.push_back(Keys({keys::kAlt, 's'}, "the page of the settings shows again",
                       [&config] { return config.frameSettings.Visible.Get(); }));
  AddTyping(steps, "txtSubjectHeading", "patient", config.txtSubjectHeading,
            "subjects are patients here");
  AddTyping(steps, "txtCustomDisplay", "ward five", config.txtCustomDisplay,
            "the deck is to show where it stands");
  steps.push_back(Drag("sliderABS", 30, "each start goes back by some three seconds", [&config] {
    return config.txtAutoBackspace.WholeNumber() > 20 &&
           config.frameAutoBackspace.Caption.Get().starts_with("Auto Backspace:  ");
  }));
  steps.push_back(Click("chkAccelerateWindIncrement", "winding keeps its pace", [&config] {
    return config.txtAccelerateWindIncrement.Value.Get() == "N";
  }));
  steps.push_back(Drag("sldPromptVol", 60, "and the prompts louder",
                       [&config] { return config.txtPromptVolume.WholeNumber() > 30'000; }));
  steps.push_back({.says = "so it is kept",
                   .act =
                       [this] {
                         typist_.KeysUnseen({keys::kAlt, 'c'});
                       },
                   .seen =
                       [this] {
                         return !ConfigurationShows() && Ready() && Main().frmMain.HasKeyboard &&
                                Main().listViewInQueue.Columns()[column::Subject].title ==
                                    "patient";
                       },
                   .picture = "own-ways"});
}

void Day::AddPage(std::vector<Step>& steps, std::uint32_t letter, const forms::Pane& page,
                  std::string says, std::string picture) {
  steps.push_back({.says = "the configuration opens",
                   .act =
                       [this] {
                         typist_.KeysUnseen({keys::kAlt, 'f'});
                         typist_.KeysUnseen({'c'});
                       },
                   .seen = [this] { return ConfigurationShows(); }});
  // It has the page that it showed last.
  steps.push_back(Keys(
      {keys::kAlt, letter}, std::move(says),
      [this, &page] { return ConfigurationShows() && page.Visible; }, std::move(picture)));
}

void Day::ClickFolder(const std::string& name) {
  auto* const view = qobject_cast<QTableView*>(typist_.Widget("Dir1"));
  if (!view) return;
  const forms::Table& folders = program_.Deck().windows.configuration.Dir1;
  for (int row = 0; row < static_cast<int>(folders.Rows().size()); ++row) {
    if (folders.TextAt(row, 0) != name) continue;
    const QModelIndex cell = view->model()->index(row, 0);
    view->scrollTo(cell);
    typist_.ClickUnseen(view->viewport()->mapToGlobal(view->visualRect(cell).center()));
  }
}

}  // namespace tavlo::tour
