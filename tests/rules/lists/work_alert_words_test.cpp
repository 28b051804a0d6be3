// What an alert says, letter for letter, and that it says it once.
#include <gtest/gtest.h>

#include <ostream>
#include <string>
#include <vector>

#include "support/alert_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;
using Texts = std::vector<std::string>;

/// One of the alerts: when it is raised, and its words.
struct Row {
  const char* mode;
  const char* autoImport;
  bool imported;
  const char* prompt;
  const char* text;
  const char* title;
};

std::ostream& operator<<(std::ostream& out, const Row& row) {
  return out << row.mode << ", automatic import " << row.autoImport
             << (row.imported ? ", imported" : ", dropped");
}

constexpr Row kRows[] = {
    {"P", "Y", false, "NewPriorityDocInQ", "New priority dictation has arrived!",
     "Tavlo Deck - New Priority Dictation Alert"},
    {"P", "Y", true, "NewPriorityDocInQ", "New priority dictation has arrived!",
     "Tavlo Deck - New Priority Dictation Alert"},
    {"A", "Y", false, "NewDocInQ", "New dictation has arrived!",
     "Tavlo Deck - New Dictation Alert"},
    {"A", "Y", true, "NewDocInQ", "New dictation has arrived!", "Tavlo Deck - New Dictation Alert"},
    {"P", "N", false, "NewPriorityDocInQ", "New priority dictation has arrived!",
     "Tavlo Deck - New Priority Dictation Alert"},
    {"A", "N", false, "NewDocInQ", "New dictation has arrived!",
     "Tavlo Deck - New Dictation Alert"},
    {"P", "N", true, "NewPriorityDocInImport", "New priority dictation is available for import!",
     "Tavlo Deck - New Priority Dictation Alert"},
    {"A", "N", true, "NewDocInImport", "New dictation is available for import!",
     "Tavlo Deck - New Dictation Alert"},
};

TEST(WorkAlertWords, StandLetterForLetterInPromptMessageAndNotification) {
  for (const Row& row : kRows) {
    SCOPED_TRACE(testing::Message() << row);
    AlertBench bench;
    bench.StartWatching(row.mode, {{"AutoImportMode", row.autoImport}});
    bench.form.frmMain.HasKeyboard = false;
    if (row.imported) {
      bench.Import("a P_.wav");
    } else {
      bench.Transfer("a P_.dS2");
    }
    bench.WaitForACheck();
    EXPECT_EQ(bench.Spoken(), Texts{row.prompt});
    ASSERT_EQ(bench.loop.Shown.size(), 1u);
    const base::MessageBox& box = bench.loop.Shown[0];
    EXPECT_EQ(box.text, row.text);
    EXPECT_EQ(box.title, row.title);
    EXPECT_EQ(box.icon, base::Icon::Information);
    EXPECT_EQ(box.buttons, base::Buttons::Ok);
    ASSERT_EQ(bench.notifier.notified.size(), 1u);
    EXPECT_EQ(bench.notifier.notified[0].text, row.text);
    EXPECT_EQ(bench.notifier.notified[0].title, row.title);
  }
}

/// The folder fails under the first message or under the second, so that the refresh behind it
/// does not see all that waits.
TEST(WorkAlertWords, ComeOnceForBothSidesThoughAFolderFailsInTheRefreshBetween) {
  for (const char* const mode : {"A", "P"}) {
    for (const char* const folder : {"eW2Queue/", "dS2Queue/", "ImportQueue/", "eU2Queue/"}) {
      for (const int failsUnder : {1, 2}) {
        SCOPED_TRACE(testing::Message() << mode << ", " << folder << " under " << failsUnder);
        AlertBench bench;
        bench.StartWatching(mode);
        bench.Transfer("a P_.dS2");
        bench.Import("b P_.wav");
        const std::string gone = AlertBench::Path(std::string("/Files/") + folder);
        bench.loop.Expect({.delay = 1s, .meanwhile = [&] {
                             if (failsUnder == 1) bench.disk.BreakListing(gone);
                           }});
        bench.loop.Expect({.delay = 1s, .meanwhile = [&] { bench.disk.BreakListing(gone); }});
        bench.WaitForACheck();
        const bool urgent = mode[0] == 'P';
        const Texts told =
            urgent ? Texts{"New priority dictation has arrived!",
                           "New priority dictation is available for import!"}
                   : Texts{"New dictation has arrived!", "New dictation is available for import!"};
        EXPECT_EQ(bench.Messages(), told);
        bench.WaitForACheck();
        EXPECT_EQ(bench.Messages(), told);
        bench.disk.MendListing(gone);
        bench.WaitForACheck();
        bench.WaitForACheck();
        EXPECT_EQ(bench.Messages(), told);
      }
    }
  }
}

}  // namespace
}  // namespace tavlo::test
