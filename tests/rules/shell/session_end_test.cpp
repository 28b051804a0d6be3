#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>

#include "store/saved_position.h"
#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using base::Reply;
using base::operator""ms;
using base::operator""s;
using forms::By;
using Names = std::vector<std::string>;

struct SessionEndTest : testing::Test, DeckBench {
  const std::string document = Drop(Document().Name());

  /// The document in work, played for a while.
  void Play() {
    StartUntilReady();
    config.txtAutoQueueJob.Value = "N";
    ClickRow(0);
    form.cmdPlay.Press(By::Hand);
    loop.Advance(2s);
  }
  /// Where the ear is, in samples of the document.
  double Heard() { return Engine().PlayStartSample + static_cast<double>(player.PlayedSamples()); }
  Names Queue() const { return disk.NamesIn(InQueue()); }
  Names StoredAt(double position) const { return {store::WithSavedPosition(document, position)}; }
  /// The session ends while the loop waits, so much later.
  void EndIn(base::Duration length) {
    later_.emplace(loop, "session", length);
    later_->OnTick = [this] {
      later_->Stop();
      deck.EndSession();
    };
    later_->Start();
  }
  void ExpectEndWithoutAWord() const {
    EXPECT_EQ(ended, 0);
    EXPECT_TRUE(loop.Shown.empty());
  }

 private:
  std::optional<base::Timer> later_;
};

TEST_F(SessionEndTest, StoresWhereTheEarWasInADocumentThatPlaysAndEnds) {
  Play();
  const double heard = Heard();
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_GT(heard, 0);
  EXPECT_EQ(Queue(), StoredAt(heard));
  EXPECT_FALSE(player.IsRunning());
  EXPECT_FALSE(file.IsOpen());
}

TEST_F(SessionEndTest, StoresWhatWasTypedIntoAnAuthorProfile) {
  StartUntilReady();
  form.mnuViewImport.Press(By::Hand);
  form.txtImportSubject.Change("cardio");
  deck.EndSession();
  const SettingsTables stored = databases.Look(SettingsPath());
  EXPECT_EQ(stored.at(store::Table::ImportAuthors).at(0).at("Subject"), "cardio");
}

TEST_F(SessionEndTest, ChangesNothingOnTheDiskButTheName) {
  Play();
  disk.Operations.clear();
  deck.EndSession();
  EXPECT_EQ(disk.Changes(),
            Names{"Rename " + InQueue() + document + " -> " + InQueue() + Queue().front()});
}

TEST_F(SessionEndTest, StoresThePositionOfADocumentThatIsStopped) {
  Play();
  form.cmdStop.Press(By::Hand);
  loop.Advance(60s);
  const double position = InWork().CurrentSamplePosition;
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), StoredAt(position));
}

TEST_F(SessionEndTest, StoresThePositionThatAWindHasReached) {
  Play();
  form.cmdForward.Press(By::Hand);
  const double position = InWork().CurrentSamplePosition;
  deck.EndSession();
  EXPECT_EQ(Queue(), StoredAt(position));
  EXPECT_EQ(deck.Built()->transport.WindDirection, playback::Wind::None);
}

TEST_F(SessionEndTest, PreviewIsNoWorkAndKeepsItsName) {
  StartUntilReady();
  ClickRow(0);
  loop.Advance(1s);
  ASSERT_TRUE(Engine().IsPlaying);
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), Names{document});
  EXPECT_FALSE(player.IsRunning());
}

TEST_F(SessionEndTest, WithoutADocumentChangesNoFile) {
  StartUntilReady();
  disk.Operations.clear();
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_EQ(disk.Changes(), Names{});
}

TEST_F(SessionEndTest, SavesWhatTheOpenConfigurationWindowHolds) {
  StartUntilReady();
  form.mnuConfiguration.Press(By::Hand);
  config.txtSubjectHeading.Value = "Case";
  ASSERT_NE(Stored("SubjectHeading"), "Case");
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_EQ(Stored("SubjectHeading"), "Case");
}

TEST_F(SessionEndTest, SavesWhereTheMiniPlayerStands) {
  Play();
  form.frmMain.Left = 1500;
  form.frmMain.Top = 2250;
  deck.EndSession();
  EXPECT_EQ(Stored("PlayerLeft"), "1500");
  EXPECT_EQ(Stored("PlayerTop"), "2250");
}

TEST_F(SessionEndTest, EndsUnderTheAboutWindow) {
  StartUntilReady();
  form.mnuAbout.Press(By::Hand);
  deck.EndSession();
  ExpectEndWithoutAWord();
}

TEST_F(SessionEndTest, EndsUnderAMessageBoxWithTheDocumentStored) {
  Play();
  std::optional<int> endedUnderTheBox;
  double position = 0;
  loop.Expect({.meanwhile = [&] {
    position = InWork().CurrentSamplePosition;
    deck.EndSession();
    endedUnderTheBox = ended;
  }});
  form.frmMain.CloseRequest();
  EXPECT_EQ(endedUnderTheBox, 0);
  EXPECT_EQ(Queue(), StoredAt(position));
}

TEST_F(SessionEndTest, EndsUnderABoxInTheMomentOfSavingWithTheDocumentStored) {
  Play();
  loop.Post([] { throw std::runtime_error("no"); });
  std::optional<int> endedUnderTheBox;
  loop.Expect({.meanwhile = [&] {
    deck.EndSession();
    endedUnderTheBox = ended;
  }});
  form.cmdSave.Press(forms::By::Hand);
  ASSERT_FALSE(loop.Shown.empty());
  EXPECT_EQ(endedUnderTheBox, 0);
  EXPECT_EQ(Queue(), StoredAt(InWork().CurrentSamplePosition));
}

TEST_F(SessionEndTest, EndsDuringTheSplashWithNothingChanged) {
  deck.Start();
  loop.Advance(1s);
  disk.Operations.clear();
  const auto settings = databases.Look(SettingsPath());
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_EQ(disk.Changes(), Names{});
  EXPECT_EQ(databases.Look(SettingsPath()), settings);
}

TEST_F(SessionEndTest, EndsDuringTheLoadWithTheSettingsAsTheyWere) {
  for (const base::Duration moment :
       {base::Duration{5500ms}, base::Duration{6500ms}, base::Duration{7500ms}}) {
    DeckBench early;
    early.deck.Start();
    early.loop.Advance(moment);
    const auto settings = early.databases.Look(SettingsPath());
    early.deck.EndSession();
    EXPECT_EQ(early.ended, 0);
    EXPECT_EQ(early.databases.Look(SettingsPath()), settings);
  }
}

TEST_F(SessionEndTest, EndsUnderTheBoxOfASecondCopy) {
  anotherCopy = true;
  std::optional<int> endedUnderTheBox;
  loop.Expect({.meanwhile = [&] {
    deck.EndSession();
    endedUnderTheBox = ended;
  }});
  deck.Start();
  EXPECT_EQ(endedUnderTheBox, 0);
}

TEST_F(SessionEndTest, StoresASaveFirstThatHasNotStoredYet) {
  Play();
  double position = 0;
  loop.Post([&] {
    position = InWork().CurrentSamplePosition;
    deck.EndSession();
    EXPECT_FALSE(ended.has_value());
  });
  form.cmdSave.Press(By::Hand);
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), StoredAt(position));
}

TEST_F(SessionEndTest, CompletesFirstWhatIsBeingCompleted) {
  Play();
  form.cmdSkipEnd.Press(By::Hand);
  loop.Post([&] { deck.EndSession(); });
  form.cmdComplete.Press(By::Hand);
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), Names{});
  EXPECT_EQ(disk.NamesIn(Completed()), Names{document});
}

TEST_F(SessionEndTest, LeavesASkippedDocumentAsItIs) {
  Play();
  loop.Post([&] { deck.EndSession(); });
  form.cmdSkip.Press(By::Hand);
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), Names{document});
}

TEST_F(SessionEndTest, StoresNothingASecondTimeInTheWaitBehindASave) {
  Play();
  form.cmdStop.Press(By::Hand);
  const double position = InWork().CurrentSamplePosition;
  EndIn(250ms);
  form.cmdSave.Press(By::Hand);
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), StoredAt(position));
}

TEST_F(SessionEndTest, LetsACopyToAnotherFileSystemFinish) {
  disk.WithFileSystemAt(Completed());
  Play();
  form.cmdSkipEnd.Press(By::Hand);
  disk.OnNextCopy = [&] {
    deck.EndSession();
    EXPECT_FALSE(ended.has_value());
  };
  form.cmdComplete.Press(By::Hand);
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), Names{});
  EXPECT_EQ(disk.NamesIn(Completed()), Names{document});
}

TEST_F(SessionEndTest, WithoutALoopStoresAtOnceWhatTheKeyAskedFor) {
  Play();
  form.cmdSkipEnd.Press(By::Hand);
  Names completed;
  loop.Post([&] {
    deck.EndSessionNow();
    completed = disk.NamesIn(Completed());
    EXPECT_EQ(ended, 0);
  });
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(completed, Names{document});
  EXPECT_EQ(disk.NamesIn(Completed()), Names{document});
}

TEST_F(SessionEndTest, WithoutALoopCopiesAnewWhatWasBeingCopied) {
  disk.WithFileSystemAt(Completed());
  Play();
  form.cmdSkipEnd.Press(By::Hand);
  Names completed;
  Names queue{"?"};
  disk.OnNextCopy = [&] {
    deck.EndSessionNow();
    completed = disk.NamesIn(Completed());
    queue = Queue();
  };
  form.cmdComplete.Press(By::Hand);
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(completed, Names{document});
  EXPECT_EQ(queue, Names{});
}

TEST_F(SessionEndTest, WithoutALoopStoresThePositionOfWhatPlays) {
  Play();
  const double heard = Heard();
  deck.EndSessionNow();
  ExpectEndWithoutAWord();
  EXPECT_EQ(Queue(), StoredAt(heard));
}

TEST_F(SessionEndTest, EndsInTheWaitsOfTheExitToo) {
  for (const base::Duration moment : {base::Duration{500ms}, base::Duration{1500ms}}) {
    DeckBench bench;
    bench.StartUntilReady();
    bench.loop.Expect({.reply = Reply::Yes});
    std::optional<int> endedInTheWait;
    base::Timer signal(bench.loop, "signal", moment);
    signal.OnTick = [&] {
      signal.Stop();
      bench.deck.EndSession();
      endedInTheWait = bench.ended;
    };
    signal.Start();
    bench.form.frmMain.CloseRequest();
    EXPECT_EQ(endedInTheWait, 0);
    EXPECT_EQ(bench.loop.Shown.size(), 1u);
  }
}

TEST_F(SessionEndTest, SecondWordOfItStoresNothingMore) {
  Play();
  deck.EndSession();
  const Names once = Queue();
  InWork().CurrentSamplePosition += 8000;
  deck.EndSession();
  deck.EndSessionNow();
  EXPECT_EQ(Queue(), once);
  ExpectEndWithoutAWord();
}

TEST_F(SessionEndTest, DocumentThatCannotBeStoredKeepsItsName) {
  Play();
  disk.FailOperation(1, store::DiskResult::NoSpace, SimulatedDisk::Failing::ForGood);
  deck.EndSession();
  EXPECT_EQ(ended, 0);
  EXPECT_EQ(Queue(), Names{document});
}

TEST_F(SessionEndTest, LetsGoOfPedalAndPromptsWithoutAWord) {
  StartUntilReady();
  usbWatcher.CanStop = false;
  deck.Built()->prompts.PlayPrompt("Complete");
  deck.EndSession();
  ExpectEndWithoutAWord();
  EXPECT_EQ(usbWatcher.Stops, 1);
  EXPECT_FALSE(deck.Built()->usbPedal.TmrHIDRead.Enabled());
  EXPECT_FALSE(promptControl.IsOpen());
}

TEST_F(SessionEndTest, UserIsStillAskedToFinishTheDocument) {
  Play();
  form.frmMain.CloseRequest();
  EXPECT_FALSE(ended.has_value());
  EXPECT_EQ(Queue(), Names{document});
}

}  // namespace
}  // namespace tavlo::test
