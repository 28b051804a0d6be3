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

/// The branding alone, over settings that a test may change under it.
struct BrandRow : testing::Test {
  void StoreName(const std::string& name) {
    database.With("OEMLogo", name);
    branding.ApplyBranding();
  }

  SimulatedLoop loop;
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
  forms::AboutForm about{loop};
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  store::DocumentNames names{loop};
  shell::Branding branding{main, config, about, settings, names};
};

TEST_F(BrandingTest, BriselRowShowsItsPictureAndNameWithTheMonthFirst) {
  StartWith("OEMLogo", "KRT");
  EXPECT_TRUE(form.picBriselBitMap.Visible);
  EXPECT_TRUE(form.lblBriselName.Visible);
  EXPECT_FALSE(form.picSorelLogo.Visible);
  EXPECT_EQ(ListedDate(), "03/09/2004");
}

TEST_F(BrandingTest, LogosCarryTheNamesOfTheirResellers) {
  StartWith("OEMLogo", "KRT");
  EXPECT_EQ(form.picBriselBitMap.Tooltip.Get(), "Brisel");
  EXPECT_EQ(form.lblBriselName.Value.Get(), "Brisel");
  EXPECT_EQ(form.picSorelLogo.Tooltip.Get(), "SorelTek");
}

TEST_F(BrandingTest, SorelRowShowsItsLogoAndDatesDayFirst) {
  StartWith("OEMLogo", "SorelTek");
  EXPECT_FALSE(form.picBriselBitMap.Visible);
  EXPECT_FALSE(form.lblBriselName.Visible);
  EXPECT_TRUE(form.picSorelLogo.Visible);
  EXPECT_EQ(ListedDate(), "09/03/2004");
  ClickRow(0);
  EXPECT_EQ(form.StatusBar1.Panels.Get().back(), "09/03/2004");
}

TEST_F(BrandingTest, UnknownRowShowsNoExtraPictureAndTheMonthFirst) {
  StartWith("OEMLogo", "Somebody");
  EXPECT_FALSE(form.picBriselBitMap.Visible);
  EXPECT_FALSE(form.lblBriselName.Visible);
  EXPECT_FALSE(form.picSorelLogo.Visible);
  EXPECT_EQ(ListedDate(), "03/09/2004");
}

TEST_F(BrandRow, OfEveryNameHasTheCaptionOfTheProgram) {
  for (const char* const name : {"KRT", "SorelTek", "Somebody", ""}) {
    main.frmMain.Caption = "Another";
    StoreName(name);
    EXPECT_EQ(main.frmMain.Caption.Get(), "Tavlo Deck") << name;
  }
}

TEST_F(BrandRow, InOtherLettersIsUnknown) {
  for (const char* const name : {"krt", "SORELTEK", "SorelTek ", "Brisel"}) {
    StoreName("SorelTek");
    StoreName(name);
    EXPECT_FALSE(main.picBriselBitMap.Visible) << name;
    EXPECT_FALSE(main.picSorelLogo.Visible) << name;
    EXPECT_EQ(names.DateFormat, "MMDDYY") << name;
  }
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

TEST_F(BrandingTest, ClickOnTheBoxTakesTheLineThatWasTypedMeanwhileAndTheBrandThatIsStored) {
  StartWith("OEMLogo", "KRT");
  ASSERT_TRUE(
      deck.Built()->settings.Write(store::Table::GeneralSettings, 0, {{"OEMLogo", "SorelTek"}}));
  form.mnuConfiguration.Press(By::Hand);
  config.frmConfiguration.Activate();
  config.txtCustomDisplay.Change("Ward 8");
  EXPECT_NE(form.lblCustomDisplay.Value.Get(), "Ward 8");
  config.chkShowCustomDisplay.Click();
  EXPECT_FALSE(form.picBriselBitMap.Visible);
  EXPECT_FALSE(form.lblBriselName.Visible);
  EXPECT_TRUE(form.picSorelLogo.Visible);
  config.chkShowCustomDisplay.Click();
  EXPECT_EQ(form.lblCustomDisplay.Value.Get(), "Ward 8");
}

TEST_F(BrandingTest, SwitchingTheLineOffLeavesTheLogo) {
  StartWith("OEMLogo", "SorelTek");
  form.mnuConfiguration.Press(By::Hand);
  config.frmConfiguration.Activate();
  config.chkShowCustomDisplay.Click();
  EXPECT_FALSE(form.lblCustomDisplay.Visible);
  EXPECT_TRUE(form.picSorelLogo.Visible);
}

TEST_F(BrandRow, ThatCanNotBeReadAnyMoreStaysAsItIs) {
  StoreName("SorelTek");
  database.Without(store::Table::GeneralSettings, "OEMLogo");
  branding.ApplyBranding();
  EXPECT_TRUE(main.picSorelLogo.Visible);
  EXPECT_EQ(names.DateFormat, "DDMMYY");
}

TEST_F(BrandRow, ThatWasNeverReadIsNone) {
  database.Without(store::Table::GeneralSettings, "OEMLogo");
  branding.ApplyBranding();
  EXPECT_FALSE(main.picBriselBitMap.Visible);
  EXPECT_FALSE(main.picSorelLogo.Visible);
  EXPECT_EQ(names.DateFormat, "MMDDYY");
}

TEST_F(BrandRow, GivesWayToTheNextOneWhole) {
  StoreName("SorelTek");
  StoreName("KRT");
  EXPECT_TRUE(main.picBriselBitMap.Visible);
  EXPECT_TRUE(main.lblBriselName.Visible);
  EXPECT_FALSE(main.picSorelLogo.Visible);
  EXPECT_EQ(names.DateFormat, "MMDDYY");
}

TEST_F(BrandingTest, LineThatIsSwitchedOffIsNotShownAtStart) {
  StartWith("ShowCustomDisplay", "N");
  EXPECT_FALSE(form.lblCustomDisplay.Visible);
}

}  // namespace
}  // namespace tavlo::test
