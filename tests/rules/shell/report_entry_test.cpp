#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using Lines = std::vector<std::vector<std::string>>;

/// The Report entry of the whole program.
struct ReportEntry : testing::Test, DeckBench {
  const std::string queueReport = Path("/Reports/Tavlo_Deck_Queue_Report.txt");
  const std::string completedReport = Path("/Reports/Tavlo_Deck_Completed_Report.txt");

  ReportEntry() {
    Drop(Document().By("Brown").Name());
    Keep(Document().By("Okafor").Name());
    StartWith({{"AutoPreview", "0"}});
  }
  bool Says(const std::string& path, const std::string& text) {
    return disk.Has(path) && disk.Contents(path).find(text) != std::string::npos;
  }
};

TEST_F(ReportEntry, WritesTheListOfTheViewInFront) {
  EXPECT_TRUE(form.mnuReport.Visible);
  form.mnuReport.Press(By::Hand);
  EXPECT_TRUE(Says(queueReport, "Version " + deck.Built()->settings.ProgramVersionText() + "\n"));
  EXPECT_TRUE(Says(queueReport, "Queue:  1   00:00:10\n"));
  EXPECT_TRUE(Says(queueReport, "Brown"));
  EXPECT_FALSE(disk.Has(completedReport));

  form.mnuViewCompleted.Press(By::Hand);
  form.mnuReport.Press(By::Hand);
  EXPECT_TRUE(Says(completedReport, "Documents Completed:  1   00:00:10\n"));
  EXPECT_TRUE(Says(completedReport, "Okafor"));
  // The word processor of a new installation is what the desktop opens texts with.
  EXPECT_EQ(programs.Started, (Lines{{"xdg-open", queueReport}, {"xdg-open", completedReport}}));
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(ReportEntry, DateFollowsTheLogoOfTheReseller) {
  DeckBench bench;
  bench.Drop(Document().Name());
  bench.StartWith({{"OEMLogo", "SorelTek"}});
  bench.loop.SetWallClock({2004, 3, 9, 14, 5, 12});
  bench.form.mnuReport.Press(By::Hand);
  EXPECT_NE(bench.disk.Contents(queueReport).find("Created on 9/3/2004 at 14:05:12\n"),
            std::string::npos);
}

TEST_F(ReportEntry, WritesNothingInTheOtherViews) {
  form.mnuViewImport.Press(By::Hand);
  form.mnuReport.Press(By::Hand);
  form.mnuViewFtp.Press(By::Hand);
  EXPECT_FALSE(form.mnuReport.Enabled);
  // The press must reach the rule behind the entry.
  form.mnuReport.Enabled = true;
  form.mnuReport.Press(By::Hand);
  EXPECT_FALSE(disk.Has(queueReport));
  EXPECT_FALSE(disk.Has(completedReport));
  EXPECT_TRUE(programs.Tried.empty());
}

}  // namespace
}  // namespace tavlo::test
