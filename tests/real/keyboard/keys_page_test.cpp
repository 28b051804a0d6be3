#include <gtest/gtest.h>

#include <QApplication>
#include <functional>
#include <initializer_list>
#include <string>

#include "platform/qt/key_box.h"
#include "remote/afar_action.h"
#include "settings/settings_hand.h"
#include "support/keys.h"
#include "support/other_program.h"
#include "support/screen.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using remote::AfarAction;

constexpr std::uint32_t kF7 = 0xFFC4;
constexpr std::uint32_t kDelete = 0xFFFF;
constexpr std::uint32_t kAudioPlay = 0x1008FF14;
constexpr std::uint32_t kOdiaeresis = 0x00F6;
constexpr std::uint32_t kAltGr = 0xFE03;

/// The real program, whose keys for other windows somebody chooses by pressing them.
class KeysPage : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.Start());
    home_.MakeRoot(QuietSettings({{"SaveKey", "CTRL+ALT+s"}}));
  }
  void TearDown() override { EXPECT_EQ(RunShell("setxkbmap us"), 0); }

  /// One run of the program, whose page of the keys is open.
  void Run(const std::function<void()>& script) {
    DrivenProgram program(home_);
    program_ = &program;
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      SettingsHand hand(program);
      hand.OpenConfiguration();
      hand.TurnTo(hand.Form().frameConfigKeys);
      script();
      program.Keys({keys::kEscape});
      ASSERT_TRUE(program.Until([&] { return !hand.Form().frmConfiguration.Visible; }));
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }

  forms::KeyRow& Row(AfarAction action) {
    return program_->Windows().configuration.keys[remote::IndexOf(action)];
  }
  std::string KeyOf(AfarAction action) {
    return program_->Ask([&] { return Row(action).txtKey.Value.Get(); });
  }
  std::string WordsIn(AfarAction action) {
    return program_->Ask([&]() -> std::string {
      const auto* const box = dynamic_cast<platform::qt::KeyBox*>(WidgetOf(Row(action).txtKey));
      return box ? box->Words().toStdString() : "no box";
    });
  }
  /// Clicks the box of an action and presses the keys.
  void PressFor(AfarAction action, std::initializer_list<std::uint32_t> keys) {
    program_->Click(Row(action).txtKey.Name.c_str());
    program_->Keys(keys);
  }
  void ExpectChosen(AfarAction action, std::initializer_list<std::uint32_t> keys,
                    const std::string& text, const std::string& words) {
    PressFor(action, keys);
    EXPECT_TRUE(program_->Until([&] { return Row(action).txtKey.Value.Get() == text; }))
        << KeyOf(action);
    EXPECT_EQ(WordsIn(action), words);
  }
  void ExpectRefused(AfarAction action, std::initializer_list<std::uint32_t> keys,
                     const std::string& why) {
    const std::string before = KeyOf(action);
    PressFor(action, keys);
    EXPECT_TRUE(program_->Until([&] { return Row(action).lblKeyState.Value.Get() == why; }))
        << program_->Ask([&] { return Row(action).lblKeyState.Value.Get(); });
    EXPECT_EQ(KeyOf(action), before) << why;
  }

  SoundServer server_;
  Home home_;
  DrivenProgram* program_ = nullptr;
};

TEST_F(KeysPage, TakesTheKeysThatArePressedAndShowsThemAgainAfterARestart) {
  Run([&] {
    EXPECT_EQ(WordsIn(AfarAction::Save), "Ctrl+Alt+S");
    EXPECT_EQ(WordsIn(AfarAction::Complete), "none");
    ExpectChosen(AfarAction::PlayStop, {keys::kF4}, "F4", "F4");
    ExpectChosen(AfarAction::PlayHeld, {keys::kControl, kF7}, "CTRL+F7", "Ctrl+F7");
    ExpectChosen(AfarAction::ToEnd, {keys::kControl, keys::kShift, 'a'}, "CTRL+SHIFT+a",
                 "Ctrl+Shift+A");
    ExpectChosen(AfarAction::Skip, {kAudioPlay}, "XF86AudioPlay", "AudioPlay");
    ExpectChosen(AfarAction::Save, {kDelete}, "", "Press a key");
    ExpectChosen(AfarAction::Slower, {keys::kAlt, 's'}, "ALT+s", "Alt+S");
  });
  Run([&] {
    EXPECT_EQ(WordsIn(AfarAction::PlayStop), "F4");
    EXPECT_EQ(WordsIn(AfarAction::PlayHeld), "Ctrl+F7");
    EXPECT_EQ(WordsIn(AfarAction::ToEnd), "Ctrl+Shift+A");
    EXPECT_EQ(WordsIn(AfarAction::Skip), "AudioPlay");
    EXPECT_EQ(WordsIn(AfarAction::Save), "none");
    EXPECT_EQ(WordsIn(AfarAction::Slower), "Alt+S");
  });
}

TEST_F(KeysPage, RefusesWhatIsNeededForWritingAndKeepsTheKeyThatStands) {
  Run([&] {
    ExpectChosen(AfarAction::PlayStop, {keys::kF4}, "F4", "F4");
    ExpectRefused(AfarAction::PlayStop, {'q'}, "Q is needed for writing.");
    ExpectRefused(AfarAction::PlayStop, {keys::kReturn}, "Enter is needed for writing.");
    ExpectRefused(AfarAction::PlayStop, {' '}, "Space is needed for writing.");
    ExpectRefused(AfarAction::PlayStop, {keys::kLeft}, "Left is needed for writing.");
    ExpectRefused(AfarAction::PlayStop, {keys::kShift, 'q'}, "Shift+Q is needed for writing.");
    EXPECT_EQ(WordsIn(AfarAction::PlayStop), "F4");
  });
}

TEST_F(KeysPage, RefusesTheKeyOfAnotherActionAndNamesThat) {
  Run([&] {
    ExpectChosen(AfarAction::PlayStop, {keys::kF4}, "F4", "F4");
    ExpectRefused(AfarAction::Faster, {keys::kF4}, "F4 is the key of \"Play, and stop again\".");
    ExpectChosen(AfarAction::PlayStop, {keys::kBackspace}, "", "Press a key");
    ExpectChosen(AfarAction::Faster, {keys::kF4}, "F4", "F4");
  });
}

TEST_F(KeysPage, TabWalksOverItAndModifiersAloneChooseNothing) {
  Run([&] {
    PressFor(AfarAction::PlayStop, {keys::kControl});
    program_->Keys({keys::kShift});
    program_->Keys({keys::kAlt});
    program_->Keys({keys::kTab});
    EXPECT_TRUE(program_->Until([] {
      const QWidget* const holder = QApplication::focusWidget();
      return holder && holder->objectName() == "txtPlayHeldKey";
    }));
    EXPECT_EQ(KeyOf(AfarAction::PlayStop), "");
    EXPECT_EQ(program_->Ask([&] { return Row(AfarAction::PlayStop).lblKeyState.Value.Get(); }), "");
  });
}

TEST_F(KeysPage, KnowsTheKeysOfAGermanKeyboard) {
  ASSERT_EQ(RunShell("setxkbmap de"), 0);
  Run([&] {
    ExpectChosen(AfarAction::Complete, {keys::kControl, kOdiaeresis}, "CTRL+odiaeresis",
                 "Ctrl+\u00D6");
    ExpectRefused(AfarAction::Complete, {kOdiaeresis}, "\u00D6 is needed for writing.");
    ExpectRefused(AfarAction::Skip, {kAltGr, 'q'}, "at is needed for writing.");
    ExpectChosen(AfarAction::Skip, {keys::kControl, 'z'}, "CTRL+z", "Ctrl+Z");
  });
}

}  // namespace
}  // namespace tavlo::test
