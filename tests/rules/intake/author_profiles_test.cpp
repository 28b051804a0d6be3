#include "intake/author_profiles.h"

#include <gtest/gtest.h>

#include "support/import_bench.h"

namespace tavlo::test {
namespace {

using forms::By;

struct AuthorProfilesTest : testing::Test, ImportBench {
  std::string Stored(int number, const char* field) {
    return database.Value(store::Table::ImportAuthors, number - 1, field);
  }
  void Unlink() { form.chkImportSynchronize.Value = false; }
  void Rename(const std::string& name) {
    form.txtImportAuthorLastName.Click();
    form.txtImportAuthorLastName.Change(name);
    form.frameImportDemographics.PointerMove();
  }
};

TEST_F(AuthorProfilesTest, BothListsHoldTheNamesInTheOrderOfTheTable) {
  for (const forms::Table* list : {&form.comboAuthorLastName, &config.comboAuthorLastName}) {
    ASSERT_EQ(list->Rows().size(), 26u);
    EXPECT_EQ(list->TextAt(0, 0), "Author1");
    EXPECT_EQ(list->TextAt(25, 0), "Author26");
  }
}

TEST_F(AuthorProfilesTest, AChosenProfileShowsInItsBoxesAndTurnsToItsDirectory) {
  Put(6, "memo.wav");
  form.comboAuthorLastName.RowClick(6);
  EXPECT_EQ(profiles.ImportProfileIndex, 6);
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "7");
  EXPECT_EQ(form.txtImportAuthorLastName.Value.Get(), "Author7");
  EXPECT_EQ(form.txtImportAuthorID.Value.Get(), "7");
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "6");
  EXPECT_EQ(form.scrollImportWavSubDirectories.Value, 7);
  EXPECT_EQ(Names(), std::vector<std::string>{"memo.wav"});
  EXPECT_TRUE(ButtonsAre(true));
  EXPECT_TRUE(FocusIsAway());
}

TEST_F(AuthorProfilesTest, WithoutTheLinkTheDirectoryStays) {
  Unlink();
  form.comboAuthorLastName.RowClick(6);
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "7");
  EXPECT_EQ(form.txtWavImportSubdirectory.Value.Get(), "0");
  EXPECT_EQ(form.scrollImportWavSubDirectories.Value, 1);
}

TEST_F(AuthorProfilesTest, ABlankAtTheEndOfTheSubjectGoesAndAnEmptySubjectIsNought) {
  form.txtImportSubject.Change("cardio ");
  EXPECT_EQ(form.txtImportSubject.Value.Get(), "cardio");
  form.txtImportSubject.Change("");
  EXPECT_EQ(form.txtImportSubject.Value.Get(), "0");
}

TEST_F(AuthorProfilesTest, ABadCharacterInTheMiddleTakesWhatIsBehindAlong) {
  form.txtImportAuthorLastName.Change("ab cd");
  EXPECT_EQ(form.txtImportAuthorLastName.Value.Get(), "ab");
}

TEST_F(AuthorProfilesTest, TypedNumbersAreWholeAndTwoOfThemNeverNought) {
  form.txtImportAuthorID.Change("0");
  EXPECT_EQ(form.txtImportAuthorID.Value.Get(), "1");
  form.txtImportAuthorID.Change("00012");
  EXPECT_EQ(form.txtImportAuthorID.Value.Get(), "12");
  form.txtImportDepartment.Change("");
  EXPECT_EQ(form.txtImportDepartment.Value.Get(), "1");
  form.txtImportWorktype.Change("");
  EXPECT_EQ(form.txtImportWorktype.Value.Get(), "0");
  form.txtImportSystemID.Change("3x");
  EXPECT_EQ(form.txtImportSystemID.Value.Get(), "3");
}

TEST_F(AuthorProfilesTest, BoxesTakeNoMoreThanTheirFieldsHold) {
  form.txtImportAuthorLastName.Change("abcdefghijklmnop");
  EXPECT_EQ(form.txtImportAuthorLastName.Value.Get(), "abcdefghijklmn");
  form.txtImportAuthorID.Change("1234567");
  EXPECT_EQ(form.txtImportAuthorID.Value.Get(), "123456");
  form.txtImportDepartment.Change("123");
  EXPECT_EQ(form.txtImportDepartment.Value.Get(), "12");
}

TEST_F(AuthorProfilesTest, PriorityIsATextBehindItsBox) {
  form.chkImportPriority.Click();
  EXPECT_EQ(form.txtImportPriority.Value.Get(), "Y");
  form.chkImportPriority.Click();
  EXPECT_EQ(form.txtImportPriority.Value.Get(), "N");
  form.txtImportPriority.Value = "Y";
  EXPECT_TRUE(form.chkImportPriority.Value);
  form.txtImportPriority.Value = "?";
  EXPECT_FALSE(form.chkImportPriority.Value);
}

TEST_F(AuthorProfilesTest, TheDocumentThatItMakesOfAFileIsInWordsBesideIt) {
  form.txtImportAuthorLastName.Change("Okafor");
  form.txtImportAuthorID.Change("8801");
  form.txtImportDepartment.Change("5");
  form.txtImportWorktype.Change("3");
  form.txtImportSubject.Change("discharge");
  EXPECT_EQ(form.lblImportDocument.Value.Get(), "Okafor 8801 Dept 5 Work 3 discharge");
  form.chkImportPriority.Click();
  EXPECT_EQ(form.lblImportDocument.Value.Get(), "Pri Okafor 8801 Dept 5 Work 3 discharge");
}

TEST_F(AuthorProfilesTest, WhatIsTypedIsStoredWhenAnotherProfileShows) {
  form.txtImportSubject.Change("cardio");
  form.chkImportPriority.Click();
  EXPECT_TRUE(database.Saves.empty());
  form.comboAuthorLastName.RowClick(1);
  EXPECT_EQ(Stored(1, "Subject"), "cardio");
  EXPECT_EQ(Stored(1, "Priority"), "Y");
  EXPECT_EQ(form.txtImportSubject.Value.Get(), "None");
  EXPECT_FALSE(form.chkImportPriority.Value);
  form.comboAuthorLastName.RowClick(0);
  EXPECT_EQ(form.txtImportSubject.Value.Get(), "cardio");
  EXPECT_TRUE(form.chkImportPriority.Value);
}

TEST_F(AuthorProfilesTest, LookingAtProfilesWritesNothing) {
  for (int row : {3, 9, 25, 0}) form.comboAuthorLastName.RowClick(row);
  EXPECT_TRUE(database.Saves.empty());
}

TEST_F(AuthorProfilesTest, ASystemIdIsEditedAndStored) {
  form.txtImportSystemID.Change("42");
  profiles.StoreEdits();
  EXPECT_EQ(Stored(1, "SystemID"), "42");
}

TEST_F(AuthorProfilesTest, ARenamedAuthorReachesBothListsWhenThePointerMoves) {
  form.comboAuthorLastName.RowClick(4);
  Rename("Okafor");
  EXPECT_EQ(form.comboAuthorLastName.TextAt(4, 0), "Okafor");
  EXPECT_EQ(config.comboAuthorLastName.TextAt(4, 0), "Okafor");
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 4);
  EXPECT_EQ(Stored(5, "AuthorLastName"), "Okafor");
  EXPECT_EQ(profiles.EditedAuthorName, "Okafor");
  EXPECT_FALSE(profiles.AuthorListStale);
}

TEST_F(AuthorProfilesTest, OfTwoProfilesWithOneNameTheFirstIsShown) {
  form.comboAuthorLastName.RowClick(4);
  Rename("Author2");
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 1);
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "2");
}

TEST_F(AuthorProfilesTest, ThePointerAloneOnlyRemembersTheName) {
  form.txtImportAuthorLastName.Change("Okafor");
  form.frameImportDemographics.PointerMove();
  EXPECT_EQ(profiles.EditedAuthorName, "Okafor");
  EXPECT_EQ(form.comboAuthorLastName.TextAt(0, 0), "Author1");
}

TEST_F(AuthorProfilesTest, AViewThatIsEnteredAgainShowsTheProfileThatWasChosen) {
  Unlink();
  form.comboAuthorLastName.RowClick(11);
  profiles.EnterLists();
  EXPECT_EQ(form.comboAuthorLastName.ListIndex, 11);
  EXPECT_EQ(form.txtImportAuthorCount.Value.Get(), "12");
}

TEST_F(AuthorProfilesTest, AServersFilesAreLinkedToAListIndex) {
  config.frmConfiguration.Visible = true;
  config.frameFtp.Visible = true;
  config.comboAuthorLastName.RowClick(3);
  EXPECT_EQ(config.txtFtpParseGenericPointer.Value.Get(), "3");
  config.txtFtpParseGenericPointer.Value = "17";
  EXPECT_EQ(config.comboAuthorLastName.ListIndex, 17);
  profiles.EnterLists();
  EXPECT_EQ(config.comboAuthorLastName.ListIndex, 17);
  EXPECT_EQ(config.txtFtpParseGenericPointer.Value.Get(), "17");
}

}  // namespace
}  // namespace tavlo::test
