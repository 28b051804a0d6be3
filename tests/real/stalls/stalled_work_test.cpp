#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <filesystem>
#include <stdexcept>
#include <string>

#include "platform/sqlite/sqlite_settings.h"
#include "stalls/work_on_a_share.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using playback::SampleCount;

constexpr const char* kLate =
    "The sound of this document is late. It plays on when its folder answers.";
constexpr const char* kNotFound =
    "Tavlo Deck - File Not Found: This file is no longer there, or its folder can not be "
    "reached.\nPress Refresh to see what waits.";
constexpr const char* kQueueFault = "Tavlo Deck - Network Fault: ";
constexpr const char* kCompletedFault = "Tavlo Deck - Path Fault: ";

std::string NotKnown(const std::string& whether, const std::string& name) {
  return "It is not known whether " + whether +
         ": the folder gives no answer. The next list shows it. Document: " + name;
}

struct StalledQueue : WorkOnAShare {
  StalledQueue() : WorkOnAShare("/Lyrane/TavloDeck/Files/InQueue") {}
};

TEST_F(StalledQueue, DocumentThatRunsDryIsAGapThatIsToldAndIsThenHeardToItsEnd) {
  constexpr int kSeconds = 10;
  const std::string name = Put("Brown", kSeconds);
  Run([&] {
    Play(name);
    Mount().Stop();
    EXPECT_TRUE(Until([&] { return Line() == kLate; }));
    const double ear = Position();
    EXPECT_TRUE(Playing());
    EXPECT_LT(ear, kSeconds * kRate);
    program->Settle();
    EXPECT_EQ(Position(), ear);
    Mount().GoOn();
    EXPECT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_EQ(Line(), "");
    EXPECT_EQ(Position(), kSeconds * kRate);
    EXPECT_NEAR(Played(), kSeconds * kRate, kRate / 100) << "nothing was left out";
    EXPECT_TRUE(Enabled(&forms::MainForm::cmdComplete));
    program->Click("cmdSkip");
  });
  EXPECT_EQ(Standing(), (Places{{"InQueue/" + name, "Brown"}}));
}

TEST_F(StalledQueue, HandsOnTheDocumentWaitForNothingAndAServerThatIsKilledIsToldAsTheEnd) {
  constexpr int kSeconds = 120;
  const std::string name = Put("Brown", kSeconds);
  Run([&] {
    Play(name);
    Mount().Stop();
    program->Drag("slPosition", 50);
    EXPECT_TRUE(Until([&] { return Line() == kLate; }));
    EXPECT_NEAR(Position(), 0.5 * kSeconds * kRate, 0.01 * kSeconds * kRate);
    EXPECT_TRUE(Playing());
    program->Click("cmdForward");
    EXPECT_FALSE(Playing());
    EXPECT_TRUE(Until([&] { return Position() > (0.5 * kSeconds + 5) * kRate; }));
    program->Click("cmdStop");
    const double wound = Position();
    program->Click("cmdPlay");
    EXPECT_TRUE(Playing());
    EXPECT_EQ(Played(), 0);
    program->Click("cmdStop");
    EXPECT_FALSE(Playing());
    EXPECT_EQ(Position(), wound);
    program->Click("cmdPlay");
    GoOn();
    EXPECT_TRUE(Until([&] { return Position() > wound; }));
    program->Click("cmdSkipBeg");
    Mount().Kill();
    program->Click("cmdPlay");
    EXPECT_TRUE(
        Until([&] { return Line().starts_with("The rest of this document can not be read."); }));
    EXPECT_EQ(Position(), 0);
    program->Click("cmdSkipEnd");
    program->Click("cmdComplete");
    EXPECT_TRUE(program->AnswerBox().starts_with(kQueueFault));
    EXPECT_EQ(Line(),
              "Not moved to Completed: the disk reported an error. It stays in the Queue: " + name);
  });
  EXPECT_EQ(Standing(), (Places{{"InQueue/" + name, "Brown"}}));
}

struct ReturningQueue : StalledQueue {
  std::string first;
  std::string second;
  std::string third;  ///< Comes while the share is away.

  void SetUp() override {
    StalledQueue::SetUp();
    if (IsSkipped()) return;
    first = Put("Brown", 60);
    second = Put("Okafor", kSecondLasts);
  }
  /// The share is mounted again, and works as ever.
  void ComeBackAndWork() {
    // Its server ends with the thread that has started it.
    program->Do([&] { Mount().ComeBack(); });
    third = Put("Weiss", 1);
    Refresh();
    EXPECT_EQ(Rows(), 3U);
    Play(second);
    EXPECT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_EQ(Line(), "");
    EXPECT_NEAR(Played(), kSecondLasts * kRate, kRate / 100) << "nothing was left out";
    program->Click("cmdComplete");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    EXPECT_EQ(Rows(), 2U);
  }
  void ExpectSecondCompleted() const {
    EXPECT_EQ(Standing(), (Places{{"Completed/" + second, "Okafor"},
                                  {"InQueue/" + first, "Brown"},
                                  {"InQueue/" + third, "Weiss"}}));
  }

  static constexpr int kSecondLasts = 3;
};

TEST_F(ReturningQueue, ShareWhoseServerWasKilledUnderWhatPlaysWorksOnceItIsMountedAgain) {
  Run([&] {
    Play(first);
    Mount().Kill();
    EXPECT_TRUE(
        Until([&] { return Line().starts_with("The rest of this document can not be read."); }));
    program->Click("cmdSkip");
    EXPECT_TRUE(program->AnswerBox().starts_with(kQueueFault));
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    ComeBackAndWork();
  });
  ExpectSecondCompleted();
}

TEST_F(ReturningQueue, ShareThatOwedAnAnswerWhenItsServerWasKilledWorksOnceItIsMountedAgain) {
  Run([&] {
    Mount().Stop();
    EXPECT_TRUE(BoxInVain([&] { program->Click("cmdUpdateFileList"); }).starts_with(kQueueFault));
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    Mount().Kill();
    ComeBackAndWork();
  });
  ExpectSecondCompleted();
}

struct StalledPreview : WorkOnAShare {
  StalledPreview() : WorkOnAShare("/Lyrane/TavloDeck/Files/InQueue", {{"AutoPreview", "5"}}) {}
};

TEST_F(StalledPreview, RefreshAndSelectionAreToldInVainAndTheNextOnesAreAsEver) {
  const std::string first = Put("Brown", 2);
  const std::string second = Put("Okafor", 2);
  Run([&] {
    Mount().Stop();
    EXPECT_TRUE(BoxInVain([&] { program->Click("cmdUpdateFileList"); }).starts_with(kQueueFault));
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    GoOn();
    Refresh();
    EXPECT_EQ(Rows(), 2U);
    Mount().Stop();
    EXPECT_EQ(BoxInVain([&] { program->ClickRow(program->RowOf(second)); }), kNotFound);
    EXPECT_FALSE(Enabled(&forms::MainForm::cmdPlay));
    GoOn();
    program->ClickRow(program->RowOf(first));
    EXPECT_TRUE(Until([&] { return Playing(); }));
    Mount().Kill();
    program->Click("cmdUpdateFileList");
    EXPECT_TRUE(program->AnswerBox().starts_with(kQueueFault));
  });
  EXPECT_EQ(Standing(), (Places{{"InQueue/" + first, "Brown"}, {"InQueue/" + second, "Okafor"}}));
}

TEST_F(StalledQueue, SaveThatGaveNoAnswerHappensOnceAndCompleteLosesNothing) {
  const std::string name = Put("Brown", 2);
  const std::string saved = DocumentName("Brown", 0, 2 * kRate);
  Run([&] {
    PutInWork(name);
    Mount().Stop();
    EXPECT_TRUE(BoxInVain([&] { program->Click("cmdSave"); }).starts_with(kQueueFault));
    EXPECT_EQ(Line(), NotKnown("the position was saved", name));
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    GoOn();
    Refresh();
    EXPECT_EQ(program->RowOf(name), -1);
    EXPECT_EQ(Standing(), (Places{{"InQueue/" + saved, "Brown"}}));
    PutInWork(saved);
    Mount().Stop();
    EXPECT_TRUE(BoxInVain([&] { program->Click("cmdComplete"); }).starts_with(kQueueFault));
    EXPECT_EQ(Line(), NotKnown("the document was moved to Completed", saved));
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    GoOn();
    Refresh();
    EXPECT_EQ(program->RowOf(saved), 0);
  });
  EXPECT_EQ(Standing(), (Places{{"InQueue/" + saved, "Brown"}}));
}

struct StalledCompleted : WorkOnAShare {
  StalledCompleted() : WorkOnAShare("/Lyrane/TavloDeck/Files/Completed") {}

  void ChooseCompleted() {
    program->Keys({keys::kAlt, 'v'});
    ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
    program->Keys({'c'});
  }
  std::size_t CompletedRows() {
    return program->Ask([&] { return Main().listViewCompleted.Rows().size(); });
  }
  std::string Choose(int row) {
    program->Do([&] { Main().listViewCompleted.RowClick(row); });
    return program->Ask([&] { return program->Rooms().opening.SelectedCompletedFile; });
  }
  void AgreeToDelete() {
    program->Click("cmdDeleteOneCompleted");
    ASSERT_TRUE(Until([&] { return program->Box().starts_with("Tavlo Deck - Delete: "); }));
    program->Do([] { DrivenProgram::OpenBox()->button(QMessageBox::Yes)->click(); });
  }
};

TEST_F(StalledCompleted, TakesADocumentOnceItAnswersAndLosesNoneButTheOneThatIsDeleted) {
  const std::string name = Put("Brown", 2);
  const std::string other = Put("Okafor", 2, "Completed");
  Run([&] {
    PutInWork(name);
    Mount().Stop();
    WaitInVain([&] { program->Click("cmdComplete"); }, [&] { return program->IsReady(); });
    EXPECT_EQ(Line(), NotKnown("the document was moved to Completed", name));
    EXPECT_EQ(program->RowOf(name), 0);
    GoOn();
    Refresh();
    EXPECT_EQ(Standing(), (Places{{"Completed/" + other, "Okafor"}, {"InQueue/" + name, "Brown"}}));
    PutInWork(name);
    program->Click("cmdComplete");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    ChooseCompleted();
    ASSERT_TRUE(Until([&] { return CompletedRows() == 2; }));
    EXPECT_EQ(Standing(),
              (Places{{"Completed/" + name, "Brown"}, {"Completed/" + other, "Okafor"}}));
    const std::string first = Choose(0);
    Mount().Stop();
    EXPECT_TRUE(BoxInVain([&] { AgreeToDelete(); }).starts_with(kCompletedFault));
    EXPECT_EQ(Line(), NotKnown("the document was deleted", first));
    GoOn();
    ChooseCompleted();
    EXPECT_TRUE(Until([&] { return CompletedRows() == 1; }));
    const std::string second = Choose(0);
    EXPECT_NE(second, first);
    Mount().Kill();
    AgreeToDelete();
    EXPECT_TRUE(program->AnswerBox().starts_with(kCompletedFault));
    EXPECT_EQ(Line(), "Not deleted: the disk reported an error. Document: " + second);
    EXPECT_EQ(Standing(), (Places{{"Completed/" + second, second == name ? "Brown" : "Okafor"}}));
  });
}

struct StalledRoot : WorkOnAShare {
  StalledRoot() : WorkOnAShare("/Lyrane/TavloDeck") {}
};

TEST_F(StalledRoot, CompleteThatGaveNoAnswerHappensOnce) {
  const std::string name = Put("Brown", 2);
  Run([&] {
    // The place of the player is stored here, and not again as long as it stays there.
    PutInWork(name);
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    PutInWork(name);
    Mount().Stop();
    EXPECT_TRUE(BoxInVain([&] { program->Click("cmdComplete"); }).starts_with(kQueueFault));
    EXPECT_EQ(Line(), NotKnown("the document was moved to Completed", name));
    // The drop folders below the root are told, each by its pass, and then the Queue.
    for (const char* prefix : {"The .dS2", "The .eU2", "The .eW2", ""}) {
      EXPECT_TRUE(program->AnswerBox().starts_with(std::string(kQueueFault) + prefix));
    }
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    GoOn();
    Refresh();
    EXPECT_EQ(program->RowOf(name), -1);
  });
  EXPECT_EQ(Standing(), (Places{{"Completed/" + name, "Brown"}}));
}

/// A root on a share whose Queue leads to the local disk.
struct StalledSettings : StalledRoot {
  void SetUp() override {
    StalledRoot::SetUp();
    if (IsSkipped()) return;
    std::filesystem::remove(home.QueuePath());
    std::filesystem::create_directory_symlink(queue.Path(), home.QueuePath());
  }

  /// What had been heard of the document at some feeds of a wait, in which Stop is pressed.
  struct Seen {
    SampleCount first = 0;
    SampleCount stopped = 0;
    SampleCount silent = 0;
    SampleCount last = 0;
    bool playing = false;
  };
  void Tick(Seen& seen) {
    const SampleCount heard = Engine().Player().PlayedSamples();
    if (life->Feeds == 1) seen.first = heard;
    if (life->Feeds == 20) {
      seen.stopped = heard;
      Key("cmdStop").click();
    }
    // What was on its way to the ear when the key was pressed has come by then.
    if (life->Feeds == 30) seen.silent = heard;
    if (life->Feeds != kFeedsInAWait) return;
    seen.last = heard;
    seen.playing = Engine().IsPlaying;
  }
  static QAbstractButton& Key(const char* name) {
    for (QWidget* const widget : QApplication::allWidgets()) {
      auto* const key = qobject_cast<QAbstractButton*>(widget);
      if (key && key->objectName() == name) return *key;
    }
    throw std::runtime_error(name);
  }

  std::string StoredVolume() const {
    platform::SqliteSettingsDatabases databases({.root = home.Root(), .revision = "0.1.0"});
    const store::OpenedDatabase opened = databases.Open(home.SettingsPath());
    EXPECT_TRUE(opened.database) << opened.failure;
    if (!opened.database) return {};
    return opened.database->Read(store::Table::GeneralSettings, 0)["Volume"];
  }

  const TemporaryFolder queue;
};

TEST_F(StalledSettings, WhatIsReadFromTheLocalDiskPlaysOnAndStopIsSilenceBeforeItsRule) {
  const std::string name = Put("Brown", 60);
  Seen seen;
  std::string volume;
  Run([&] {
    Play(name);
    Mount().Stop();
    program->Do([&] { life->OnFeed = [&] { Tick(seen); }; });
    EXPECT_TRUE(
        BoxInVain([&] { program->Drag("sldVol", 30); }).starts_with("Tavlo Deck - Settings: "));
    EXPECT_GT(seen.stopped, seen.first + kRate / 10);
    EXPECT_EQ(seen.last, seen.silent);
    EXPECT_TRUE(seen.playing) << "its rule stops it later";
    EXPECT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_EQ(Played(), seen.silent);
    GoOn();
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); })) << program->Box();
    volume = program->Ask([&] { return Main().txtVolume.Value.Get(); });
  });
  EXPECT_EQ(Standing(), (Places{{"InQueue/" + name, "Brown"}}));
  EXPECT_EQ(StoredVolume(), volume);
}

}  // namespace
}  // namespace tavlo::test
