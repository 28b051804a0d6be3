#include <gtest/gtest.h>

#include <QApplication>
#include <string>

#include "accessibility/listening_desk.h"
#include "ftp_view/ftp_states.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

class WithoutAMouse : public ListeningDesk {
 protected:
  static bool HasFocus(const char* control) {
    return Until([&] { return Focus() == control; });
  }
};

TEST_F(WithoutAMouse, TabReachesEveryControlOfTheDeck) { ExpectTabReachesEverything(); }

TEST_F(WithoutAMouse, TheMiniPlayerIsReachedByTabAndWorkedByItsKeys) {
  Select("Brown");
  Play();
  ASSERT_TRUE(program->Until([] { return !Main().frameFiles.Visible; }));
  ExpectTabReachesEverything();
  ASSERT_TRUE(TabTo("cmdForward"));
  Keys({' '});
  EXPECT_TRUE(Told("Winding forward"));
  EXPECT_TRUE(HasFocus("txtFocus"));
  EXPECT_EQ(Tab({keys::kShift, keys::kTab}), "cmdForward");
  Keys({keys::kAlt, 's'});
  ASSERT_TRUE(program->Until([] { return !Main().DeckRuns; }));
  ASSERT_TRUE(TabTo("Slider1"));
  Keys({keys::kRight});
  EXPECT_TRUE(program->Until([] { return Main().Slider1.Value == 5; }));
  Keys({keys::kAlt, 'm'});
  EXPECT_TRUE(program->Until([] { return Main().Slider1.Value == 0; }));
  SkipDocument();
}

TEST_F(WithoutAMouse, TabReachesEveryControlOfEveryPageOfTheConfiguration) {
  OpenConfiguration();
  ExpectTabReachesEverything();
  for (const std::uint32_t page : {'e', 'm', 'p', 'f', 'k'}) {
    const int before =
        program->Ask([] { return Configuration().tabConfiguration.ListIndex.Get(); });
    Keys({keys::kAlt, page});
    EXPECT_TRUE(
        program->Until([&] { return Configuration().tabConfiguration.ListIndex != before; }));
    ExpectTabReachesEverything();
  }
  CloseConfiguration();
}

TEST_F(WithoutAMouse, TabReachesEveryControlOfTheImportView) {
  Keys({keys::kAlt, 'v'});
  Keys({'i'});
  ASSERT_TRUE(program->Until([] { return Main().frameImport.Visible && Main().mnuView.Enabled; }));
  ExpectTabReachesEverything();
  ASSERT_TRUE(TabTo("scrollImportWavSubDirectories"));
  Keys({keys::kRight});
  EXPECT_TRUE(program->Until([] { return Main().txtWavImportSubdirectory.Value.Get() == "1"; }));
  EXPECT_TRUE(HasFocus("scrollImportWavSubDirectories"));
  Keys({keys::kHome});
  EXPECT_TRUE(program->Until([] { return Main().txtWavImportSubdirectory.Value.Get() == "0"; }));
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  EXPECT_TRUE(program->Until([] { return Main().frameInQueue.Visible && Main().mnuFile.Enabled; }));
}

TEST_F(WithoutAMouse, FilesOfAServerAreChosenByKeys) {
  Keys({keys::kAlt, 'v'});
  Keys({'t'});
  ASSERT_TRUE(program->Until([] { return Main().frameFtp.Visible && Main().mnuView.Enabled; }));
  FtpStates states(Main());
  program->Do([&] {
    states.Idle();
    states.Listed(FtpStates::UsualNames());
    states.Chosen(1);
  });
  ExpectTabReachesEverything();
  ASSERT_TRUE(TabTo("listFtpList"));
  Keys({keys::kDown});
  Keys({keys::kReturn});
  EXPECT_TRUE(program->Until([] { return Main().listFtpDownloadList.Rows().size() == 2; }));
  EXPECT_EQ(program->Ask([] { return Main().listFtpDownloadList.TextAt(1, 0); }),
            FtpStates::UsualNames()[2]);
  EXPECT_TRUE(HasFocus("listFtpList"));
  program->Do([&] { states.Idle(); });
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  EXPECT_TRUE(program->Until([] { return Main().frameInQueue.Visible && Main().mnuFile.Enabled; }));
}

TEST_F(WithoutAMouse, AKeyOfOtherWindowsIsChosenByKeysAndSaid) {
  OpenConfiguration();
  Keys({keys::kAlt, 'k'});
  ASSERT_TRUE(program->Until([] { return Configuration().frameConfigKeys.Visible.Get(); }));
  ASSERT_TRUE(TabTo("txtToEndKey"));
  const auto described = [] { return reader->Find("text", "Key for To the end").description; };
  EXPECT_EQ(described(), "No key");
  Keys({keys::kF5});
  EXPECT_TRUE(Until([&] { return described().starts_with("F5"); })) << described();
  Keys({'q'});
  EXPECT_TRUE(Told("F5. Q is needed for writing."));
  Keys({keys::kBackspace});
  EXPECT_TRUE(Told("No key"));
  EXPECT_EQ(Tab(), "txtSlowerKey");
  CloseConfiguration();
}

TEST_F(WithoutAMouse, ThePedalIsChosenByKeys) {
  OpenConfiguration();
  ASSERT_TRUE(TabTo("optionSerial"));
  Keys({' '});
  EXPECT_TRUE(program->Until([] {
    return Configuration().optionSerial.Value && Configuration().txtSerialFootPedalComPort.Enabled;
  }));
  ASSERT_TRUE(TabTo("txtSerialFootPedalComPort"));
  Keys({keys::kEnd});
  Keys({'1'});
  EXPECT_TRUE(program->Until(
      [] { return Configuration().txtSerialFootPedalComPort.Value.Get() == "7001"; }));
  ASSERT_TRUE(TabTo("optionUSB"));
  Keys({' '});
  EXPECT_TRUE(program->Until([] { return Configuration().optionUSB.Value.Get(); }));
  ASSERT_TRUE(TabTo("chkSwapRewindForwardPedals"));
  const auto letter = [] { return Configuration().lblLeftPedal.Value.Get(); };
  const std::string before = program->Ask(letter);
  Keys({' '});
  EXPECT_TRUE(program->Until([&] { return letter() != before; }));
  ASSERT_EQ(Tab({keys::kShift, keys::kTab}), "chkSwapRewindForwardPedals");
  Keys({' '});
  EXPECT_TRUE(program->Until([&] { return letter() == before; }));
  CloseConfiguration();
}

TEST_F(WithoutAMouse, TabGoesOnFromTheControlThatGaveTheKeyboardAway) {
  program->Do([] { Main().cmdNormalSpeed.Enabled = true; });
  ASSERT_TRUE(TabTo("cmdNormalSpeed"));
  Keys({' '});
  EXPECT_TRUE(HasFocus("txtFocus"));
  EXPECT_EQ(Tab(), "sldVol");

  ASSERT_TRUE(TabTo("cmdNormalSpeed"));
  Keys({' '});
  EXPECT_TRUE(HasFocus("txtFocus"));
  EXPECT_EQ(Tab({keys::kShift, keys::kTab}), "cmdNormalSpeed");
}

TEST_F(WithoutAMouse, ArrowsSelectInTheListAndTheMenuKeySortsIt) {
  const auto chosen = [](const std::string& author) {
    return program->Until([&] { return Main().StatusBar1.Panels.Get()[2] == author; });
  };
  Select("Brown");
  Keys({keys::kDown});
  EXPECT_TRUE(chosen("Okafor"));
  EXPECT_EQ(Focus(), "listViewInQueue");
  EXPECT_TRUE(program->Until([] { return Main().cmdPlay.Enabled.Get(); }));

  Keys({keys::kMenu});
  EXPECT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
  for (int entry = 0; entry < 3; ++entry) Keys({keys::kDown});
  Keys({keys::kReturn});
  EXPECT_TRUE(program->Until([] { return Main().listViewInQueue.SortColumn() == 2; }));
}

TEST_F(WithoutAMouse, ASliderTakesStepAfterStep) {
  ASSERT_TRUE(TabTo("sldVol"));
  const int before = program->Ask([] { return Main().sldVol.Value.Get(); });
  Keys({keys::kLeft});
  Keys({keys::kLeft});
  EXPECT_TRUE(program->Until([&] { return Main().sldVol.Value == before - 2; }));
  Keys({keys::kPageUp});
  EXPECT_TRUE(program->Until([&] { return Main().sldVol.Value > before; }));

  OpenConfiguration();
  forms::Range& slider = Configuration().sliderWindIncrement;
  const int first = program->Ask([&] { return slider.Value.Get(); });
  ASSERT_TRUE(TabTo("sliderWindIncrement"));
  Keys({keys::kRight});
  Keys({keys::kRight});
  EXPECT_TRUE(program->Until([&] { return slider.Value == first + 2; }));
  EXPECT_EQ(Focus(), "sliderWindIncrement");
  Keys({keys::kLeft});
  Keys({keys::kLeft});
  EXPECT_TRUE(program->Until([&] { return slider.Value == first; }));
  CloseConfiguration();
}

}  // namespace
}  // namespace tavlo::test
