#include <gtest/gtest.h>

#include <QApplication>
#include <QTabBar>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "album.h"
#include "each_face.h"
#include "support/desktop.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr int kRate = 8000;
/// The first document of the Queue and its preview last longer than a busy machine takes for the
/// pictures of them, and a wind does not come to the end.
constexpr int kSecondsOfTheFirst = 1200;

std::string Tone(int seconds) { return WaveBytes(Chirp(seconds * kRate, kRate)); }

/// The queue of an ordinary morning.
void FillQueue(const Home& home) {
  home.AddToQueue("0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav",
                  Tone(kSecondsOfTheFirst));
  const std::string tone = Tone(90);
  for (const char* name : {"0007 0 Okafor 8801 3 9 2004 15 40 0 5 0 3 discharge 9000 P_.wav",
                           "0012 0 Lindqvist 77 3 8 2004 9 12 31 1 0 0 intake 0 0_.wav",
                           "0007 0 Brown 1234 3 8 2004 11 2 9 2 0 17 followup 4000 0_.wav",
                           "0003 0 Haddad 40215 3 9 2004 8 0 0 9 0 41 deposition 0 0_.wav",
                           "9999 0 Nakamura 999999 12 29 2099 23 59 58 99 0 99 0 0 0_.wav"}) {
    home.AddToQueue(name, tone);
  }
}

/// Files that wait in two of the import directories.
void FillImport(const Home& home) {
  const std::string folder = home.Root() + "/Files/ImportQueue/";
  std::filesystem::create_directories(folder + "7");
  const std::string tone = Tone(90);
  for (const char* name : {"clinic letter 14.wav", "DM650012.wav", "hearing part 1.wav",
                           "7/a name of an import file that is much too long for its list.wav"}) {
    WriteFile(folder + name, tone);
  }
}

/// Names as the world makes them: as long as a file system takes them, from right to left, and of
/// bytes that are no text.
void FillQueueWithTrouble(const Home& home) {
  const std::string tone = Tone(90);
  const std::string tail = " 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav";
  const std::string longest(255 - 7 - tail.size(), 'W');
  home.AddToQueue("0007 0 " + longest + tail, tone);
  home.AddToQueue(
      "0007 0 \xD7\x9C\xD7\x95\xD7\x99 77 3 9 2004 14 6 12 2 0 17 "
      "\xD7\xA1\xD7\x99\xD7\x9B\xD7\x95\xD7\x9D\xD7\x91\xD7\x99\xD7\xA7 0 0_.wav",
      tone);
  home.AddToQueue("0007 0 Br\xF8wn\xFF 77 3 9 2004 14 7 12 2 0 17 caf\xE9 0 0_.wav", tone);
  home.AddToQueue("0007 0 WWWWWWWWWW 999999 12 29 2099 23 59 58 99 0 99 WWWWWWWWWWWWWWW 9 P_.wav",
                  tone);
  home.AddToQueue("a name of nobody's " + std::string(230, 'x') + ".wav", tone);
}

/// The program at a desk with a screen, and its album.
class Sitting {
 public:
  Sitting(const std::string& name, const std::string& screen, const char* scale = "1")
      : desktop_(screen) {
    EXPECT_EQ(desktop_.Fault(), "");
    ::setenv("QT_SCALE_FACTOR", scale, 1);
    name_ = name;
    SoundServer::HideServers();
  }

  /// Runs the script beside the program and then leaves it.
  void Run(const std::function<void()>& script) {
    program.emplace(home);
    const int status = program->Run([&] {
      album.emplace(*program, name_);
      script();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
    album.reset();
    program.reset();
  }

  forms::MainForm& Main() { return program->Main(); }
  bool Ready() {
    return Until([this] { return program->IsReady(); });
  }
  bool Runs(bool runs = true) {
    return program->Until([&] { return Main().DeckRuns == runs; });
  }
  void Press(forms::Command& command) {
    program->Do([&] { command.Press(forms::By::Hand); });
  }
  /// Presses a menu entry and takes the frame that it brings.
  void TakeView(forms::Command& entry, const forms::Pane& frame, const std::string& name) {
    Press(entry);
    ASSERT_TRUE(program->Until([&] { return frame.Visible && Main().mnuView.Enabled; })) << name;
    album->Take(name);
  }
  void TakeListening();
  void TakeFaces();
  void Remark(const std::string& words);
  void TakeRemarks(const std::string& shape);
  void TakeViews();
  void TakeFrozen();
  void TakeMenu();
  void TakeConfiguration();
  void TakeAbout();
  void TakeBox();
  void TakeEmptyQueue();
  void SeeMinimized();

  Home home;
  std::optional<DrivenProgram> program;
  std::optional<Album> album;

 private:
  Desktop desktop_;
  std::string name_;
};

/// From the first click on a row to the list with one document less.
void Sitting::TakeListening() {
  program->Do([this] {
    program->Windows().configuration.txtAutoPreview.Value = std::to_string(kSecondsOfTheFirst);
  });
  program->ClickRow(0);
  ASSERT_TRUE(Runs());
  album->Take("previewing");
  program->Click("cmdImportCompleteSnipetStop");
  ASSERT_TRUE(Runs(false));
  program->Do([this] { program->Windows().configuration.txtAutoPreview.Value = "10"; });
  album->Take("selected");
  program->Click("cmdPlay");
  ASSERT_TRUE(program->Until([&] { return Main().DeckRuns && !Main().frameFiles.Visible; }));
  album->Take("playing");
  program->Click("cmdForward");
  album->Take("winding");
  program->Click("cmdStop");
  ASSERT_TRUE(Runs(false));
  album->Take("stopped");
  TakeRemarks("mini-player");
  TakeFaces();
  program->Click("cmdSkipEnd");
  ASSERT_TRUE(program->Until([&] { return Main().cmdComplete.Enabled.Get(); }));
  album->Take("at-the-end");
  program->Click("cmdComplete");
  ASSERT_TRUE(Ready());
}

/// Every face under the shape of the window that shows the most lettering on it.
void Sitting::TakeFaces() {
  EachFace(*program, [this](const std::string& name) {
    album->TakeLight(name);
    Remark("The position was not saved: the disk is full. Document: dictation.wav");
    album->TakeLight(name + "-remark");
    Remark("");
  });
}

/// Has the quiet line say this, or nothing.
void Sitting::Remark(const std::string& words) {
  program->Do([&] {
    program->Rooms().mainWindow.ForgetNotice();
    program->Rooms().mainWindow.Say(words);
  });
}

/// Words that the line has room for, and more than it has room for.
void Sitting::TakeRemarks(const std::string& shape) {
  const std::string reason = "Not moved to Completed: the disk is full. ";
  Remark(reason + "It stays in the Queue.");
  album->Take(shape + "-remark");
  Remark(reason + "The document is in the rescue folder: " + home.Root() + "/Files/Rescued/" +
         "0007 0 Brown 1234 3 9 2004 14 5 12 2 0 17 cardio 0 P_.wav " + std::string(200, 'W'));
  album->Take(shape + "-long-remark");
  Remark("");
}

/// Something was rescued, so the key to it stands over each of them.
void Sitting::TakeViews() {
  const fs::path rescued = home.Root() + "/Files/Rescued";
  fs::create_directories(rescued);
  std::ofstream(rescued / "memo.wav") << "kept";
  TakeView(Main().mnuViewCompleted, Main().frameCompleted, "completed");
  TakeView(Main().mnuViewImport, Main().frameImport, "import");
  EXPECT_TRUE(program->Ask([this] { return Main().cmdRescued.Visible.Get(); }));
  TakeView(Main().mnuViewFtp, Main().frameFtp, "ftp");
  Press(Main().mnuViewQueue);
  ASSERT_TRUE(Ready());
}

void Sitting::TakeFrozen() {
  program->Do([this] { program->Rooms().mainWindow.DisableWindowControls(); });
  album->Take("frozen");
  program->Do([this] { program->Rooms().mainWindow.EnableWindowControls(); });
}

void Sitting::TakeMenu() {
  program->Keys({keys::kAlt, 'v'});
  ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
  album->Take("view-menu");
  program->Keys({keys::kEscape});
  ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() == nullptr; }));
}

/// The pages of the configuration whose tabs a hand can click.
std::vector<int> OfferedPages() {
  std::vector<int> pages;
  for (const QWidget* const widget : QApplication::allWidgets()) {
    const auto* const tabs = qobject_cast<const QTabBar*>(widget);
    if (!tabs || !tabs->isVisible()) continue;
    for (int page = 0; page < tabs->count(); ++page) {
      if (tabs->isTabEnabled(page)) pages.push_back(page);
    }
  }
  return pages;
}

void Sitting::TakeConfiguration() {
  forms::ConfigurationForm& form = program->Windows().configuration;
  Press(Main().mnuConfiguration);
  ASSERT_TRUE(program->Until([&] { return form.frmConfiguration.Visible.Get(); }));
  for (const int page : program->Ask(OfferedPages)) {
    program->Do([&] { form.tabConfiguration.RowClick(page); });
    const std::string title =
        program->Ask([&] { return form.tabConfiguration.TextAt(page, 0); }).substr(1);
    album->Take("configuration-" + title);
  }
  program->Do([&] { form.tabConfiguration.RowClick(0); });
  Press(form.mnuClose);
  ASSERT_TRUE(Ready());
}

void Sitting::TakeAbout() {
  forms::AboutForm& form = program->Windows().about;
  Press(Main().mnuAbout);
  ASSERT_TRUE(program->Until([&] { return form.frmAbout.Visible.Get(); }));
  album->Take("about");
  Press(form.mnuClose);
  ASSERT_TRUE(Ready());
}

void Sitting::TakeBox() {
  // A window that has just come back does not have the keyboard yet.
  ASSERT_TRUE(program->Until([] { return QApplication::activeWindow() != nullptr; }));
  program->Keys({keys::kAlt, keys::kF4});
  ASSERT_TRUE(Until([this] { return !program->Box().empty(); }));
  album->Take("message-box");
  program->Keys({keys::kEscape});
  ASSERT_TRUE(Until([this] { return program->Box().empty(); }));
  ASSERT_TRUE(Ready());
}

void Sitting::TakeEmptyQueue() {
  fs::remove_all(home.QueuePath());
  fs::create_directory(home.QueuePath());
  program->Keys({keys::kF5});
  ASSERT_TRUE(program->Until([&] { return Main().listViewInQueue.Rows().empty(); }));
  ASSERT_TRUE(Ready());
  album->Take("empty-queue");
}

void Sitting::SeeMinimized() {
  const Screen screen;
  const xcb_window_t deck = screen.Deck().id;
  Press(Main().mnuMinimize);
  EXPECT_TRUE(Until([&] { return screen.HasState(deck, "_NET_WM_STATE_HIDDEN"); }));
  Screen().hands.BringForward(deck);
  EXPECT_TRUE(Until([&] { return !screen.HasState(deck, "_NET_WM_STATE_HIDDEN"); }));
  ASSERT_TRUE(Ready());
}

const store::Assignments kAsShipped = {
    {"AutoPreview", "10"}, {"WindIncrement", "1"}, {"AccelerateWindIncrementFlag", "N"}};

struct Scale {
  const char* percent;
  const char* factor;
  const char* screen;
};

class PicturesAt : public testing::TestWithParam<Scale> {};

TEST_P(PicturesAt, EveryStateIsLegibleAndWhole) {
  const auto [percent, factor, screen] = GetParam();
  Sitting desk(percent, screen, factor);
  SoundServer server;
  ASSERT_TRUE(server.Start());
  desk.home.MakeRoot(kAsShipped);
  FillQueue(desk.home);
  FillImport(desk.home);
  if (std::string_view(factor) == "1") {
    fs::copy(TAVLO_FASCIA, desk.home.Root() + "/Fascia", fs::copy_options::overwrite_existing);
  }
  desk.Run([&] {
    ASSERT_TRUE(desk.program->Until(
        [&] { return desk.program->Windows().splash.frmInitSplash.Visible.Get(); }));
    desk.album->Take("splash");
    ASSERT_TRUE(desk.program->Begin());
    ASSERT_TRUE(desk.Ready());
    desk.album->Take("queue");
    desk.TakeRemarks("queue");
    desk.TakeListening();
    desk.TakeViews();
    desk.TakeFrozen();
    desk.TakeMenu();
    desk.TakeConfiguration();
    desk.TakeAbout();
    desk.TakeBox();
    desk.SeeMinimized();
    desk.TakeEmptyQueue();
  });
}

INSTANTIATE_TEST_SUITE_P(EachScale, PicturesAt,
                         testing::Values(Scale{"100", "1", "1280x1024"},
                                         Scale{"150", "1.5", "1920x1536"},
                                         Scale{"200", "2", "2560x2048"}),
                         [](const auto& test) {
                           return test.param.percent + std::string("Percent");
                         });

/// What a typist meets first, with a queue of troublesome names.
void TakeTroublesomeDay(Sitting& desk) {
  ASSERT_TRUE(desk.program->Begin());
  desk.program->AnswerBox();
  ASSERT_TRUE(desk.Ready());
  desk.album->Take("queue");
  const int rows = desk.program->Ask(
      [&] { return static_cast<int>(desk.Main().listViewInQueue.Rows().size()); });
  for (int row = 0; row < rows; ++row) {
    desk.program->ClickRow(row);
    ASSERT_TRUE(desk.program->Until([&] { return desk.Main().listViewInQueue.ListIndex == row; }));
    desk.album->Take("selected-" + std::to_string(row + 1));
  }
  desk.program->Click("cmdPlay");
  ASSERT_TRUE(desk.program->Until([&] { return !desk.Main().frameFiles.Visible; }));
  desk.album->Take("mini-player");
  desk.program->Click("cmdSkip");
  ASSERT_TRUE(desk.Ready());
  desk.TakeBox();
}

class PicturesWithAHugeFont : public testing::TestWithParam<Scale> {};

TEST_P(PicturesWithAHugeFont, ShowDeckListsAndBoxesLegibleAndWhole) {
  const auto [percent, factor, screen] = GetParam();
  Sitting desk(std::string("huge-font-") + percent + "-" + screen, screen, factor);
  desk.home.MakeRoot(kAsShipped);
  FillQueueWithTrouble(desk.home);
  desk.Run([&] {
    desk.program->Do([] {
      QFont huge = QApplication::font();
      huge.setPointSize(24);
      QApplication::setFont(huge);
    });
    TakeTroublesomeDay(desk);
    desk.TakeViews();
    desk.TakeAbout();
  });
}

INSTANTIATE_TEST_SUITE_P(EachScreen, PicturesWithAHugeFont,
                         testing::Values(Scale{"100", "1", "1280x1024"},
                                         Scale{"100", "1", "1024x768"},
                                         Scale{"200", "2", "2048x1536"}),
                         [](const auto& test) {
                           return "At" + std::string(test.param.percent) + "PercentOf" +
                                  test.param.screen;
                         });

TEST(PicturesOfTrouble, ASmallScreenLeavesEverythingLegibleAndWhole) {
  Sitting desk("1024x768", "1024x768");
  desk.home.MakeRoot(kAsShipped);
  FillQueueWithTrouble(desk.home);
  desk.Run([&] {
    TakeTroublesomeDay(desk);
    desk.TakeConfiguration();
    desk.TakeViews();
    desk.TakeAbout();
  });
}

TEST(PicturesOfTrouble, TenThousandDocumentsWithoutASoundDeviceAreLegibleAndWhole) {
  constexpr int kDocuments = 10'000;
  Sitting desk("ten-thousand", "1280x1024");
  desk.home.MakeRoot(kAsShipped);
  const std::string wave = WaveBytes(Chirp(400, kRate));
  for (int i = 0; i < kDocuments; ++i) {
    desk.home.AddToQueue(DocumentName("Author" + std::to_string(i), i % 60), wave);
  }
  desk.Run([&] {
    ASSERT_TRUE(desk.program->Begin());
    ASSERT_TRUE(Until([&] { return !desk.program->Box().empty(); }));
    desk.album->Take("no-sound-device");
    desk.program->AnswerBox();
    ASSERT_TRUE(desk.program->Until([&] {
      return desk.Main().frmMain.MousePointer == forms::Pointer::Hourglass &&
             !desk.Main().listViewInQueue.Rows().empty();
    }));
    desk.album->Take("scanning");
    ASSERT_TRUE(desk.Ready());
    desk.album->Take("queue");
  });
}

}  // namespace
}  // namespace tavlo::test
