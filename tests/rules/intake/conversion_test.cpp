#include "intake/conversion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <vector>

#include "intake/window_front.h"
#include "support/intake_bench.h"

namespace tavlo::test {
namespace {

using Names = std::vector<std::string>;

struct Conversion : testing::Test, IntakeBench {
  SimulatedConversion& libraries = deck.libraries;
  intake::Conversion& conversion = deck.conversion;
  const std::string ds2 = folders.Ds2QueuePath + "b.dS2";
  const std::string eu2 = folders.Eu2QueuePath + "x.eU2";

  std::string Text() const { return loop.Shown.empty() ? "" : loop.Shown.back().text; }
  std::string Title() const { return loop.Shown.empty() ? "" : loop.Shown.back().title; }
};

TEST_F(Conversion, RateIsElevenWhateverIsSet) {
  disk.WithFile(ds2, "B");
  EXPECT_EQ(conversion.ConversionRate, "");
  passes.RunRetrievalPasses();
  ASSERT_EQ(libraries.calls.size(), 1u);
  EXPECT_EQ(libraries.calls[0].library, "DssCodec11");
  EXPECT_EQ(conversion.ConversionRate, "11");
}

TEST_F(Conversion, LibraryIsToldTheClaimedFileAndAPathThatNoListShows) {
  disk.WithFile(ds2, "B");
  passes.RunRetrievalPasses();
  ASSERT_EQ(libraries.calls.size(), 1u);
  EXPECT_EQ(libraries.calls[0].source, folders.Ds2QueuePath + ".TavloClaim desk 41 b.dS2");
  EXPECT_EQ(libraries.calls[0].destination, folders.InQueuePath + ".TavloWave desk 41 1.wav");
  EXPECT_EQ(disk.FilesHolding("wave of B"), Names{deck.Queued("b.wav")});
}

TEST_F(Conversion, FailureIsToldByItsNumberAndTheSourceStays) {
  disk.WithFile(ds2, "B").WithFile(folders.Ds2QueuePath + "c.dS2", "C");
  libraries.status = 17;
  passes.RunRetrievalPasses();
  EXPECT_EQ(Titles(), (Names{"Tavlo Deck - Conversion", "Tavlo Deck - Conversion"}));
  EXPECT_EQ(Text(), "Dss to Wav Conversion error:  17");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Warning);
  EXPECT_EQ(disk.NamesIn(folders.Ds2QueuePath), (Names{"b.dS2", "c.dS2"}));
  EXPECT_TRUE(disk.NamesIn(folders.InQueuePath).empty());
}

TEST_F(Conversion, NegativeNumberHasNoBlankInFront) {
  disk.WithFile(ds2, "B");
  libraries.status = -3;
  passes.RunRetrievalPasses();
  EXPECT_EQ(Text(), "Dss to Wav Conversion error: -3");
}

TEST_F(Conversion, FailureComesAgainOnEveryRun) {
  disk.WithFile(ds2, "B");
  libraries.status = 17;
  passes.RunRetrievalPasses();
  passes.RunRetrievalPasses();
  EXPECT_EQ(loop.Shown.size(), 2u);
  libraries.status = 0;
  passes.RunRetrievalPasses();
  EXPECT_TRUE(disk.Has(deck.Queued("b.wav")));
}

TEST_F(Conversion, FailureWhoseNumberIsCutToZeroKeepsItsSource) {
  disk.WithFile(ds2, "B");
  libraries.status = 65536;
  passes.RunRetrievalPasses();
  EXPECT_EQ(conversion.ConversionStatus, 0);
  EXPECT_EQ(Text(), "Dss to Wav Conversion error:  0");
  EXPECT_TRUE(disk.Has(ds2));
}

TEST_F(Conversion, FailureDisturbsNoDocumentOfThatName) {
  disk.WithFile(ds2, "B").WithFile(deck.Queued("b.wav"), "typed at");
  libraries.status = 17;
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.Contents(deck.Queued("b.wav")), "typed at");
  EXPECT_EQ(disk.FileCount(), 2u);
}

TEST_F(Conversion, SuccessWithoutAWaveKeepsTheSource) {
  disk.WithFile(ds2, "B");
  libraries.makesNothing = true;
  passes.RunRetrievalPasses();
  EXPECT_EQ(Title(), "Tavlo Deck - Retrieval");
  EXPECT_EQ(disk.FilesHolding("B"), Names{ds2});
}

TEST_F(Conversion, SourceStaysUntilTheWaveIsSureToStay) {
  disk.WithFile(ds2, "B");
  passes.RunRetrievalPasses();
  const std::string flush =
      "FlushFolder " + folders.InQueuePath.substr(0, folders.InQueuePath.size() - 1);
  const Names changes = disk.Changes();
  const auto flushed = std::ranges::find(changes, flush);
  ASSERT_NE(flushed, changes.end());
  EXPECT_TRUE(std::any_of(flushed, changes.end(), [](const std::string& change) {
    return change.starts_with("Delete ") && change.ends_with(" b.dS2");
  }));
}

TEST_F(Conversion, LibraryThatGivesNoAnswerLeavesTheSourceUnderItsClaim) {
  disk.WithFile(ds2, "B");
  libraries.givesNoAnswer = true;
  passes.RunRetrievalPasses();
  EXPECT_EQ(Titles(), Names{"Tavlo Deck - Retrieval"});
  EXPECT_EQ(disk.FilesHolding("B").size(), 1u);
  libraries.givesNoAnswer = false;
  loop.Advance(intake::Claims::kAbandonedAfter);
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.Contents(deck.Queued("b.wav")), "wave of B");
}

TEST_F(Conversion, LongOneSaysEachSecondHowLongItHasTaken) {
  disk.WithFile(ds2, "B");
  libraries.takes = std::chrono::milliseconds{2500};
  passes.RunRetrievalPasses();
  EXPECT_EQ(front.howFar, (Names{"Converting b.dS2: 00:00:01", "Converting b.dS2: 00:00:02", ""}));
}

TEST_F(Conversion, HeaderGoesInFrontOfEveryNameThatTheCutByLengthGives) {
  disk.WithFile(eu2, "X").WithFile(folders.Eu2QueuePath + "Y.EU2", "Y");
  passes.RunRetrievalPasses();
  EXPECT_EQ(disk.NamesIn(folders.InQueuePath), (Names{"Y.wav", "x.wav"}));
  EXPECT_TRUE(disk.NamesIn(folders.Eu2QueuePath).empty());
}

TEST_F(Conversion, ResultFiveIsASuccessAsZeroIs) {
  disk.WithFile(eu2, "X");
  libraries.result = 5;
  passes.RunRetrievalPasses();
  EXPECT_EQ(conversion.AddHdrResult, 5);
  EXPECT_FALSE(disk.Has(eu2));
  EXPECT_TRUE(disk.Has(deck.Queued("x.wav")));
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(Conversion, HeaderMessageAfterAFreshStartShowsZeroHoweverItFailed) {
  disk.WithFile(eu2, "X");
  libraries.result = 9;
  passes.RunRetrievalPasses();
  EXPECT_EQ(Title(), "Tavlo Deck - Add Header");
  EXPECT_EQ(Text(), "Add Header error:  0");
  EXPECT_EQ(disk.FilesHolding("X"), Names{eu2});
}

TEST_F(Conversion, HeaderMessageShowsTheNumberOfTheLatestDssConversion) {
  disk.WithFile(ds2, "B").WithFile(eu2, "X");
  libraries.status = 17;
  libraries.result = 9;
  passes.RunRetrievalPasses();
  EXPECT_EQ(Text(), "Add Header error:  17");
}

struct ImportConversion : Conversion {
  ImportConversion() {
    disk.WithFile(folders.WavQueuePath + "n.dss", "root");
    disk.WithFile(folders.WavQueuePath + "4/N.DSS", "four");
  }
};

TEST_F(ImportConversion, WaveTakesThePlaceOfItsSourceInTheDirectoryOnShow) {
  std::string entry = "n.dss";
  conversion.ConvertImportDssFile(entry);
  EXPECT_EQ(entry, "n.wav");
  EXPECT_EQ(disk.FilesHolding("wave of root"), Names{deck.Import("n.wav")});
  EXPECT_FALSE(disk.Has(deck.Import("n.dss")));
  entry = "N.DSS";
  front.subdirectory = "4";
  conversion.ConvertImportDssFile(entry);
  EXPECT_EQ(entry, "N.wav");
  EXPECT_EQ(disk.NamesIn(deck.Import("4")), Names{"N.wav"});
}

TEST_F(ImportConversion, FailureSwitchesTheNameAllTheSameAndKeepsTheSource) {
  libraries.status = 17;
  std::string entry = "n.dss";
  conversion.ConvertImportDssFile(entry);
  EXPECT_EQ(entry, "n.wav");
  EXPECT_EQ(Title(), "Tavlo Deck - Import Conversion");
  EXPECT_EQ(Text(), "Dss to Wav Conversion error:  17");
  EXPECT_FALSE(disk.Has(deck.Import("n.wav")));
  EXPECT_EQ(disk.FilesHolding("root"), Names{deck.Import("n.dss")});
}

TEST_F(ImportConversion, WaveOfThatNameIsSetAside) {
  disk.WithFile(deck.Import("n.wav"), "another");
  std::string entry = "n.dss";
  conversion.ConvertImportDssFile(entry);
  EXPECT_EQ(disk.Contents(deck.Rescued("n.wav")), "another");
  EXPECT_EQ(disk.Contents(deck.Import("n.wav")), "wave of root");
  EXPECT_EQ(front.said.size(), 1u);
}

TEST_F(ImportConversion, DirectoryWhoseFilesMayNotBeRenamedKeepsThem) {
  disk.LockFolder(deck.Import("4"));
  std::string entry = "N.DSS";
  front.subdirectory = "4";
  conversion.ConvertImportDssFile(entry);
  EXPECT_EQ(Title(), "Tavlo Deck - Retrieval");
  EXPECT_TRUE(libraries.calls.empty());
  EXPECT_EQ(front.said.size(), 1u);
}

struct Front : testing::Test {
  SimulatedLoop loop;
  forms::MainForm form{loop};
  forms::ConfigurationForm config{loop};
  window::MainWindow window{form, config, [] {}};
  intake::WindowFront front{window};
};

TEST_F(Front, SortingShowsItsTwoLabels) {
  EXPECT_EQ(form.lblFtpParsing.Value.Get(), "Processing files...");
  EXPECT_EQ(form.lblFtpWait.Value.Get(), "please standby ");
  EXPECT_FALSE(form.lblFtpParsing.Visible);
  front.ShowFtpSort(true);
  EXPECT_TRUE(form.lblFtpParsing.Visible);
  EXPECT_TRUE(form.lblFtpWait.Visible);
}

TEST_F(Front, PointerIsEmptyBeforeAnyConnection) {
  EXPECT_EQ(front.FtpParseImportDirPointer(), "");
}

TEST_F(Front, HowFarTakesThePlaceOfWhatWasSaidOfItBefore) {
  front.Say("Kept.");
  front.SayHowFar("one");
  front.SayHowFar("two");
  EXPECT_EQ(form.lblNotice.Value.Get().find("one"), std::string::npos);
  EXPECT_NE(form.lblNotice.Value.Get().find("two"), std::string::npos);
  front.SayHowFar("");
  EXPECT_EQ(form.lblNotice.Value.Get(), "Kept.");
}

}  // namespace
}  // namespace tavlo::test
