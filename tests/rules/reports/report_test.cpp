#include "reports/report.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rules/reports/golden.h"
#include "support/reports_bench.h"

namespace tavlo::test {
namespace {

using base::Icon;
using forms::By;
using forms::Pointer;
using Names = std::vector<std::string>;
using Lines = std::vector<Names>;

struct ReportTest : testing::Test, ReportsBench {
  bool FocusIsAway() { return form.frmMain.Focused() == &form.txtFocus; }
};

TEST_F(ReportTest, QueueIsWrittenAsItIsShown) {
  loop.SetWallClock({2024, 12, 31, 0, 0, 0});
  Drop(Document().Priority().Saved(40'000));
  ShowQueue();
  Print();
  EXPECT_EQ(disk.Contents(queuePath), Golden("queue_one_row"));
  EXPECT_EQ(disk.NamesIn(folders.ReportsPath()), Names{"Tavlo_Deck_Queue_Report.txt"});
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(ReportTest, CompletedListIsWrittenAsItIsShown) {
  loop.SetWallClock({2024, 12, 31, 0, 0, 0});
  Keep(Document().Priority().Name());
  ShowCompleted();
  Print();
  EXPECT_EQ(disk.Contents(completedPath), Golden("completed_one_row"));
  EXPECT_EQ(disk.NamesIn(folders.ReportsPath()), Names{"Tavlo_Deck_Completed_Report.txt"});
}

TEST_F(ReportTest, RowsStandInTheOrderOfTheList) {
  Drop(Document().By("Brown").At("3 9 2004 14 5 12"));
  Drop(Document().By("Okafor").At("3 8 2004 9 0 0"));
  ShowQueue();
  form.listViewInQueue.HeaderClick(forms::document_column::Author);
  form.listViewInQueue.HeaderClick(forms::document_column::Author);
  Print();
  const std::string text = disk.Contents(queuePath);
  EXPECT_LT(text.find(Cell(0, forms::document_column::Author)),
            text.find(Cell(1, forms::document_column::Author)));
}

TEST_F(ReportTest, NothingIsReadButTheList) {
  Drop(Document().By("Brown"));
  ShowQueue();
  disk.Remove(folders.InQueuePath + Document().By("Brown").Name());
  Drop(Document().By("Okafor"));
  Print();
  EXPECT_NE(disk.Contents(queuePath).find("Brown"), std::string::npos);
  EXPECT_EQ(disk.Contents(queuePath).find("Okafor"), std::string::npos);
}

TEST_F(ReportTest, DateFollowsTheDateFormatOfTheLists) {
  loop.SetWallClock({2004, 3, 9, 14, 5, 12});
  names.DateFormat = "DDMMYY";
  Drop(Document());
  ShowQueue();
  Print();
  EXPECT_NE(disk.Contents(queuePath).find("Created on 9/3/2004 at 14:05:12\n"), std::string::npos);
}

TEST_F(ReportTest, TotalOfTheRowsIsToldThoughTheCaptionSaysNoughtAfterReturnToQueue) {
  Keep(Document().By("Brown").Name());
  Keep(Document().By("Okafor").Name());
  form.frameInQueue.Visible = false;
  form.frameCompleted.Visible = true;
  config.txtAutoPreview.Value = "0";
  ShowCompleted();
  completed.SetCompletedButtons();
  form.listViewCompleted.RowClick(0);
  form.cmdMoveToQueue.Press(By::Hand);
  ASSERT_EQ(form.frameCompleted.Caption.Get(), "Completed:     1     00:00:00");
  Print();
  EXPECT_NE(disk.Contents(completedPath).find("Documents Completed:  1   00:00:10\n"),
            std::string::npos);
}

TEST_F(ReportTest, EmptyListWritesNoFileAndSaysSo) {
  for (const char* view : {"Queue", "Complete"}) {
    window.CurrentView = view;
    loop.Shown.clear();
    form.frmMain.FocusOn(form.cmdPlay);
    Print();
    ASSERT_EQ(loop.Shown.size(), 1u);
    EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Report");
    EXPECT_EQ(loop.Shown[0].text, "There are no documents to report");
    EXPECT_EQ(loop.Shown[0].icon, Icon::Information);
    EXPECT_EQ(loop.Shown[0].buttons, base::Buttons::Ok);
    EXPECT_TRUE(disk.NamesIn(folders.ReportsPath()).empty());
    EXPECT_TRUE(programs.Tried.empty());
    EXPECT_TRUE(FocusIsAway());
  }
}

TEST_F(ReportTest, EmptyListLeavesTheReportOfBefore) {
  disk.WithFile(queuePath, "the report of yesterday");
  Print();
  EXPECT_EQ(disk.Contents(queuePath), "the report of yesterday");
}

TEST_F(ReportTest, OtherViewsReportNothing) {
  Drop(Document());
  ShowQueue();
  disk.Operations.clear();
  form.frmMain.FocusOn(form.cmdPlay);
  for (const char* view : {"Import", "Ftp", ""}) {
    window.CurrentView = view;
    Print();
  }
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(disk.Operations.empty());
  EXPECT_TRUE(programs.Tried.empty());
  EXPECT_FALSE(FocusIsAway());
}

TEST_F(ReportTest, ReportOfBeforeIsRewrittenWhole) {
  disk.WithFile(queuePath, std::string(100'000, 'x'));
  Drop(Document());
  ShowQueue();
  Print();
  EXPECT_TRUE(disk.Contents(queuePath).starts_with("Tavlo Deck"));
  EXPECT_TRUE(disk.Contents(queuePath).ends_with("End of Queue Report\n"));
}

TEST_F(ReportTest, HourglassShowsWhileItIsWritten) {
  Drop(Document());
  ShowQueue();
  int asked = 0;
  disk.BetweenOperations = [&] {
    ++asked;
    EXPECT_EQ(form.frmMain.MousePointer, Pointer::Hourglass);
  };
  Print();
  EXPECT_GT(asked, 0);
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Arrow);
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(ReportTest, HourglassOfAnotherCommandStays) {
  Drop(Document());
  ShowQueue();
  form.frmMain.MousePointer = Pointer::Hourglass;
  Print();
  EXPECT_EQ(form.frmMain.MousePointer, Pointer::Hourglass);
}

TEST_F(ReportTest, LoopBreathesOnTheWayAndNothingInterleaves) {
  const std::vector<forms::Row> rows(2000, forms::Row{});
  for (const forms::Row& row : rows) form.listViewInQueue.Add(row);
  bool interleaved = false;
  loop.Post([&] { interleaved = true; });
  loop.Breaths = 0;
  Print();
  EXPECT_GE(loop.Breaths, 5);
  EXPECT_FALSE(interleaved);
}

TEST_F(ReportTest, WordProcessorGetsThePathAsItsLastArgument) {
  programs.Installed = {"writer"};
  StartWith("writer");
  EXPECT_EQ(programs.Started, (Lines{{"writer", queuePath}}));
  EXPECT_TRUE(programs.Opened.empty());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(ReportTest, WholeCommandIsTriedAsAProgramFirst) {
  programs.Installed = {"/opt/My Writer/writer", "/opt/My"};
  StartWith("/opt/My Writer/writer");
  EXPECT_EQ(programs.Tried, (Lines{{"/opt/My Writer/writer", queuePath}}));
}

TEST_F(ReportTest, CommandIsSplitWhenItIsNoProgram) {
  programs.Installed = {"/opt/My Writer/writer"};
  StartWith("\"/opt/My Writer/writer\" -n");
  EXPECT_EQ(programs.Started, (Lines{{"/opt/My Writer/writer", "-n", queuePath}}));
  EXPECT_TRUE(programs.Opened.empty());
}

TEST_F(ReportTest, UnsetWordProcessorLeavesTheReportToTheDesktop) {
  for (const char* unset : {"", "  "}) {
    programs.Opened.clear();
    StartWith(unset);
    EXPECT_TRUE(programs.Tried.empty());
    EXPECT_EQ(programs.Opened, Names{queuePath});
  }
}

TEST_F(ReportTest, ProgramThatIsNotThereLeavesTheReportToTheDesktop) {
  // As it stands in a database of an older installation.
  StartWith("write.exe");
  EXPECT_EQ(programs.Tried, (Lines{{"write.exe", queuePath}}));
  EXPECT_EQ(programs.Opened, Names{queuePath});
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(ReportTest, WithoutAnyProgramTheMessageNamesTheReportWhichStays) {
  programs.OpensTexts = false;
  StartWith("write.exe");
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Report");
  EXPECT_EQ(loop.Shown[0].text,
            "The report is in the file\n/root/Reports/Tavlo_Deck_Queue_Report.txt\n\n"
            "No program could be started to show it.");
  EXPECT_EQ(loop.Shown[0].icon, Icon::Information);
  EXPECT_TRUE(disk.Has(queuePath));
  EXPECT_TRUE(FocusIsAway());
}

}  // namespace
}  // namespace tavlo::test
