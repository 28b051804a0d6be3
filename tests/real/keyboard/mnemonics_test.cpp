#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/keys.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

/// The deck's keys with captions; each notes its letter when it is pressed.
struct Mnemonics : testing::TestWithParam<bool> {
  Mnemonics() {
    const std::vector<std::pair<forms::Command*, char>> keys = {
        {&shown.main.cmdPlay, 'p'},     {&shown.main.cmdSkip, 'k'},
        {&shown.main.cmdSave, 'a'},     {&shown.main.cmdComplete, 'c'},
        {&shown.main.cmdEQ, 'e'},       {&shown.main.cmdNormalSpeed, 'm'},
        {&shown.main.mnuViewQueue, 'q'}};
    for (const auto& [key, letter] : keys) {
      key->OnPress = [this, letter = letter] { pressed += letter; };
      key->Enabled = true;
    }
    shown.main.cmdStop.OnPress = [this] { pressed += "stop "; };
    shown.main.cmdImportCompleteSnipetStop.OnPress = [this] { pressed += "preview "; };
    shown.ShowMain();
  }

  /// The shape of the window while a document is in work.
  void Shrink() {
    for (forms::Control* const locked : std::initializer_list<forms::Control*>{
             &shown.main.mnuFile, &shown.main.mnuView, &shown.main.mnuReport}) {
      locked->Enabled = false;
    }
    shown.main.frameFiles.Visible = false;
    shown.main.frmMain.Height = shown.main.frmMain.AboveContent + shown.main.framePlayer.Height;
    shown.typist.Rest(300);
  }
  std::string PressedBy(const std::string& letters) {
    pressed.clear();
    for (const char letter : letters) {
      shown.typist.Keys({keys::kAlt, static_cast<std::uint32_t>(letter)});
    }
    shown.typist.Until([&] { return pressed.size() >= letters.size(); });
    return pressed;
  }

  ShownWindows shown;
  std::string pressed;
};

TEST_P(Mnemonics, PressTheKeysOfTheDeck) {
  if (GetParam()) Shrink();
  EXPECT_EQ(PressedBy("pkacme"), "pkacme");
}

TEST_P(Mnemonics, PressWhicheverStopShows) {
  if (GetParam()) Shrink();
  shown.PlayDocument();
  shown.typist.Rest();
  EXPECT_EQ(PressedBy("s"), "stop ");
  shown.main.cmdStop.Visible = false;
  shown.main.cmdImportCompleteSnipetStop.Enabled = true;
  shown.typist.Rest();
  EXPECT_EQ(PressedBy("s"), "preview ");
}

INSTANTIATE_TEST_SUITE_P(InBothShapes, Mnemonics, testing::Bool(),
                         [](const auto& shape) { return shape.param ? "MiniPlayer" : "Full"; });

using MenuMnemonics = Mnemonics;

TEST_P(MenuMnemonics, OpenAMenuOnlyWhileItIsEnabled) {
  shown.typist.Keys({keys::kAlt, 'v'});
  shown.typist.Keys({'q'});
  EXPECT_TRUE(shown.typist.Until([&] { return pressed == "q"; }));
  Shrink();
  shown.typist.Keys({keys::kAlt, 'v'});
  shown.typist.Keys({'q'});
  shown.typist.Keys({keys::kEscape});
  EXPECT_EQ(pressed, "q");
}

INSTANTIATE_TEST_SUITE_P(FromTheFullShape, MenuMnemonics, testing::Values(false));

TEST(ConfigurationMnemonics, LeadToThePagesThatHaveSomethingAndClose) {
  ShownWindows shown;
  int closed = 0;
  shown.configuration.mnuClose.OnPress = [&] { ++closed; };
  shown.configuration.frmConfiguration.Centre();
  shown.configuration.frmConfiguration.Visible = true;
  shown.typist.Rest(300);
  shown.configuration.tabConfiguration.ListIndex = 1;
  shown.typist.Rest();
  shown.typist.Keys({keys::kAlt, 's'});
  EXPECT_TRUE(
      shown.typist.Until([&] { return shown.configuration.tabConfiguration.ListIndex == 0; }));
  shown.typist.Keys({keys::kAlt, 'c'});
  EXPECT_TRUE(shown.typist.Until([&] { return closed == 1; }));
}

}  // namespace
}  // namespace tavlo::test
