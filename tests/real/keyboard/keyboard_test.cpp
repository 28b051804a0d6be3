#include <gtest/gtest.h>

#include <QApplication>
#include <QWidget>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>

#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

/// The real program with three dictations and a preview so long that none of them ends, or is wound
/// through, before the hands are there. A key that was pressed keeps the keyboard unless a rule
/// sends it away, and the next blank of the typist's would press it again.
struct Keyboard : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.Start());
    home.MakeRoot({{"AutoPreview", std::to_string(kSeconds)},
                   {"AudioPromptsFlag", "N"},
                   {"WindIncrement", "1"},
                   {"AccelerateWindIncrementFlag", "N"}});
    const std::string document = WaveBytes(Chirp(kSeconds * kRate, kRate));
    for (const std::string& name : {first, second, third}) home.AddToQueue(name, document);
    program = std::make_unique<DrivenProgram>(home);
  }

  std::string Holder() {
    return program->Ask([]() -> std::string {
      const QWidget* const widget = QApplication::focusWidget();
      return widget ? widget->objectName().toStdString() : "";
    });
  }
  bool NoControlHasIt() {
    return Until([this] { return Holder() == "txtFocus"; });
  }
  /// Gives a key the keyboard and clicks it.
  void Click(const char* key) {
    EXPECT_TRUE(Until([&] {
      program->Do([&] {
        for (QWidget* const widget : QApplication::allWidgets()) {
          if (widget->objectName() == key && widget->isVisible()) widget->setFocus();
        }
      });
      return Holder() == key;
    })) << key;
    program->Click(key);
  }
  void ExpectGivenAwayBy(std::initializer_list<const char*> keys) {
    for (const char* const key : keys) {
      Click(key);
      EXPECT_TRUE(NoControlHasIt()) << key << " leaves it to " << Holder();
    }
  }
  void Play(const std::string& name) {
    program->ClickRow(program->RowOf(name));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    ExpectGivenAwayBy({"cmdPlay"});
  }
  void ExpectReadyAndGivenAway(const char* key) {
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
    EXPECT_TRUE(NoControlHasIt()) << key << " leaves it to " << Holder();
  }
  void Run(const std::function<void()>& script) {
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      script();
      if (program->Ask([&] { return program->Main().cmdSkip.Enabled.Get(); })) {
        program->Click("cmdSkip");
      }
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }
  void ChooseInMenu(std::uint32_t menu, std::uint32_t entry) {
    program->Keys({keys::kAlt, menu});
    ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
    program->Keys({entry});
  }

  static constexpr int kRate = 8000;
  static constexpr int kSeconds = 600;
  const std::string first = DocumentName("First", 1);
  const std::string second = DocumentName("Second", 2);
  const std::string third = DocumentName("Third", 3);
  SoundServer server;
  Home home;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(Keyboard, IsGivenAwayByEveryKeyOfTheMainWindow) {
  Run([&] {
    EXPECT_TRUE(NoControlHasIt());
    Click("cmdUpdateFileList");
    ExpectReadyAndGivenAway("cmdUpdateFileList");
    program->ClickRow(program->RowOf(first));
    ASSERT_TRUE(program->Until([&] { return program->Main().DeckRuns.Get(); }));
    ExpectGivenAwayBy({"cmdImportCompleteSnipetStop"});
    Play(first);
    ExpectGivenAwayBy({"cmdStop", "cmdForward", "cmdStop", "cmdRewind", "cmdSkipBeg", "cmdSkipEnd",
                       "cmdNormalSpeed"});
    Click("cmdComplete");
    ExpectReadyAndGivenAway("cmdComplete");
    Play(second);
    Click("cmdSave");
    ExpectReadyAndGivenAway("cmdSave");
    Play(third);
    Click("cmdSkip");
    ExpectReadyAndGivenAway("cmdSkip");
  });
}

TEST_F(Keyboard, IsGivenAwayByEveryBoxAndKeyOfTheConfiguration) {
  Run([&] {
    ChooseInMenu('f', 'c');
    const forms::Window& configuration = program->Windows().configuration.frmConfiguration;
    ASSERT_TRUE(program->Until([&] { return configuration.Visible.Get(); }));
    ASSERT_TRUE(NoControlHasIt());
    ExpectGivenAwayBy({"chkAccelerateWindIncrement", "chkMinimizeMiniPlayer", "chkAlwaysOnTop",
                       "chkAutoQueueJob", "cmdCenterMiniPlayer", "chkAudioPrompts",
                       "chkShowCustomDisplay", "chkAutoImportMode", "cmdWavConvMode", "sliderABS",
                       "sliderAutoPreview", "sliderWindIncrement", "sldPromptVol",
                       "chkAutoRefreshMode"});
    ExpectGivenAwayBy({"chkAutoRefreshMode", "chkWorkWaitingAlertMode", "optNewWorkWaitingAllJobs",
                       "optNewWorkWaitingPriority", "chkWorkWaitingAlertMode"});
    program->Keys({keys::kAlt, 'k'});
    ExpectGivenAwayBy({"chkBusSaysNothing"});
    program->Keys({keys::kAlt, 'c'});
    ASSERT_TRUE(program->Until([&] { return program->Main().frmMain.Visible.Get(); }));
    EXPECT_TRUE(NoControlHasIt()) << Holder();
  });
}

}  // namespace
}  // namespace tavlo::test
