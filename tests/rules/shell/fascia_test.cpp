#include "shell/fascia.h"

#include <gtest/gtest.h>

#include <string>

#include "support/deck_bench.h"

namespace tavlo::test {
namespace {

struct FasciaBench : DeckBench {
  /// Starts on a folder of these pictures with a number stored.
  void StartWith(const std::string& number, std::initializer_list<std::string> pictures) {
    for (const std::string& name : pictures) disk.WithFile(Folder() + name, "picture");
    DeckBench::StartWith({{"FaciaImagePointer", number}});
  }
  static std::string Folder() { return Path("/Fascia/"); }
  std::string Shown() const {
    EXPECT_EQ(form.imageFaciaA.Picture.Get(), form.imageFaciaB.Picture.Get());
    return form.imageFaciaA.Picture;
  }
  std::string StoredNumber() {
    return deck.Built()->settings.Read(store::Table::GeneralSettings, "FaciaImagePointer");
  }
};

struct FasciaTest : testing::Test, FasciaBench {};

TEST_F(FasciaTest, NamesAreListedInAnOrderThatAStoredNumberCanCountOn) {
  StartWith("1", {"Teal.png", "Ash.png", "Slate.png"});
  ASSERT_EQ(form.listFasciaImages.Rows().size(), 3u);
  EXPECT_EQ(form.listFasciaImages.TextAt(0, 0), "Ash.png");
  EXPECT_EQ(form.listFasciaImages.TextAt(2, 0), "Teal.png");
  EXPECT_FALSE(form.listFasciaImages.Visible);
}

TEST_F(FasciaTest, ListSaysWhatItIsFor) {
  EXPECT_EQ(form.listFasciaImages.Tooltip.Get(), "Choose the appearance of your Tavlo Deck");
}

TEST_F(FasciaTest, StoredPictureIsShownOnceTheWindowIsReady) {
  StartWith("2", {"Ash.png", "Slate.png"});
  EXPECT_EQ(Shown(), Folder() + "Slate.png");
  EXPECT_EQ(form.listFasciaImages.ListIndex, 1);
  EXPECT_EQ(deck.Built()->fascia.FasciaIndex, 2);
}

TEST_F(FasciaTest, ClickOnEitherHalfShowsTheNextPictureAndKeepsItsNumber) {
  StartWith("1", {"Ash.png", "Slate.png", "Teal.png"});
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), Folder() + "Slate.png");
  EXPECT_EQ(StoredNumber(), "2");
  form.imageFaciaB.Click();
  EXPECT_EQ(Shown(), Folder() + "Teal.png");
  EXPECT_EQ(StoredNumber(), "3");
}

TEST_F(FasciaTest, ClickPastTheEndReturnsToTheFirst) {
  StartWith("2", {"Ash.png", "Slate.png"});
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), Folder() + "Ash.png");
  EXPECT_EQ(StoredNumber(), "1");
  EXPECT_EQ(form.listFasciaImages.ListIndex, 0);
}

TEST_F(FasciaTest, ClickWithOnePictureReloadsIt) {
  StartWith("1", {"Ash.png"});
  const unsigned before = form.imageFaciaA.Version();
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), Folder() + "Ash.png");
  EXPECT_GT(form.imageFaciaA.Version(), before);
  EXPECT_EQ(StoredNumber(), "1");
}

TEST_F(FasciaTest, ChoiceSurvivesARestart) {
  StartWith("1", {"Ash.png", "Slate.png"});
  form.imageFaciaB.Click();
  FasciaBench next;
  next.StartWith(StoredNumber(), {"Ash.png", "Slate.png"});
  EXPECT_EQ(next.Shown(), Folder() + "Slate.png");
}

TEST_F(FasciaTest, EmptyFieldLeavesThePicturesAsTheyAre) {
  StartWith("", {"Ash.png"});
  EXPECT_EQ(Shown(), "");
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), Folder() + "Ash.png");
}

TEST_F(FasciaTest, EmptyListLeavesThePicturesAsTheyAre) {
  StartWith("3", {});
  EXPECT_EQ(Shown(), "");
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(form.listFasciaImages.ListIndex, -1);
}

TEST_F(FasciaTest, NumberBehindTheEndOfTheListLeavesThePicturesAndTheNextClickShowsTheFirst) {
  StartWith("9", {"Ash.png", "Slate.png"});
  EXPECT_EQ(Shown(), "");
  EXPECT_EQ(StoredNumber(), "9");
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), Folder() + "Ash.png");
  EXPECT_EQ(StoredNumber(), "1");
}

TEST_F(FasciaTest, NumberThatIsNoByteLeavesThePictures) {
  StartWith("2", {"Ash.png", "Slate.png"});
  for (const char* number : {"300", "-1"}) {
    form.txtFasciaImagePointer.Value = number;
    form.frmMain.Activate();
    EXPECT_EQ(Shown(), Folder() + "Slate.png") << number;
    EXPECT_EQ(deck.Built()->fascia.FasciaIndex, 2) << number;
  }
}

TEST_F(FasciaTest, MorePicturesThanAByteCountsReturnToTheFirst) {
  for (int i = 100; i < 400; ++i) disk.WithFile(Folder() + std::to_string(i) + ".png", "picture");
  StartWith("255", {});
  EXPECT_EQ(Shown(), Folder() + "354.png");
  form.imageFaciaA.Click();
  EXPECT_EQ(Shown(), Folder() + "100.png");
}

TEST_F(FasciaTest, EachActivationLoadsThePictureOfTheNumberAgain) {
  StartWith("1", {"Ash.png", "Slate.png"});
  form.txtFasciaImagePointer.Value = "2";
  EXPECT_EQ(Shown(), Folder() + "Ash.png");
  form.frmMain.Activate();
  EXPECT_EQ(Shown(), Folder() + "Slate.png");
  const unsigned before = form.imageFaciaB.Version();
  form.frmMain.Activate();
  EXPECT_GT(form.imageFaciaB.Version(), before);
}

TEST_F(FasciaTest, FolderThatCanNotBeReadGivesAnEmptyList) {
  disk.BreakListing(Folder());
  StartWith("1", {"Ash.png"});
  EXPECT_TRUE(form.listFasciaImages.Rows().empty());
  EXPECT_EQ(Shown(), "");
}

TEST_F(FasciaTest, ClickUnderAMessageBoxChangesNothing) {
  StartWith("1", {"Ash.png", "Slate.png"});
  loop.Expect({.meanwhile = [this] { form.imageFaciaA.Click(); }});
  loop.Show({.title = "Tavlo Deck", .text = "One moment"});
  EXPECT_EQ(Shown(), Folder() + "Ash.png");
}

}  // namespace
}  // namespace tavlo::test
