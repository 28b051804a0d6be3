// The watch for new work over days: one deck, and files that come at whatever moment.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "support/alert_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using forms::By;
using Texts = std::vector<std::string>;

constexpr base::Duration kHour = 3600s;
constexpr base::Duration kNight = 16 * kHour;
constexpr base::Duration kLongWhile = kHour / 3;

/// A typist's week, scene by scene. Each scene says what is told of the files that come in it.
struct WorkingWeek : testing::Test, AlertBench {
  Texts expected;
  int files = 0;
  int inImport = 0;

  std::string NewName(bool priority = false) {
    return "file " + std::to_string(++files) + (priority ? " P_" : "");
  }
  /// A recorder's transfer, which can be played once it is in the Queue.
  std::string Arrive(bool priority = false) {
    const std::string name = NewName(priority);
    file.Sounds[InQueue() + name + ".wav"] = {.samples = 80'000};
    Transfer(name + ".dS2");
    return name + ".wav";
  }
  void ArriveForImport(const std::string& directory = "") {
    disk.WithFile(ImportFolder() + directory + NewName() + ".wav", "sound");
    ++inImport;
  }
  void OpenADocument() {
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
    form.cmdStop.Press(By::Hand);
    ASSERT_TRUE(InWork().IsInWork());
  }
  void CompleteTheFirst() {
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
    form.cmdSkipEnd.Press(By::Hand);
    ASSERT_TRUE(form.cmdComplete.Enabled);
    form.cmdComplete.Press(By::Hand);
  }
  int Rows() const { return static_cast<int>(form.listViewInQueue.Rows().size()); }
  /// The scene is over: so much was told in it, and no more comes of it.
  void ToldOf(const Texts& prompts) {
    expected.insert(expected.end(), prompts.begin(), prompts.end());
    EXPECT_EQ(Spoken(), expected);
    loop.Advance(kLongWhile);
    EXPECT_EQ(Spoken(), expected) << "never twice";
    EXPECT_EQ(Messages().size(), expected.size());
  }

  void AtTheList() {
    Arrive();
    WaitForACheck();
    ToldOf({"NewDocInQ"});
  }
  void WithADocumentOpen() {
    OpenADocument();
    const std::string first = Arrive();
    WaitForACheck();
    const std::string second = Arrive();
    WaitForACheck();
    EXPECT_FALSE(disk.Has(InQueue() + first)) << "the list is left alone";
    form.cmdSkip.Press(By::Hand);
    EXPECT_TRUE(disk.Has(InQueue() + first));
    EXPECT_TRUE(disk.Has(InQueue() + second));
    ToldOf({"NewDocInQ", "NewDocInQ"});
  }
  void WithTheSettingsOpen() {
    form.mnuConfiguration.Press(By::Hand);
    Arrive();
    ArriveForImport();
    loop.Advance(kLongWhile);
    EXPECT_EQ(Spoken(), expected);
    config.mnuClose.Press(By::Hand);
    WaitForACheck();
    ToldOf({"NewDocInQ", "NewDocInImport"});
  }
  void InTheFtpView() {
    form.mnuViewFtp.Press(By::Hand);
    Arrive();
    loop.Advance(kLongWhile);
    EXPECT_EQ(Spoken(), expected);
    form.mnuViewCompleted.Press(By::Hand);
    WaitForACheck();
    form.mnuViewQueue.Press(By::Hand);
    ToldOf({"NewDocInQ"});
  }
  /// Whoever goes back to the Queue sees for himself what has come.
  void FromTheFtpViewBackToTheQueue() {
    form.mnuViewFtp.Press(By::Hand);
    const std::string name = Arrive();
    loop.Advance(kLongWhile);
    form.mnuViewQueue.Press(By::Hand);
    EXPECT_TRUE(disk.Has(InQueue() + name));
    ToldOf({});
  }
  void InTheImportView() {
    ArriveForImport();
    form.mnuViewImport.Press(By::Hand);
    WaitForACheck();
    EXPECT_EQ(Spoken(), expected) << "it was there when the typist looked";
    ArriveForImport();
    ArriveForImport("7/");
    WaitForACheck();
    form.mnuViewQueue.Press(By::Hand);
    ToldOf({"NewDocInImport"});
  }
  void UnderAQuestion() {
    CompleteTheFirst();
    form.mnuViewCompleted.Press(By::Hand);
    form.listViewCompleted.RowClick(0);
    Arrive();
    loop.Expect({.reply = base::Reply::No, .delay = kLongWhile});
    form.cmdDeleteOneCompleted.Press(By::Hand);
    EXPECT_EQ(Spoken(), expected);
    WaitForACheck();
    form.mnuViewQueue.Press(By::Hand);
    ToldOf({"NewDocInQ"});
  }
};

TEST_F(WorkingWeek, EveryFileIsToldOfOnceOrSeenAndNoneIsLost) {
  StartWatching("A", {{"AutoQueueDocumentFlag", "N"}});
  using Scene = void (WorkingWeek::*)();
  static constexpr Scene kDay[] = {&WorkingWeek::AtTheList,
                                   &WorkingWeek::WithADocumentOpen,
                                   &WorkingWeek::WithTheSettingsOpen,
                                   &WorkingWeek::InTheFtpView,
                                   &WorkingWeek::FromTheFtpViewBackToTheQueue,
                                   &WorkingWeek::InTheImportView,
                                   &WorkingWeek::UnderAQuestion,
                                   &WorkingWeek::AtTheList};
  for (int day = 1; day <= 5; ++day) {
    int hour = 0;
    for (const Scene scene : kDay) {
      SCOPED_TRACE("day " + std::to_string(day) + ", hour " + std::to_string(++hour));
      const base::MonotonicTime end = loop.Now() + kHour;
      (this->*scene)();
      ASSERT_LT(loop.Now(), end);
      loop.Advance(end - loop.Now());
    }
    loop.Advance(kNight);
    EXPECT_EQ(Spoken(), expected) << "nothing comes in a night";
  }
  EXPECT_EQ(std::ranges::count(Spoken(), "NewDocInQ"), 5 * 7);
  EXPECT_EQ(std::ranges::count(Spoken(), "NewDocInImport"), 5 * 2);
  EXPECT_EQ(notifier.notified.size(), expected.size());
  EXPECT_FALSE(notifier.shown);
  const int completed = static_cast<int>(disk.NamesIn(Completed()).size());
  EXPECT_EQ(completed, 5);
  EXPECT_EQ(Rows() + completed, 1 + files - inImport);
  EXPECT_TRUE(disk.NamesIn(DropFolder()).empty());
}

TEST_F(WorkingWeek, PriorityAlonePassesOverWhatIsNotUrgent) {
  StartWatching("P");
  for (int hour = 0; hour < 8; ++hour) {
    Arrive();
    ArriveForImport();
    WaitForACheck();
    ToldOf({});
    Arrive(/*priority=*/true);
    WaitForACheck();
    ToldOf({"NewPriorityDocInQ"});
  }
}

/// What a deck holds and does in an hour, apart from what it was given.
struct Upkeep {
  std::size_t rows;
  std::size_t dotFiles;
  int held;
  std::size_t operations;
  int breaths;
  bool operator==(const Upkeep&) const = default;
};

struct DayAndNight : WorkingWeek {
  /// An hour with a file each ten minutes, which is told of and typed.
  void WorkForAnHour() {
    for (int tenMinutes = 0; tenMinutes < 6; ++tenMinutes) {
      loop.Advance(500s);
      Arrive();
      expected.emplace_back("NewDocInQ");
      loop.Advance(100s);
      ASSERT_EQ(Spoken(), expected);
      CompleteTheFirst();
    }
  }
  Upkeep AnHour() {
    disk.Operations.clear();
    const int breaths = loop.Breaths;
    loop.Advance(kHour);
    return {.rows = form.listViewInQueue.Rows().size(),
            .dotFiles = DotFiles(),
            .held = disk.HeldByWalks(),
            .operations = disk.Operations.size(),
            .breaths = loop.Breaths - breaths};
  }
  /// Claims and half copies are named so.
  std::size_t DotFiles() const {
    std::size_t count = 0;
    disk.ForEachFile([&](const std::string& path, const std::string&) {
      if (path[path.rfind('/') + 1] == '.') ++count;
    });
    return count;
  }
};

TEST_F(DayAndNight, AFileEachTenMinutesLeavesNothingBehind) {
  StartWatching("A", {{"AutoQueueDocumentFlag", "N"}});
  const Upkeep first = AnHour();
  EXPECT_EQ(first.held, 0);
  for (int hour = 0; hour < 24; ++hour) WorkForAnHour();
  EXPECT_EQ(AnHour(), first);
  EXPECT_EQ(Messages().size(), 24u * 6);
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 24u * 6);
  EXPECT_EQ(Rows(), 1);
  EXPECT_FALSE(notifier.shown);
  EXPECT_FALSE(form.frmMain.TopMost);
  EXPECT_FALSE(Engine().IsPlaying);
  EXPECT_FALSE(InWork().IsInWork());
}

}  // namespace
}  // namespace tavlo::test
