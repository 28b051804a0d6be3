#include "lists/opening.h"

#include <gtest/gtest.h>

#include "support/lists_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;

struct OpeningTest : testing::Test, ListsBench {
  const std::string name =
      Document().By("Brown").Id(1234).Department(2).WorkType(17).About("cardio").Priority().Name();

  OpeningTest() {
    Drop(name);
    queue.RefreshQueueList();
  }
};

TEST_F(OpeningTest, ClickSelectsTheRowsFileAndFillsTheStatusBar) {
  waitingWork.AlertTicks = 7;
  ClickRowOf(name);
  EXPECT_EQ(opening.SelectedQueueFile, name);
  EXPECT_EQ(documentInWork.CurrentDocumentPath, folders.InQueuePath + name);
  const std::vector<std::string> expected{
      "Pri", "1234", "Brown", "Dept: 2", "Work: 17", "Subject: cardio", "03/09/2004"};
  EXPECT_EQ(form.StatusBar1.Panels.Get(), expected);
  EXPECT_EQ(waitingWork.AlertTicks, 0);
}

TEST_F(OpeningTest, SubjectPanelCarriesTheUsersOwnWord) {
  config.txtSubjectHeading.Value = "Patient";
  ClickRowOf(name);
  EXPECT_EQ(form.StatusBar1.Panels.Get()[5], "Patient: cardio");
}

TEST_F(OpeningTest, SelectedDocumentWaitsForPlay) {
  ClickRowOf(name);
  EXPECT_TRUE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_FALSE(form.cmdSave.Enabled);
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(OpeningTest, WithoutAPreviewTheStatusBarFillsAndNothingSounds) {
  config.txtAutoPreview.Value = "0";
  ClickRowOf(name);
  EXPECT_EQ(form.StatusBar1.Panels.Get()[2], "Brown");
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdPlay.Enabled);
}

TEST_F(OpeningTest, NothingSelectedYetDoesNothing) {
  Play();
  opening.GetSelectedJob();
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(OpeningTest, DoubleClickDoesNoMoreThanAClick) {
  ClickRowOf(name);
  form.listViewInQueue.DoubleClick(0);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdSkip.Enabled);
  EXPECT_TRUE(form.frameFiles.Visible);
}

TEST_F(OpeningTest, FileThatCanNotBePlayedIsExplainedAndMayLeaveByComplete) {
  file.Sounds.clear();
  ClickRowOf(name);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Unrecognized Audio Format");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Information);
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:00");
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_TRUE(form.cmdComplete.Enabled);
}

TEST_F(OpeningTest, FileThatIsGoneIsSaidToBeSoAndMayNotLeaveByComplete) {
  file.OutOfReach = {folders.InQueuePath + name};
  form.cmdComplete.Enabled = true;
  ClickRowOf(name);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - File Not Found");
  EXPECT_EQ(loop.Shown[0].text,
            "This file is no longer there, or its folder can not be reached.\n"
            "Press Refresh to see what waits.");
  EXPECT_EQ(loop.Shown[0].icon, base::Icon::Information);
  EXPECT_EQ(form.lblFileLengthHMS.Value.Get(), "00:00:00");
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(OpeningTest, FileThatIsOutOfReachIsListedWithoutALength) {
  file.OutOfReach = {folders.InQueuePath + name};
  queue.RefreshQueueList();
  ASSERT_EQ(Rows(), 1);
  EXPECT_EQ(Cell(0, forms::document_column::Length), "00:00:00");
}

TEST_F(OpeningTest, WithoutAPreviewTheErrorComesWithPlay) {
  file.Sounds.clear();
  config.txtAutoPreview.Value = "0";
  ClickRowOf(name);
  EXPECT_TRUE(loop.Shown.empty());
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(loop.Shown.size(), 1u);
}

TEST_F(OpeningTest, DocumentWithoutAudioSaysSoAndMayLeaveByComplete) {
  file.Sounds[folders.InQueuePath + name] = {.samples = 0};
  ClickRowOf(name);
  EXPECT_EQ(prompts, std::vector<std::string>{"EmptyDocErrMayComplete"});
  EXPECT_TRUE(form.cmdComplete.Enabled);
  EXPECT_FALSE(form.cmdPlay.Enabled);
}

TEST_F(OpeningTest, NegativeStatusEndsWithoutAWord) {
  file.InTrouble = true;
  ClickRowOf(name);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(OpeningTest, ForeignNameFillsTheStatusBarWithTheFallback) {
  Drop("memo.wav");
  queue.RefreshQueueList();
  ClickRowOf("memo.wav");
  EXPECT_EQ(form.StatusBar1.Panels.Get()[1], "999999");
  EXPECT_EQ(form.StatusBar1.Panels.Get()[2], "Unknown");
}

TEST_F(OpeningTest, SavedDocumentPlaysFromItsPosition) {
  const std::string saved = Document().By("Saved").Saved(40'000).Name();
  Drop(saved);
  queue.RefreshQueueList();
  ClickRowOf(saved);
  queue.RefreshQueueList();
  ClickRowOf(saved);
  form.cmdPlay.Press(By::Hand);
  EXPECT_EQ(file.Seeks.back(), 40'000);
}

TEST_F(OpeningTest, LastOfTwoClicksInOneMomentIsWhatOpens) {
  const std::string last = Document().By("Last").Name();
  Drop(last);
  queue.RefreshQueueList();
  loop.Post([&] { ClickRowOf(last); });
  ClickRowOf(name);
  EXPECT_EQ(opening.SelectedQueueFile, last);
  EXPECT_EQ(documentInWork.CurrentDocumentPath, folders.InQueuePath + last);
  EXPECT_EQ(form.StatusBar1.Panels.Get()[2], "Last");
  EXPECT_EQ(file.Seeks.size(), 1u);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(form.cmdPlay.Enabled);
  EXPECT_TRUE(window.guards.ListsMayChange());
}

TEST_F(OpeningTest, ClickIsRefusedWhileADocumentIsInWork) {
  ClickRowOf(name);
  form.cmdPlay.Press(By::Hand);
  const auto opens = file.OpenCount;
  ClickRowOf(name);
  EXPECT_EQ(file.OpenCount, opens);
}

struct CompletedPreviewTest : testing::Test, ListsBench {
  const std::string name = Document().By("Brown").Name();
  const std::string path = folders.CompletedPath() + name;

  CompletedPreviewTest() {
    form.frameInQueue.Visible = false;
    form.frameCompleted.Visible = true;
    disk.WithFile(path);
    file.Sounds[path] = {.samples = 80'000};
    List(name);
  }

  void List(const std::string& fileName) {
    forms::Row row;
    row.cells.resize(forms::document_column::StampSort + 1);
    row.cells[forms::document_column::FileName].text = fileName;
    form.listViewCompleted.Add(row);
  }
};

TEST_F(CompletedPreviewTest, ClickSelectsTheRowsFileAndSoundsItsBeginning) {
  documentInWork.CurrentSamplePosition = 500;
  form.lblFilePositionHMS.Value = "00:00:09";
  waitingWork.AlertTicks = 7;
  form.listViewCompleted.RowClick(0);
  EXPECT_EQ(opening.SelectedCompletedFile, name);
  EXPECT_EQ(documentInWork.CurrentDocumentPath, path);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_EQ(file.Seeks.back(), 0);
  EXPECT_EQ(form.lblFilePositionHMS.Value.Get(), "00:00:00");
  EXPECT_TRUE(form.cmdImportCompleteSnipetStop.Enabled);
  EXPECT_EQ(waitingWork.AlertTicks, 0);
}

TEST_F(CompletedPreviewTest, ClickOffersNeitherPlayNorTheWaysToFinish) {
  form.listViewCompleted.RowClick(0);
  for (const forms::Command* key :
       {&form.cmdPlay, &form.cmdSkip, &form.cmdSave, &form.cmdComplete}) {
    EXPECT_FALSE(key->Enabled) << key->Name;
  }
  EXPECT_EQ(form.StatusBar1.Panels.Get(), std::vector<std::string>(7));
  EXPECT_TRUE(opening.SelectedQueueFile.empty());
}

TEST_F(CompletedPreviewTest, PreviewEndsByItselfAndByHand) {
  file.Sounds[path] = {.samples = 800'000};
  form.listViewCompleted.RowClick(0);
  loop.Advance(5999ms);
  EXPECT_TRUE(engine.IsPlaying);
  loop.Advance(1ms);
  EXPECT_FALSE(engine.IsPlaying);
  form.listViewCompleted.RowClick(0);
  form.cmdImportCompleteSnipetStop.Press(By::Hand);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(CompletedPreviewTest, NothingSelectedYetStopsOnlyTheTimerOfAPreview) {
  Play();
  engine.tmrPlaySnipet.Start();
  opening.PreviewCompletedDocument();
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_FALSE(engine.tmrPlaySnipet.Enabled());
}

TEST_F(CompletedPreviewTest, WithoutAPreviewTheClickOnlySelects) {
  config.txtAutoPreview.Value = "0";
  form.listViewCompleted.RowClick(0);
  EXPECT_EQ(opening.SelectedCompletedFile, name);
  EXPECT_FALSE(engine.IsPlaying);
  EXPECT_EQ(file.OpenCount, 0);
}

TEST_F(CompletedPreviewTest, FileThatCanNotBePlayedIsNamedAndMayNotBeCompleted) {
  file.Sounds.clear();
  form.listViewCompleted.RowClick(0);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck");
  EXPECT_EQ(loop.Shown[0].text, path + " can not be played.");
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(CompletedPreviewTest, FileThatIsGoneIsSaidToBeSo) {
  file.OutOfReach = {path};
  form.listViewCompleted.RowClick(0);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - File Not Found");
  EXPECT_FALSE(form.cmdComplete.Enabled);
  EXPECT_FALSE(engine.IsPlaying);
}

TEST_F(CompletedPreviewTest, DocumentWithoutAudioSaysSoAndMayNotBeCompleted) {
  file.Sounds[path] = {.samples = 0};
  form.listViewCompleted.RowClick(0);
  EXPECT_EQ(prompts, std::vector<std::string>{"EmptyDocErr"});
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(CompletedPreviewTest, NegativeStatusEndsWithoutAWord) {
  file.InTrouble = true;
  form.listViewCompleted.RowClick(0);
  EXPECT_TRUE(loop.Shown.empty());
  EXPECT_TRUE(prompts.empty());
}

TEST_F(CompletedPreviewTest, LastOfTwoClicksInOneMomentIsWhatSounds) {
  const std::string last = Document().By("Last").Name();
  file.Sounds[folders.CompletedPath() + last] = {.samples = 80'000};
  List(last);
  loop.Post([&] { form.listViewCompleted.RowClick(1); });
  form.listViewCompleted.RowClick(0);
  EXPECT_EQ(opening.SelectedCompletedFile, last);
  EXPECT_EQ(documentInWork.CurrentDocumentPath, folders.CompletedPath() + last);
  EXPECT_EQ(file.Seeks.size(), 1u);
}

struct ImportPreviewTest : testing::Test, ListsBench {
  ImportPreviewTest() {
    folders.WavQueuePath = "/drop/";
    form.frameInQueue.Visible = false;
    form.frameImport.Visible = true;
    form.listViewImport.Add(forms::Row{{{""}, {"memo.wav"}, {"00:00:10"}}});
    form.listViewImport.Add(forms::Row{{{""}, {"alpha.wav"}, {"00:00:20"}}});
    for (const char* path : {"/drop/memo.wav", "/drop/7/memo.wav"}) {
      file.Sounds[path] = {.samples = 80'000};
    }
  }
};

TEST_F(ImportPreviewTest, DirectoryNoughtIsTheImportFolderItself) {
  waitingWork.AlertTicks = 7;
  form.listViewImport.RowClick(0);
  EXPECT_EQ(opening.SelectedImportFile, "memo.wav");
  EXPECT_EQ(documentInWork.CurrentDocumentPath, "/drop/memo.wav");
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_FALSE(form.cmdPlay.Enabled);
  EXPECT_EQ(waitingWork.AlertTicks, 0);
}

TEST_F(ImportPreviewTest, AnyOtherDirectoryIsAFolderBelowIt) {
  form.txtWavImportSubdirectory.Value = "7";
  form.listViewImport.RowClick(0);
  EXPECT_EQ(documentInWork.CurrentDocumentPath, "/drop/7/memo.wav");
  EXPECT_TRUE(engine.IsPlaying);
}

TEST_F(ImportPreviewTest, DoubleClickDoesNoMoreThanAClick) {
  form.listViewImport.RowClick(0);
  form.listViewImport.DoubleClick(0);
  EXPECT_TRUE(engine.IsPlaying);
  EXPECT_TRUE(form.frameFiles.Visible);
  EXPECT_EQ(file.Seeks.size(), 2u);
}

TEST_F(ImportPreviewTest, NothingSelectedYetDoesNothing) {
  opening.PreviewImportDocument("0");
  EXPECT_EQ(file.OpenCount, 0);
}

TEST_F(ImportPreviewTest, FileThatIsGoneIsSaidToBeSo) {
  file.OutOfReach = {"/drop/memo.wav"};
  form.listViewImport.RowClick(0);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - File Not Found");
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ImportPreviewTest, FileWithoutAudioSaysSo) {
  file.Sounds["/drop/memo.wav"] = {.samples = 0};
  form.listViewImport.RowClick(0);
  EXPECT_EQ(prompts, std::vector<std::string>{"EmptyDocErr"});
  EXPECT_FALSE(form.cmdComplete.Enabled);
}

TEST_F(ImportPreviewTest, HeaderClickSortsByTheTextOfTheColumnAndFlipsTheOrder) {
  form.listViewImport.HeaderClick(forms::import_column::FileName);
  EXPECT_EQ(form.listViewImport.Order(), forms::SortOrder::Descending);
  form.listViewImport.HeaderClick(forms::import_column::FileName);
  EXPECT_EQ(form.listViewImport.TextAt(0, forms::import_column::FileName), "alpha.wav");
}

}  // namespace
}  // namespace tavlo::test
