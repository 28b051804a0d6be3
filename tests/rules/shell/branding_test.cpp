#include "shell/branding.h"

#include <gtest/gtest.h>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

using forms::By;

struct BrandingTest : testing::Test, DeckBench {
  void StartWith(const std::string& field, const std::string& value) {
    Drop(Document().At("3 9 2004 14 5 12").Name());
    DeckBench::StartWith({{field, value}});
  }
  std::string ListedDate() { return form.listViewInQueue.TextAt(0, forms::document_column::Date); }
};

TEST_F(BrandingTest, BriselRowShowsItsPictureAndNameWithTheMonthFirst) {
  StartWith("OEMLogo", "KRT");
  EXPECT_TRUE(form.picBriselBitMap.Visible);
  EXPECT_TRUE(form.lblBriselName.Visible);
  EXPECT_FALSE(form.picSorelLogo.Visible);
  EXPECT_EQ(ListedDate(), "03/09/2004");
}

TEST_F(BrandingTest, SorelRowShowsItsLogoAndDatesDayFirst) {
  StartWith("OEMLogo", "SorelTek");
  EXPECT_FALSE(form.picBriselBitMap.Visible);
  EXPECT_FALSE(form.lblBriselName.Visible);
  EXPECT_TRUE(form.picSorelLogo.Visible);
  EXPECT_EQ(ListedDate(), "09/03/2004");
}

TEST_F(BrandingTest, UnknownRowShowsNoExtraPictureAndTheMonthFirst) {
  StartWith("OEMLogo", "Somebody");
  EXPECT_FALSE(form.picBriselBitMap.Visible);
  EXPECT_FALSE(form.lblBriselName.Visible);
  EXPECT_FALSE(form.picSorelLogo.Visible);
  EXPECT_EQ(ListedDate(), "03/09/2004");
  EXPECT_EQ(form.frmMain.Caption.Get(), "Tavlo Deck");
}

TEST_F(BrandingTest, AboutBoxDescribesTheProgram) {
  StartWith("OEMLogo", "");
  EXPECT_EQ(deck.windows.about.lblAboutDescription.Value.Get(),
            "Retrieve and play audio files from digital portable recorders, pc dictate stations, "
            "digital dictation systems, and ftp sites");
}

TEST_F(BrandingTest, LineOfTheUsersOwnIsShownUntilItIsSwitchedOff) {
  StartWith("CustomDisplay", "Ward 7");
  EXPECT_TRUE(form.lblCustomDisplay.Visible);
  EXPECT_EQ(form.lblCustomDisplay.Value.Get(), "Ward 7");
  form.mnuConfiguration.Press(By::Hand);
  config.frmConfiguration.Activate();
  config.chkShowCustomDisplay.Click();
  EXPECT_FALSE(form.lblCustomDisplay.Visible);
  config.chkShowCustomDisplay.Click();
  EXPECT_TRUE(form.lblCustomDisplay.Visible);
}

TEST_F(BrandingTest, LineThatIsSwitchedOffIsNotShownAtStart) {
  StartWith("ShowCustomDisplay", "N");
  EXPECT_FALSE(form.lblCustomDisplay.Visible);
}

}  // namespace
}  // namespace tavlo::test
