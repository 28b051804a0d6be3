#include "day.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTableView>
#include <QWidget>
#include <cmath>
#include <utility>

namespace tavlo::tour {
namespace {

namespace column = forms::document_column;

QString WorkFolder(const char* name) {
  return QDir::homePath() + "/Lyrane/TavloDeck/Files/" + name;
}

}  // namespace

Day::Day(platform::desktop::Program& program, Left& left, const test::PedalPipe* foot,
         QString recording)
    : program_(program),
      left_(left),
      foot_(foot),
      typist_(program.Loop()),
      recording_(std::move(recording)) {}

std::vector<Step> Day::Steps() {
  std::vector<Step> steps;
  AddStart(steps);
  AddArrivals(steps);
  AddListening(steps);
  AddShaping(steps);
  AddFinishing(steps);
  AddList(steps);
  AddCompleted(steps);
  AddImport(steps);
  AddOddDocuments(steps);
  AddWishes(steps);
  AddLetter(steps);
  AddAlert(steps);
  AddAnswer(steps);
  AddReports(steps);
  AddDeleting(steps);
  AddFaces(steps);
  AddQuiet(steps);
  AddWindows(steps);
  AddServer(steps);
  AddRefusal(steps);
  AddListing(steps);
  AddMoving(steps);
  AddDownload(steps);
  AddArrived(steps);
  AddRetrieval(steps);
  AddLostServer(steps);
  AddPaths(steps);
  AddOwnWays(steps);
  AddEnd(steps);
  return steps;
}

void Day::AddStart(std::vector<Step>& steps) {
  const forms::SplashForm& splash = program_.Deck().windows.splash;
  steps.push_back({.says = "the splash stands and shows the version",
                   .seen =
                       [&splash] {
                         return splash.frmInitSplash.Visible &&
                                splash.lblVersion.Value.Get().starts_with("Version:  ") &&
                                splash.ProgressBar1.Value >= 2;
                       },
                   .picture = "splash"});
  steps.push_back({.says = "the main window shows the Queue, priority first and oldest first",
                   .seen =
                       [this] {
                         return Ready() && Main().listViewInQueue.Rows().size() >= 10 &&
                                RowOf("Brown") == 0 && RowOf("Okafor") == 1;
                       },
                   .picture = "queue"});
}

void Day::AddListening(std::vector<Step>& steps) {
  steps.push_back(ClickRowOf(
      "Lindqvist", "a click fills the status bar and sounds the beginning",
      [this] {
        return Playing() && Main().StatusBar1.Panels.Get()[2] == "Lindqvist" && Seconds() > 1;
      },
      "preview"));
  // A preview that ends by itself leaves its key enabled.
  steps.push_back(
      {.says = "Stop ends the preview",
       .act =
           [this] {
             if (!Playing()) return ClickAuthor("listViewInQueue", RowOf("Lindqvist"));
             typist_.ClickUnseen(typist_.Middle("cmdImportCompleteSnipetStop"));
           },
       .seen = [this] { return !Playing() && !Main().cmdImportCompleteSnipetStop.Enabled; },
       .over = [] { return true; }});
  steps.push_back(Click(
      "cmdPlay", "Play shrinks the window to the player and sounds the document",
      [this] {
        return Playing() && Main().MeterLeft.Value > 20 && !Main().frameFiles.Visible &&
               Seconds() > 5;
      },
      "playing"));
  steps.push_back(Click("cmdStop", "Stop stops where the ear is", [this] {
    remembered_ = Seconds();
    return !Playing() && remembered_ > 5;
  }));
  steps.push_back(Click("cmdPlay", "Play goes on from there, less the auto-backspace", [this] {
    const double back = program_.Deck().windows.configuration.sliderABS.Value / 10.0;
    return Playing() && std::abs(Seconds() - (remembered_ - back)) < 1.5;
  }));
  steps.push_back(Drag("slPosition", 50, "the position slider seeks", [this] {
    const double half = static_cast<double>(Rooms()->engine.File().LengthMilliseconds()) / 2000;
    return Playing() && std::abs(Seconds() - half) < 3;
  }));
}

void Day::AddShaping(std::vector<Step>& steps) {
  steps.push_back(Drag("Slider1", 10, "the speed slider slows the voice down",
                       [this] { return Rooms()->engine.PlaySpeedPercent < 75; }));
  steps.push_back({.says = "two seconds pass at that speed",
                   .act = [this] { remembered_ = Seconds(); },
                   .seen = [this] { return Seconds() - remembered_ > 1.5; }});
  steps.push_back(Click("cmdNormalSpeed", "MID puts the speed back",
                        [this] { return Rooms()->engine.PlaySpeedPercent == 100; }));
  steps.push_back(Drag("sldVol", 95, "the volume slider makes it louder",
                       [this] { return Main().txtVolume.WholeNumber() > 55'000; }));
  steps.push_back(
      Click("cmdRewind", "Rewind jumps back", [this] { return !Playing() && Main().DeckRuns; }));
  steps.push_back(Click("cmdStop", "Stop ends the wind", [this] { return !Main().DeckRuns; }));
}

void Day::AddFinishing(std::vector<Step>& steps) {
  steps.push_back(Click(
      "cmdSave", "Save brings the list back and marks the row",
      [this] { return Ready() && Cell("Lindqvist", column::Saved) == "Saved"; }, "saved"));
  AddCompleting(steps, "Brown");
}

void Day::AddCompleting(std::vector<Step>& steps, const std::string& author) {
  const auto completed = [] {
    return static_cast<int>(QDir(WorkFolder("Completed")).entryList(QDir::Files).size());
  };
  steps.push_back(ClickRowOf(author, "the next document is chosen", [this] { return Playing(); }));
  steps.push_back(Click("cmdPlay", "and played", [this] { return Playing() && Seconds() > 1; }));
  steps.push_back(Click(
      "cmdSkipEnd", "Skip to end offers Complete",
      [this] { return !Playing() && Main().cmdComplete.Enabled; }, "at-the-end"));
  steps.push_back({.says = "Complete moves the document to the Completed folder",
                   .act =
                       [this, completed] {
                         rows_ = static_cast<int>(Main().listViewInQueue.Rows().size());
                         files_ = completed();
                         typist_.ClickUnseen(typist_.Middle("cmdComplete"));
                       },
                   .seen =
                       [this, completed] {
                         return Ready() &&
                                static_cast<int>(Main().listViewInQueue.Rows().size()) ==
                                    rows_ - 1 &&
                                completed() == files_ + 1;
                       }});
}

void Day::AddList(std::vector<Step>& steps) {
  steps.push_back({.says = "a new dictation appears after a refresh",
                   .act =
                       [this] {
                         const QDir queue(WorkFolder("InQueue"));
                         const QString any = queue.entryList({"*Haddad*"}, QDir::Files).value(0);
                         QFile::copy(queue.filePath(any),
                                     queue.filePath(QString(any).replace("Haddad", "Newman")));
                         typist_.KeysUnseen({keys::kF5});
                       },
                   .seen = [this] { return Ready() && RowOf("Newman") >= 0; }});
  steps.push_back(
      {.says = "a click on a heading sorts by that column",
       .act =
           [this] {
             const auto* list = qobject_cast<QTableView*>(typist_.Widget("listViewInQueue"));
             if (!list) return;
             const QRect cell = list->visualRect(list->model()->index(0, column::Author));
             typist_.ClickUnseen(list->viewport()->mapToGlobal(QPoint(cell.center().x(), -10)));
           },
       .seen = [this] { return Main().listViewInQueue.SortColumn() == column::Author; },
       .picture = "sorted"});
}

void Day::AddCompleted(std::vector<Step>& steps) {
  const auto menuShows = [] { return QApplication::activePopupWidget() != nullptr; };
  steps.push_back(Keys({keys::kAlt, 'v'}, "the View menu opens", menuShows, "view-menu"));
  steps.push_back(Keys({'c'}, "the Completed view shows the finished document", [this] {
    const forms::Table& list = Main().listViewCompleted;
    return Main().frameCompleted.Visible && !Main().frameInQueue.Visible &&
           list.Rows().size() == 1 && list.TextAt(0, column::Author) == "Brown" &&
           Main().cmdMoveToQueue.Enabled;
  }));
  steps.push_back({.says = "a click sounds its beginning",
                   .act = [this] { ClickAuthor("listViewCompleted", 0); },
                   .seen = [this] { return Playing() && Seconds() > 1; },
                   .over = [this] { return !Playing(); },
                   .picture = "completed"});
  steps.push_back(Click("cmdMoveToQueue", "Return to Queue takes it out of the list", [this] {
    return !Playing() && Main().listViewCompleted.Rows().empty() &&
           !Main().cmdMoveToQueue.Enabled &&
           QDir(WorkFolder("Completed")).entryList(QDir::Files).empty();
  }));
  steps.push_back(Keys({keys::kAlt, 'v'}, "the View menu opens again", menuShows));
  steps.push_back(Keys({'q'}, "and the Queue has the document back",
                       [this] { return Ready() && RowOf("Brown") == 0; }));
}

void Day::AddWindows(std::vector<Step>& steps) {
  const shell::Windows& windows = program_.Deck().windows;
  steps.push_back(Keys(
      {keys::kAlt, 'f'}, "the File menu opens",
      [] { return QApplication::activePopupWidget() != nullptr; }, "menu"));
  steps.push_back(Keys(
      {'c'}, "the configuration takes the screen",
      [&windows, this] {
        return windows.configuration.frmConfiguration.Visible && !Main().frmMain.Visible;
      },
      "configuration"));
  steps.push_back(Click("cmdCenterMiniPlayer", "its key centers the mini-player", [this] {
    const forms::Window& window = Main().frmMain;
    return std::abs(Main().txtPlayerTop.WholeNumber() -
                    (window.ScreenHeight - PlayerHeight()) / 2) <= 15;
  }));
  steps.push_back({.says = "closing it brings the deck back",
                   .act =
                       [this] {
                         typist_.KeysUnseen({keys::kAlt, 'c'});
                       },
                   .seen = [&windows] { return windows.main.frmMain.Visible.Get(); }});
  steps.push_back(Keys({keys::kAlt, 'f'}, "the File menu opens again",
                       [] { return QApplication::activePopupWidget() != nullptr; }));
  steps.push_back(Keys(
      {'a'}, "the about box shows", [&windows] { return windows.about.frmAbout.Visible.Get(); },
      "about"));
  steps.push_back(Keys({keys::kAlt, 'c'}, "and closes",
                       [&windows] { return !windows.about.frmAbout.Visible.Get(); }));
  steps.push_back({.says = "a second copy is refused",
                   .act =
                       [this] {
                         secondCopy_.start(QCoreApplication::applicationDirPath() + "/tavlodeck",
                                           QStringList());
                       },
                   // Its box shows in a process of its own; Return answers it once it is in front.
                   .seen =
                       [this] {
                         if (secondCopy_.state() == QProcess::NotRunning) {
                           return secondCopy_.exitCode() == 1;
                         }
                         if (!QApplication::activeWindow()) typist_.KeysUnseen({keys::kReturn});
                         return false;
                       }});
}

void Day::AddEnd(std::vector<Step>& steps) {
  steps.push_back(ClickRowOf("Nakamura", "a last document is chosen",
                             [this] { return Playing() && Seconds() > 0.5; }));
  steps.push_back(Click("cmdPlay", "and played in the middle of the screen", [this] {
    const forms::Window& window = Main().frmMain;
    return Main().cmdSkip.Enabled && window.Height == PlayerHeight() &&
           std::abs(window.Top - (window.ScreenHeight - window.Height) / 2) <= 15;
  }));
  steps.push_back(Drag("Slider1", 60, "a little faster than normal", [this] {
    left_.speed = Rooms()->engine.PlaySpeedPercent;
    return left_.speed > 100;
  }));
  steps.push_back(Keys(
      {keys::kAlt, keys::kF4}, "exit is refused while it is in work", [this] { return BoxOpen(); },
      "must-finish"));
  steps.push_back(Keys({keys::kReturn}, "the box closes and the sound has stopped",
                       [this] { return !BoxOpen() && !Playing(); }));
  steps.push_back({.says = "Skip leaves the document as it is and sounds the next one",
                   .act =
                       [this] {
                         left_.volume = Main().txtVolume.WholeNumber();
                         left_.playerLeft = Main().frmMain.Left;
                         left_.playerTop = Main().frmMain.Top;
                         typist_.ClickUnseen(typist_.Middle("cmdSkip"));
                       },
                   .seen =
                       [this] {
                         return Ready() && Playing() && RowOf("Nakamura") >= 0 &&
                                Main().listViewInQueue.ListIndex >= 0 && !Main().cmdSkip.Enabled;
                       }});
  steps.push_back(Keys(
      {keys::kAlt, keys::kF4}, "exit asks", [this] { return BoxOpen(); }, "exit"));
  steps.push_back(Keys({keys::kEscape}, "no keeps the deck", [this] { return !BoxOpen(); }));
  steps.push_back(Keys({keys::kAlt, keys::kF4}, "exit asks again", [this] { return BoxOpen(); }));
  steps.push_back({.says = "yes ends it",
                   .act =
                       [this] {
                         Settings().copy(left_.settings.data(), left_.settings.size() - 1);
                         typist_.KeysUnseen({keys::kReturn});
                       },
                   .seen = [this] { return !BoxOpen(); }});
}

Step Day::Click(const char* control, std::string says, std::function<bool()> seen,
                std::string picture) {
  return {.says = std::move(says),
          .act = [this, control] { typist_.ClickUnseen(typist_.Middle(control)); },
          .seen = std::move(seen),
          .picture = std::move(picture)};
}

Step Day::ClickRowOf(const std::string& author, std::string says, std::function<bool()> seen,
                     std::string picture) {
  return {.says = std::move(says),
          .act = [this, author] { ClickAuthor("listViewInQueue", RowOf(author)); },
          .seen = std::move(seen),
          .over = [this] { return !Playing() && !BoxOpen(); },
          .picture = std::move(picture)};
}

Step Day::Keys(std::initializer_list<std::uint32_t> symbols, std::string says,
               std::function<bool()> seen, std::string picture) {
  const std::vector<std::uint32_t> keys(symbols);
  return {.says = std::move(says),
          .act =
              [this, keys] {
                if (keys.size() == 1) {
                  typist_.KeysUnseen({keys[0]});
                } else {
                  typist_.KeysUnseen({keys[0], keys[1]});
                }
              },
          .seen = std::move(seen),
          .picture = std::move(picture)};
}

Step Day::Drag(const char* slider, int percent, std::string says, std::function<bool()> seen) {
  return {.says = std::move(says),
          .act =
              [this, slider, percent] {
                const QWidget* const widget = typist_.Widget(slider);
                if (!widget) return;
                const int target = widget->width() * percent / 100;
                const int middle = widget->height() / 2;
                typist_.PressAt(widget->mapToGlobal(QPoint(target - 5, middle)));
                typist_.MoveTo(widget->mapToGlobal(QPoint(target, middle)));
                typist_.Release();
              },
          .seen = std::move(seen)};
}

void Day::ClickAuthor(const char* list, int row) {
  auto* const view = qobject_cast<QTableView*>(typist_.Widget(list));
  if (!view) return;
  const QModelIndex cell = view->model()->index(row, column::Author);
  view->scrollTo(cell);
  typist_.ClickUnseen(view->viewport()->mapToGlobal(view->visualRect(cell).center()));
}

int Day::RowIn(const forms::Table& list, const std::string& author) {
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    if (list.TextAt(row, column::Author) == author) return row;
  }
  return -1;
}

std::string Day::Cell(const std::string& author, int at) {
  return Main().listViewInQueue.TextAt(RowOf(author), at);
}

std::string Day::Settings() {
  std::string all;
  window::SettingsBinding& settings = Rooms()->binding;
  for (const auto& bindings : {settings.Bindings(), settings.FtpProfile().Bindings()}) {
    for (const window::Binding& binding : bindings) {
      all += std::string(binding.field) + " " + binding.Shown() + "\n";
    }
  }
  return all;
}

bool Day::Ready() {
  return Rooms() && Main().frameFiles.Visible && Main().listViewInQueue.Visible &&
         Main().mnuFile.Enabled && Main().frmMain.MousePointer == forms::Pointer::Arrow &&
         Main().cmdUpdateFileList.Visible && Main().cmdUpdateFileList.Enabled;
}

bool Day::Playing() { return Rooms() && Rooms()->engine.IsPlaying; }

double Day::Seconds() {
  const double rate = Rooms()->engine.File().SampleRate();
  return rate > 0 ? Rooms()->documentInWork.CurrentSamplePosition / rate : 0;
}

}  // namespace tavlo::tour
