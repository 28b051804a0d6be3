#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::operator""s;

struct PurgeAtStart : testing::Test, DeckBench {
  const std::string old = Keep(Document().By("Old").At("3 1 2004 9 0 0").Name());
  const std::string young = Keep(Document().By("Young").At("3 9 2004 9 0 0").Name());

  bool StaysCompleted(const std::string& name) { return disk.Has(Completed() + name); }
  /// How many operations came before the first one that is spelled so.
  std::ptrdiff_t PlaceOf(const std::string& operation) {
    return std::ranges::find(disk.Operations, operation) - disk.Operations.begin();
  }
};

TEST_F(PurgeAtStart, WhatIsOlderThanTheSettingHasGoneBeforeTheFirstList) {
  Drop(Document().Name());
  StartWith({{"DeleteCompletedFiles", "2"}});
  EXPECT_FALSE(StaysCompleted(old));
  EXPECT_TRUE(StaysCompleted(young));
  const std::ptrdiff_t purged = PlaceOf("Delete " + Completed() + old);
  const std::string queue = InQueue().substr(0, InQueue().size() - 1);
  EXPECT_LT(purged, PlaceOf("List " + queue));
  EXPECT_EQ(form.listViewInQueue.Rows().size(), 1u);
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(PurgeAtStart, ComesBeforeTheFoldersOfTheTreeAreMade) {
  StartWith({{"DeleteCompletedFiles", "2"}});
  const std::ptrdiff_t purged = PlaceOf("Delete " + Completed() + old);
  const std::ptrdiff_t made = PlaceOf("MakeFolder " + Path("/Files/Completed"));
  EXPECT_LT(purged, made);
  EXPECT_LT(made, static_cast<std::ptrdiff_t>(disk.Operations.size()));
}

TEST_F(PurgeAtStart, LogTellsWhatWent) {
  StartWith({{"DeleteCompletedFiles", "2"}});
  const std::string log = disk.Contents(Path("/Reports/Tavlo_Deck_Purge_Log.txt"));
  EXPECT_NE(log.find(" deleted, 8 days 4 hours old: " + old + "\n"), std::string::npos) << log;
}

TEST_F(PurgeAtStart, LogTellsWhatWentBeforeTheSessionEndedInTheRun) {
  const std::string later = Keep(Document().By("Later").At("3 1 2004 9 0 0").Name());
  bool over = false;
  disk.BetweenOperations = [&] {
    if (over || StaysCompleted(old)) return;
    over = true;
    deck.EndSessionNow();
    const std::string log = disk.Contents(Path("/Reports/Tavlo_Deck_Purge_Log.txt"));
    EXPECT_NE(log.find(old), std::string::npos) << log;
    EXPECT_EQ(log.find(later), std::string::npos) << log;
    disk.CrashAtOperation(0);
  };
  StartWith({{"DeleteCompletedFiles", "2"}});
  EXPECT_TRUE(over);
  EXPECT_EQ(ended, 0);
}

TEST_F(PurgeAtStart, WaitsForTheAnswerToTheBoxOfAMissingSoundCard) {
  player.Devices = 0;
  loop.Expect({.meanwhile = [&] {
    loop.Wait(60s);
    EXPECT_TRUE(StaysCompleted(old));
  }});
  StartWith({{"DeleteCompletedFiles", "2"}});
  loop.Advance(10s);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Sound Card");
  EXPECT_FALSE(StaysCompleted(old));
  EXPECT_TRUE(form.cmdUpdateFileList.Enabled);
}

TEST_F(PurgeAtStart, NumberOfDaysThatIsNoLimitKeepsEverything) {
  for (const char* days : {"0", "", "23", "255", "256", "300", "-1", "abc"}) {
    DeckBench bench;
    bench.Keep(old);
    bench.StartWith({{"DeleteCompletedFiles", days}});
    EXPECT_TRUE(bench.disk.Has(Completed() + old)) << days;
  }
}

TEST_F(PurgeAtStart, ComesAtEachStartAndNeverDuringARun) {
  PlaceSettings({{"DeleteCompletedFiles", "22"}});
  {
    shell::Deck first(Edges());
    first.Start();
    loop.Advance(3600s * 24 * 20);
    first.windows.main.cmdUpdateFileList.Press(forms::By::Hand);
    EXPECT_TRUE(StaysCompleted(old));
  }
  StartUntilReady();
  EXPECT_FALSE(StaysCompleted(old));
  EXPECT_TRUE(StaysCompleted(young));
}

TEST_F(PurgeAtStart, ThousandNamesTakeNoneOfTheWaitsOfTheStart) {
  for (int number = 0; number < 1001; ++number) {
    Keep(Document().By(std::to_string(number)).At("3 1 2004 9 0 0").Name());
  }
  StartWith({{"DeleteCompletedFiles", "2"}});
  // Of the first two, one stays and counts, too.
  EXPECT_EQ(disk.NamesIn(Completed()).size(), 1u + 3u);
  EXPECT_TRUE(form.cmdUpdateFileList.Enabled);
}

TEST_F(PurgeAtStart, FolderThatGivesNoAnswerDelaysTheStartNoLongerThanOneWait) {
  disk.WithFileSystemAt(Completed());
  disk.Places.Stall(Completed());
  StartWith({{"DeleteCompletedFiles", "2"}});
  EXPECT_LE(loop.BreathedFor, SimulatedPlaces::kPatience);
  loop.Advance(10s);
  EXPECT_TRUE(form.cmdUpdateFileList.Enabled);
  EXPECT_TRUE(StaysCompleted(old));
}

}  // namespace
}  // namespace tavlo::test
