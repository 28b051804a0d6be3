// How work comes in: by the drop folders, from a name that is taken into the rescue folder, and by
// way of the Import view with a profile applied.
#include <QDir>
#include <QFile>
#include <QTableView>
#include <QWidget>
#include <array>

#include "day.h"
#include "desk.h"

namespace tavlo::tour {
namespace {

struct Arrival {
  const char* author;
  const char* folder;  ///< Below the home, in which it was dropped.
  const char* ending;
  const char* what;
  const char* picture;
};

constexpr std::array kArrivals{
    Arrival{"Petersen", "Lyrane/TavloDeck/Files/eW2Queue", ".eW2", "a wave of another name",
            "arrived-eW2"},
    Arrival{"Adeyemi", "Lyrane/TavloDeck/Files/eU2Queue", ".eU2", "bare mu-law", "arrived-eU2"},
    Arrival{"Sorensen", "Lyrane/TavloDeck/Files/dS2Queue", ".dS2", "a DSS recording",
            "arrived-dS2"},
    Arrival{"Castell", "", ".eE2", "what lay in the folder of the start", "arrived-eE2"},
};

QString DropFolder() { return InHome("Lyrane/TavloDeck/Files/eW2Queue"); }

QStringList FilesIn(const QString& folder, const QString& pattern) {
  return QDir(folder).entryList({pattern}, QDir::Files);
}

QByteArray SomeSpeech() {
  return ContentsOf(InHome("Lyrane/TavloDeck/Files/InQueue/Memo from Anna.wav"));
}

/// Some letters in a row, as a typist presses them.
constexpr std::array<std::uint32_t, 6> kKeller{'k', 'e', 'l', 'l', 'e', 'r'};

}  // namespace

void Day::AddArrivals(std::vector<Step>& steps) {
  for (const Arrival& arrival : kArrivals) {
    const QString folder = InHome(arrival.folder);
    const QString pattern = QString("*") + arrival.ending;
    steps.push_back(ClickRowOf(
        arrival.author, std::string(arrival.what) + ", " + arrival.ending + ", came in and sounds",
        [this, arrival, folder, pattern] {
          const forms::Table& list = Main().listViewInQueue;
          return Playing() && Seconds() > 1 && FilesIn(folder, pattern).isEmpty() &&
                 list.ListIndex == RowOf(arrival.author);
        },
        arrival.picture));
  }
  steps.push_back(
      Click("cmdImportCompleteSnipetStop", "Stop ends the preview", [this] { return !Playing(); }));
  AddWriter(steps);
  AddRescue(steps);
}

void Day::AddWriter(std::vector<Step>& steps) {
  steps.push_back(
      {.says = "a dictation that is still being written stays where it is; one that is done comes",
       .act =
           [this] {
             const QByteArray speech = SomeSpeech();
             writer_.setFileName(DropFolder() +
                                 "/0021 0 Writer 9 3 10 2004 13 0 0 6 0 8 half 0 0_.eW2");
             if (writer_.open(QFile::WriteOnly)) writer_.write(speech.left(speech.size() / 2));
             writer_.flush();
             QFile done(DropFolder() + "/0021 0 Ready 9 3 10 2004 13 1 0 6 0 8 whole 0 0_.eW2");
             if (done.open(QFile::WriteOnly)) done.write(speech);
             done.close();
             typist_.KeysUnseen({keys::kF5});
           },
       .seen =
           [this] {
             return Ready() && RowOf("Ready") >= 0 && RowOf("Writer") < 0 && writer_.exists();
           }});
  steps.push_back(
      {.says = "and comes once its writer has closed it",
       .act =
           [this] {
             const QByteArray speech = SomeSpeech();
             writer_.write(speech.mid(speech.size() / 2));
             writer_.close();
             typist_.KeysUnseen({keys::kF5});
           },
       .seen = [this] { return Ready() && RowOf("Writer") >= 0 && !writer_.exists(); }});
}

void Day::AddRescue(std::vector<Step>& steps) {
  steps.push_back(
      {.says = "one whose name is taken sets the one before aside, and the deck says so",
       .act =
           [this] {
             QFile again(DropFolder() + "/0021 0 Ready 9 3 10 2004 13 1 0 6 0 8 whole 0 0_.eW2");
             if (again.open(QFile::WriteOnly)) again.write(SomeSpeech());
             again.close();
             typist_.KeysUnseen({keys::kF5});
           },
       .seen =
           [this] {
             return Ready() && Main().cmdRescued.Visible &&
                    Main().cmdRescued.Caption.Get() == "Rescued: 1" &&
                    Main().lblNotice.Value.Get().find("Rescued") != std::string::npos &&
                    RowOf("Ready") >= 0;
           },
       .picture = "rescued"});
  steps.push_back(Click("cmdRescued", "a click has the desktop show the rescue folder", [] {
    return ShownFolder() == ("file://" + InHome("Lyrane/TavloDeck/Files/Rescued")).toUtf8();
  }));
}

void Day::AddImport(std::vector<Step>& steps) {
  const auto list = [this]() -> const forms::Table& { return Main().listViewImport; };
  const auto directory = [this] { return Main().txtWavImportSubdirectory.Value.Get(); };
  const auto named = [list](const char* begin) {
    for (const forms::Row& row : list().Rows()) {
      if (row.cells.at(forms::import_column::FileName).text.starts_with(begin)) return true;
    }
    return false;
  };
  steps.push_back({.says = "the Import view shows what came by FTP, and plays nothing",
                   .act =
                       [this] {
                         typist_.KeysUnseen({keys::kAlt, 'v'});
                         typist_.KeysUnseen({'i'});
                       },
                   .seen =
                       [this, named] {
                         return Main().frameImport.Visible && !Main().frameInQueue.Visible &&
                                !Main().cmdPlay.Enabled && Main().sldVol.Enabled &&
                                named("Board memo_") && named("Phone note_");
                       },
                   .picture = "import"});
  const auto turn = [this] {
    if (QWidget* const strip = typist_.Widget("scrollImportWavSubDirectories")) strip->setFocus();
    typist_.KeysUnseen({keys::kRight});
  };
  const auto at = [directory, list](const char* number, std::size_t rows) {
    return [=] { return directory() == number && list().Rows().size() == rows; };
  };
  steps.push_back({.says = "the next directory is empty", .act = turn, .seen = at("1", 0)});
  steps.push_back({.says = "the second one holds a wave", .act = turn, .seen = at("2", 1)});
  steps.push_back({.says = "the third one held a DSS recording, which is a wave now",
                   .act = turn,
                   .seen =
                       [this, at, named, list] {
                         return at("3", 1)() && named("Home visit.wav") &&
                                list().TextAt(0, forms::import_column::Length) != "00:00:00" &&
                                Main().txtImportAuthorLastName.Value.Get() == "Author4";
                       },
                   .picture = "import-converted"});
  AddProfile(steps);
  AddSending(steps);
}

void Day::AddProfile(std::vector<Step>& steps) {
  steps.push_back({.says = "a click sounds how it begins",
                   .act = [this] { ClickImportRow(0); },
                   .seen = [this] { return Playing() && Seconds() > 1; }});
  steps.push_back(Click("txtImportAuthorLastName", "the profile's name is clicked", [this] {
    const QWidget* const box = typist_.Widget("txtImportAuthorLastName");
    return box && box->hasFocus();
  }));
  steps.push_back(
      {.says = "and typed anew",
       .act =
           [this] {
             typist_.KeysUnseen({keys::kControl, 'a'});
             for (const std::uint32_t letter : kKeller) typist_.KeysUnseen({letter});
           },
       .seen = [this] { return Main().txtImportAuthorLastName.Value.Get() == "keller"; }});
  steps.push_back(Click(
      "chkImportPriority", "its files get priority",
      [this] { return Main().txtImportPriority.Value.Get() == "Y"; }, "import-profile"));
}

void Day::AddSending(std::vector<Step>& steps) {
  const QString queue = InHome("Lyrane/TavloDeck/Files/InQueue");
  const auto previous = [this] {
    if (QWidget* const strip = typist_.Widget("scrollImportWavSubDirectories")) strip->setFocus();
    typist_.KeysUnseen({keys::kLeft});
  };
  steps.push_back(Click("cmdSendImportFileToQueue", "Send One gives the file the profile's name",
                        [this, queue] {
                          return Main().listViewImport.Rows().empty() &&
                                 FilesIn(queue, "0003 0 keller 4 *P_.wav").size() == 1;
                        }));
  steps.push_back({.says = "back in the second directory its own profile shows",
                   .act = previous,
                   .seen = [this] {
                     return Main().listViewImport.Rows().size() == 1 &&
                            Main().txtImportAuthorLastName.Value.Get() == "Author3";
                   }});
  steps.push_back(Click(
      "cmdSendAllImportFilesToQueue", "Send All asks first", [this] { return BoxOpen(); },
      "import-send-all"));
  steps.push_back(Keys({keys::kReturn}, "and empties the directory", [this, queue] {
    return !BoxOpen() && Main().listViewImport.Rows().empty() &&
           FilesIn(queue, "0002 0 Author3 3 *0_.wav").size() == 1;
  }));
  steps.push_back({.says = "the Queue has both",
                   .act =
                       [this] {
                         typist_.KeysUnseen({keys::kAlt, 'v'});
                         typist_.KeysUnseen({'q'});
                       },
                   .seen =
                       [this] {
                         return Ready() && RowOf("keller") >= 0 && RowOf("Author3") >= 0 &&
                                Cell("keller", forms::document_column::Subject) == "None";
                       }});
  steps.push_back(ClickRowOf(
      "keller", "and what was sent sounds", [this] { return Playing() && Seconds() > 1; },
      "import-sent"));
}

void Day::ClickImportRow(int row) {
  const auto* view = qobject_cast<QTableView*>(typist_.Widget("listViewImport"));
  if (!view) return;
  const QModelIndex cell = view->model()->index(row, forms::import_column::FileName);
  typist_.ClickUnseen(view->viewport()->mapToGlobal(view->visualRect(cell).center()));
}

}  // namespace tavlo::tour
