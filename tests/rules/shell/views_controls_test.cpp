// What every change from one view to another leaves on the main window.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "shell/views.h"
#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using forms::By;
using forms::MainForm;

/// A view and what it offers once it stands.
struct Offer {
  std::string word;
  forms::Command MainForm::*entry;
  forms::Pane MainForm::*frame;
  bool sound;      ///< There is something to play, to shape and to report on.
  bool transport;  ///< The keys of the transport are its own and stand disabled.
  std::vector<forms::Command MainForm::*> listKeys;
};

const std::vector<Offer>& Offers() {
  static const std::vector<Offer> offers = {
      {"Queue", &MainForm::mnuViewQueue, &MainForm::frameInQueue, true, true, {}},
      {"Complete",
       &MainForm::mnuViewCompleted,
       &MainForm::frameCompleted,
       true,
       true,
       {&MainForm::cmdMoveToQueue, &MainForm::cmdDeleteOneCompleted,
        &MainForm::cmdDeleteAllCompleted}},
      {"Import",
       &MainForm::mnuViewImport,
       &MainForm::frameImport,
       true,
       true,
       {&MainForm::cmdSendImportFileToQueue, &MainForm::cmdSendAllImportFilesToQueue,
        &MainForm::cmdDeleteOneImportFile, &MainForm::cmdDeleteAllImportFile}},
      {"Ftp", &MainForm::mnuViewFtp, &MainForm::frameFtp, false, false, {}},
  };
  return offers;
}

struct ViewControls : testing::TestWithParam<std::tuple<int, int>>, DeckBench {
  ViewControls() {
    Drop(Document().Name());
    StartUntilReady();
  }

  const Offer& From() const { return Offers()[static_cast<std::size_t>(std::get<0>(GetParam()))]; }
  const Offer& To() const { return Offers()[static_cast<std::size_t>(std::get<1>(GetParam()))]; }
  void Enter(const Offer& view) { (form.*view.entry).Press(By::Hand); }

  void ExpectOneFrame() {
    for (const Offer& other : Offers()) {
      EXPECT_EQ((form.*other.frame).Visible, &other == &To()) << other.word;
    }
    EXPECT_EQ(deck.Built()->mainWindow.CurrentView, To().word);
  }
  void ExpectTransport() {
    EXPECT_TRUE(form.cmdImportCompleteSnipetStop.Visible);
    EXPECT_FALSE(form.cmdImportCompleteSnipetStop.Enabled);
    if (!To().transport) return;
    for (const forms::Command* key : {&form.cmdSkipBeg, &form.cmdRewind, &form.cmdStop,
                                      &form.cmdPlay, &form.cmdForward, &form.cmdSkipEnd}) {
      EXPECT_FALSE(key->Enabled) << key->Name;
    }
  }
  void ExpectSoundShaping() {
    for (const forms::Control* control : std::initializer_list<const forms::Control*>{
             &form.cmdEQ, &form.cmdNormalSpeed, &form.sldVol, &form.Slider1, &form.mnuReport}) {
      EXPECT_EQ(control->Enabled, To().sound) << control->Name;
    }
    // No view begins with a document in which there could be a position.
    EXPECT_FALSE(form.slPosition.Enabled);
  }
  void ExpectListKeysEnabled(bool enabled) {
    for (forms::Command MainForm::*const key : To().listKeys) {
      EXPECT_EQ((form.*key).Enabled, enabled) << (form.*key).Name;
    }
  }
  void ExpectThawed() {
    for (const forms::Control* control : std::initializer_list<const forms::Control*>{
             &form.mnuFile, &form.mnuView, &form.listViewInQueue, &form.listViewCompleted,
             &form.listViewImport, &form.cmdUpdateFileList}) {
      EXPECT_TRUE(control->Enabled) << control->Name;
    }
    EXPECT_TRUE(form.cmdUpdateFileList.Visible);
    EXPECT_EQ(form.frmMain.MousePointer, forms::Pointer::Arrow);
    EXPECT_TRUE(deck.Built()->mainWindow.guards.ListsMayChange());
  }
};

TEST_P(ViewControls, AreAsTheViewSaysWhateverViewStoodBefore) {
  ClickRow(0);
  Enter(From());
  Enter(To());
  ExpectOneFrame();
  ExpectTransport();
  ExpectSoundShaping();
  ExpectListKeysEnabled(false);
  ExpectThawed();
}

TEST_P(ViewControls, OfAListWithEntriesAreOffered) {
  Keep(Document().By("Done").Name());
  Enter(From());
  disk.WithFile(Path("/Files/ImportQueue/memo.wav"));
  Enter(To());
  ExpectListKeysEnabled(true);
}

std::string NameOf(const testing::TestParamInfo<std::tuple<int, int>>& change) {
  const auto word = [](int view) { return Offers()[static_cast<std::size_t>(view)].word; };
  return word(std::get<0>(change.param)) + "Then" + word(std::get<1>(change.param));
}

INSTANTIATE_TEST_SUITE_P(Views, ViewControls,
                         testing::Combine(testing::Range(0, 4), testing::Range(0, 4)), NameOf);

}  // namespace
}  // namespace tavlo::test
