#include "forms/accessible_name.h"

#include <gtest/gtest.h>

#include <vector>

#include "forms/about_form.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "forms/splash_form.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using forms::AccessibleName;

struct AccessibleNameTest : testing::Test {
  /// All that stands on a window, panes on panes included.
  static std::vector<const forms::Control*> AllOf(const forms::Pane& pane) {
    std::vector<const forms::Control*> all;
    for (const forms::Control* const control : pane.Children()) {
      all.push_back(control);
      if (const auto* const inner = dynamic_cast<const forms::Pane*>(control)) {
        const auto more = AllOf(*inner);
        all.insert(all.end(), more.begin(), more.end());
      }
    }
    return all;
  }
  std::vector<const forms::Control*> Everything() const {
    std::vector<const forms::Control*> all;
    for (const forms::Window* const window :
         {&main.frmMain, &config.frmConfiguration, &splash.frmInitSplash, &about.frmAbout}) {
      const auto more = AllOf(*window);
      EXPECT_GT(more.size(), 2u) << window->Name;
      all.insert(all.end(), more.begin(), more.end());
    }
    return all;
  }

  SimulatedLoop loop;
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
  forms::SplashForm splash{loop};
  forms::AboutForm about{loop};
};

TEST_F(AccessibleNameTest, APaneKnowsWhatStandsOnItInTheOrderOfTheForm) {
  const auto all = AllOf(main.framePlayer);
  ASSERT_GT(all.size(), 20u);
  EXPECT_EQ(all.front(), &main.imageFaciaA);
  EXPECT_EQ(all.back(), &main.lblNotice);
  {
    const forms::Text passing(&main.framePlayer, "passing");
    EXPECT_EQ(main.framePlayer.Children().back(), &passing);
  }
  EXPECT_EQ(main.framePlayer.Children().back(), &main.lblNotice);
}

TEST_F(AccessibleNameTest, EveryCommandChoiceAndRangeHasATooltipAndAName) {
  int met = 0;
  const auto expect = [&met](const auto* control) {
    if (!control) return;
    ++met;
    EXPECT_NE(control->Tooltip.Get(), "") << control->Name;
    const std::string name = AccessibleName(*control);
    EXPECT_NE(name, "") << control->Name;
    EXPECT_EQ(name.find('&'), name.npos) << control->Name;
  };
  for (const forms::Control* const control : Everything()) {
    expect(dynamic_cast<const forms::Command*>(control));
    expect(dynamic_cast<const forms::Choice*>(control));
    expect(dynamic_cast<const forms::Range*>(control));
  }
  EXPECT_GT(met, 130);
}

TEST_F(AccessibleNameTest, TheValueOfEveryRangeHasAUnit) {
  int met = 0;
  for (const forms::Control* const control : Everything()) {
    const auto* const range = dynamic_cast<const forms::Range*>(control);
    if (!range) continue;
    ++met;
    EXPECT_NE(range->Bounds.heard.unit, "") << range->Name;
    EXPECT_NE(range->Bounds.heard.atMinimum, range->Bounds.heard.atMaximum) << range->Name;
  }
  EXPECT_GT(met, 35);
}

TEST_F(AccessibleNameTest, EveryListAndBoxHasAName) {
  for (const forms::Control* const control : Everything()) {
    if (const auto* const list = dynamic_cast<const forms::Table*>(control)) {
      EXPECT_NE(AccessibleName(*list), "") << list->Name;
    }
    const auto* const text = dynamic_cast<const forms::Text*>(control);
    const bool box = text && text->Visible && text->Value.Get().empty();
    if (box && text->Name.starts_with("txt")) {
      EXPECT_NE(AccessibleName(*text), "") << text->Name;
    }
  }
}

TEST_F(AccessibleNameTest, IsTheCaptionWithoutItsAmpersandElseTheTooltip) {
  EXPECT_EQ(AccessibleName(main.cmdComplete), "Complete");
  EXPECT_EQ(AccessibleName(main.cmdRewind), "Rewind");
  EXPECT_EQ(AccessibleName(config.cmdFtpFirst), "Go to the first server profile");
  EXPECT_EQ(AccessibleName(main.listViewInQueue), "Queue");
  EXPECT_EQ(AccessibleName(main.slPosition), "Slide to desired position in document");
}

TEST_F(AccessibleNameTest, TheNameOfABoxIsNotWhatIsWrittenInIt) {
  config.txtCustomDisplay.Tooltip = "My own line";
  EXPECT_EQ(AccessibleName(config.txtCustomDisplay), "Line of your own on the deck");
}

}  // namespace
}  // namespace tavlo::test
