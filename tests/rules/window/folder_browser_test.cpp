#include "window/folder_browser.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "support/settings_bench.h"
#include "support/simulated_folders.h"

namespace tavlo::test {
namespace {

struct FolderBrowserTest : testing::Test, SettingsBench {
  FolderBrowserTest() {
    config.frmConfiguration.Visible = true;
    config.frameConfigAlternatePath.Visible = true;
    browser.OfferPlaces();
  }

  static std::string Rows(const forms::Table& table) {
    std::string rows;
    for (int row = 0; row < static_cast<int>(table.Rows().size()); ++row) {
      if (row > 0) rows += ", ";
      rows += table.TextAt(row, 0);
    }
    return rows;
  }
  std::string Folders() const { return Rows(config.Dir1); }
  std::string Places() const { return Rows(config.Drive1); }
  const std::string& Browsed() const { return config.lblBrowsedFolder.Value; }
  void EnterFolder(std::string_view name) {
    for (int row = 0; row < static_cast<int>(config.Dir1.Rows().size()); ++row) {
      if (config.Dir1.TextAt(row, 0) != name) continue;
      config.Dir1.RowClick(row);
      return config.Dir1.DoubleClick(row);
    }
    ADD_FAILURE() << "no folder " << name << " in " << Folders();
  }

  SimulatedFolders machine;
  window::FolderBrowser browser{config, machine};
};

TEST_F(FolderBrowserTest, BeginsAtHome) {
  EXPECT_EQ(Places(), "Home, Computer");
  EXPECT_EQ(config.Drive1.ListIndex, 0);
  EXPECT_EQ(Browsed(), "/home/typist");
  EXPECT_EQ(Folders(), ".., archive, Desk, work");
}

TEST_F(FolderBrowserTest, DoubleClickEntersAFolderAndTheFirstRowLeavesIt) {
  EnterFolder("work");
  EXPECT_EQ(Browsed(), "/home/typist/work");
  EXPECT_EQ(Folders(), "..");
  EnterFolder("..");
  EXPECT_EQ(Browsed(), "/home/typist");
}

TEST_F(FolderBrowserTest, RootHasNoWayUp) {
  config.Drive1.RowClick(1);
  EXPECT_EQ(Browsed(), "/");
  EXPECT_EQ(Folders(), "home, mnt");
  EnterFolder("home");
  EXPECT_EQ(Browsed(), "/home");
}

TEST_F(FolderBrowserTest, PlaceThatIsLeftCanBeChosenAgain) {
  EnterFolder("..");
  EXPECT_EQ(config.Drive1.ListIndex, 1);
  config.Drive1.RowClick(0);
  EXPECT_EQ(Browsed(), "/home/typist");
}

TEST_F(FolderBrowserTest, PlaceThatCannotBeReadDisablesTheFoldersUntilTheNextGoodOne) {
  machine.places.push_back({"Stick", "/media/stick"});
  browser.OfferPlaces();
  config.Drive1.RowClick(2);
  EXPECT_FALSE(config.Dir1.Enabled);
  EXPECT_EQ(Folders(), "");
  EXPECT_EQ(config.Dir1.WhenEmpty.Get(), "This place cannot be read");
  EXPECT_EQ(Browsed(), "/home/typist");
  config.Drive1.RowClick(1);
  EXPECT_TRUE(config.Dir1.Enabled);
  EXPECT_EQ(Folders(), "home, mnt");
}

TEST_F(FolderBrowserTest, PlaceThatCouldNotBeReadStaysChosenAndCanBeTriedAgain) {
  machine.places.push_back({"Stick", "/media/stick"});
  browser.OfferPlaces();
  config.Drive1.RowClick(2);
  browser.OfferPlaces();
  EXPECT_EQ(config.Drive1.ListIndex, 2);
  EXPECT_FALSE(config.Dir1.Enabled);
  machine.folders["/media/stick"] = {"voice"};
  config.Drive1.RowClick(2);
  EXPECT_TRUE(config.Dir1.Enabled);
  EXPECT_EQ(Browsed(), "/media/stick");
  EXPECT_EQ(Folders(), ".., voice");
}

TEST_F(FolderBrowserTest, PlaceThatShowsLeadsBackToItsTop) {
  EnterFolder("work");
  config.Drive1.RowClick(0);
  EXPECT_EQ(Browsed(), "/home/typist");
}

TEST_F(FolderBrowserTest, FolderThatCannotBeReadIsNamedAndNotEntered) {
  EnterFolder("Desk");
  ASSERT_EQ(loop.Shown.size(), 1U);
  EXPECT_EQ(loop.Shown[0].title, "Tavlo Deck - Configuration");
  EXPECT_EQ(loop.Shown[0].text, "This folder cannot be read:\n\n/home/typist/Desk");
  EXPECT_EQ(Browsed(), "/home/typist");
  EXPECT_EQ(Folders(), ".., archive, Desk, work");
  EXPECT_TRUE(config.Dir1.Enabled);
}

TEST_F(FolderBrowserTest, PlacesOfNowAreOfferedAndWhatIsBrowsedStays) {
  EnterFolder("work");
  machine.places = {{"Home", "/home/typist"}, {"Stick", "/media/stick"}, {"Computer", "/"}};
  browser.OfferPlaces();
  EXPECT_EQ(Places(), "Home, Stick, Computer");
  EXPECT_EQ(config.Drive1.ListIndex, 0);
  EXPECT_EQ(Browsed(), "/home/typist/work");
}

TEST_F(FolderBrowserTest, InnerPlaceIsTheOneThatIsBrowsed) {
  machine.places.push_back({"Work", "/home/typist/work"});
  browser.OfferPlaces();
  EXPECT_EQ(config.Drive1.ListIndex, 0);
  EnterFolder("work");
  EXPECT_EQ(config.Drive1.ListIndex, 2);
}

TEST_F(FolderBrowserTest, NothingToBeginAtOffersNothing) {
  machine.places.clear();
  config.lblBrowsedFolder.Value = "";
  browser.OfferPlaces();
  EXPECT_EQ(Places(), "");
  EXPECT_EQ(config.Drive1.ListIndex, -1);
}

}  // namespace
}  // namespace tavlo::test
