#include "window/row_binding.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "support/simulated_database.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::Table;
using window::RowBinding;
using window::Saving;

constexpr int kServers = 25;
constexpr int kAuthors = 26;

/// The two tables that have several rows: the servers on their page, the authors on controls of
/// their own.
struct RowBindingTest : testing::Test {
  /// The stored authors' names and numbers, as a page of them would bind them.
  std::vector<window::Binding> AuthorBindings() {
    return {{"NumericSorter", Saving::Never, &number},
            {"AuthorLastName", Saving::WithItsRow, &lastName},
            {"AuthorID", Saving::WithItsRow, &authorId},
            {"Priority", Saving::WithItsRow, &priority, &priorityBox}};
  }

  SimulatedLoop loop;
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  window::SettingsSaver saver{loop, settings};
  forms::ConfigurationForm config{loop};
  RowBinding server{saver, Table::FtpSettings, window::FtpBindings(config)};

  forms::Window page{loop, "page", "Authors"};
  forms::Text number{&page, "number"};
  forms::Text lastName{&page, "lastName"};
  forms::Text authorId{&page, "authorId"};
  forms::Text priority{&page, "priority"};
  forms::Choice priorityBox{&page, "priorityBox", {}};
  RowBinding author{saver, Table::ImportAuthors, AuthorBindings()};
};

TEST_F(RowBindingTest, ShowsNoRowAndSavesNothingBeforeARowIsShown) {
  lastName.Value = "Brown";
  EXPECT_EQ(author.Row(), RowBinding::kNoRow);
  EXPECT_TRUE(author.Save());
  EXPECT_TRUE(database.Saves.empty());
}

TEST_F(RowBindingTest, ShowsTheStoredValuesOfItsRow) {
  EXPECT_TRUE(author.Show(11));
  EXPECT_EQ(author.Row(), 11);
  EXPECT_EQ(number.Value.Get(), "12");
  EXPECT_EQ(lastName.Value.Get(), "Author12");
  EXPECT_EQ(priority.Value.Get(), "N");
  EXPECT_TRUE(server.Show(3));
  EXPECT_EQ(config.txtFtpServerID.Value.Get(), "4");
  EXPECT_TRUE(config.chkFtpPassiveMode.Value) << "a truth is held by its check box alone";
  EXPECT_TRUE(database.Saves.empty());
}

TEST_F(RowBindingTest, SavesItsRowInOneTransactionInTheOrderOfItsBindings) {
  author.Show(4);
  lastName.Value = "Brown";
  priority.Value = "Y";
  EXPECT_TRUE(author.Save());
  ASSERT_EQ(database.Saves.size(), 1u);
  EXPECT_EQ(database.Saves[0].table, Table::ImportAuthors);
  EXPECT_EQ(database.Saves[0].row, 4);
  EXPECT_EQ(
      database.Saves[0].fields,
      (store::Assignments{{"AuthorLastName", "Brown"}, {"AuthorID", "5"}, {"Priority", "Y"}}));
}

TEST_F(RowBindingTest, NumberOfARowIsShownAndNeverWritten) {
  author.Show(4);
  number.Value = "7";
  author.Save();
  EXPECT_EQ(database.Value(Table::ImportAuthors, 4, "NumericSorter"), "5");
}

TEST_F(RowBindingTest, ChangeThatWasNotSavedIsForgottenWhenAnotherRowIsShown) {
  author.Show(0);
  lastName.Value = "Brown";
  author.Show(1);
  author.Show(0);
  EXPECT_EQ(lastName.Value.Get(), "Author1");
}

TEST_F(RowBindingTest, ARowHasEditsFromAChangeToItsSave) {
  EXPECT_FALSE(author.HasEdits());
  author.Show(0);
  EXPECT_FALSE(author.HasEdits());
  number.Value = "7";
  EXPECT_FALSE(author.HasEdits()) << "the number is never written";
  lastName.Value = "Brown";
  EXPECT_TRUE(author.HasEdits());
  author.Save();
  EXPECT_FALSE(author.HasEdits());
}

TEST_F(RowBindingTest, MovingSavesTheRowThatIsLeftThoughNothingChanged) {
  author.Show(0);
  EXPECT_TRUE(author.MoveToNext());
  ASSERT_EQ(database.Saves.size(), 1u);
  EXPECT_EQ(database.Saves[0].row, 0);
  lastName.Value = "Green";
  EXPECT_TRUE(author.MoveTo(20));
  EXPECT_EQ(database.Value(Table::ImportAuthors, 1, "AuthorLastName"), "Green");
  EXPECT_EQ(author.Row(), 20);
  EXPECT_EQ(lastName.Value.Get(), "Author21");
}

TEST_F(RowBindingTest, StepsOverAllRowsFromTheFirstToTheLastAndBack) {
  EXPECT_TRUE(server.MoveToFirst());
  for (int row = 1; row < kServers; ++row) {
    EXPECT_TRUE(server.MoveToNext());
    EXPECT_EQ(config.txtFtpName.Value.Get(), "Ftp" + std::to_string(row + 1));
  }
  for (int row = kServers - 2; row >= 0; --row) {
    EXPECT_TRUE(server.MoveToPrevious());
    EXPECT_EQ(server.Row(), row);
  }
  EXPECT_TRUE(server.MoveToLast());
  EXPECT_EQ(server.Row(), kServers - 1);
  EXPECT_TRUE(author.MoveToLast());
  EXPECT_EQ(author.Row(), kAuthors - 1);
}

TEST_F(RowBindingTest, NothingIsSavedAndTheRowStaysAtBothEnds) {
  author.Show(0);
  lastName.Value = "Brown";
  EXPECT_FALSE(author.MoveToPrevious());
  EXPECT_EQ(author.Row(), 0);
  author.Show(kAuthors - 1);
  lastName.Value = "Green";
  EXPECT_FALSE(author.MoveToNext());
  EXPECT_FALSE(author.MoveTo(kAuthors + 100));
  EXPECT_EQ(author.Row(), kAuthors - 1);
  EXPECT_EQ(lastName.Value.Get(), "Green") << "what was typed still stands there";
  EXPECT_TRUE(database.Saves.empty());
}

TEST_F(RowBindingTest, RowThatIsGoneIsNotShownAndWhatShowsStays) {
  author.Show(2);
  lastName.Value = "Brown";
  database.WithRows(Table::ImportAuthors, 10);
  EXPECT_FALSE(author.Show(10));
  EXPECT_FALSE(author.MoveTo(10));
  EXPECT_EQ(author.Row(), 2);
  EXPECT_EQ(lastName.Value.Get(), "Brown");
  EXPECT_TRUE(author.MoveToLast());
  EXPECT_EQ(author.Row(), 9);
}

TEST_F(RowBindingTest, SaveOfARowThatIsGoneFailsAndIsToldAndTouchesNoOther) {
  author.Show(20);
  lastName.Value = "Brown";
  database.WithRows(Table::ImportAuthors, 10);
  EXPECT_FALSE(author.Save());
  loop.Yield();
  EXPECT_EQ(loop.Shown.size(), 1u);
  EXPECT_TRUE(database.Saves.empty());
}

TEST_F(RowBindingTest, TableWithoutRowsShowsNothingAndSavesNothing) {
  database.WithRows(Table::ImportAuthors, 0);
  EXPECT_FALSE(author.MoveToFirst());
  EXPECT_FALSE(author.MoveToLast());
  EXPECT_FALSE(author.MoveToNext());
  EXPECT_EQ(author.Row(), RowBinding::kNoRow);
  EXPECT_TRUE(author.Values("AuthorLastName").empty());
  EXPECT_TRUE(author.Save());
}

TEST_F(RowBindingTest, RowWhoseSaveFailedShowsItsValuesAgainAndIsSavedByTheNextFlush) {
  author.Show(0);
  lastName.Value = "Brown";
  database.RefuseWrites("The disk is full.");
  EXPECT_TRUE(author.MoveToNext()) << "a full disk does not hold up the work";
  EXPECT_EQ(lastName.Value.Get(), "Author2");
  EXPECT_TRUE(author.MoveToPrevious());
  EXPECT_EQ(lastName.Value.Get(), "Brown");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 0, "AuthorLastName"), "Author1");
  loop.Yield();
  ASSERT_EQ(loop.Shown.size(), 1u) << "told once, though two rows could not be saved";
  EXPECT_EQ(loop.Shown[0].text,
            "The settings can not be saved. The disk is full.\n"
            "They stay in effect until the Tavlo Deck ends.");
  database.AcceptWrites();
  EXPECT_TRUE(saver.Flush());
  EXPECT_EQ(database.Value(Table::ImportAuthors, 0, "AuthorLastName"), "Brown");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 1, "AuthorLastName"), "Author2");
}

TEST_F(RowBindingTest, FieldThatARowLacksDoesNotGetTheValueOfItsNeighbour) {
  author.Show(0);
  lastName.Value = "Brown";
  author.Save();
  SettingsTables tables;
  tables[Table::ImportAuthors] = {database.Read(Table::ImportAuthors, 0),
                                  database.Read(Table::ImportAuthors, 1)};
  tables[Table::ImportAuthors][1].erase("AuthorLastName");
  SimulatedDatabase other(tables);
  store::SettingsStore otherSettings{other};
  window::SettingsSaver otherSaver{loop, otherSettings};
  RowBinding binding{otherSaver, Table::ImportAuthors, AuthorBindings()};
  binding.Show(0);
  binding.Show(1);
  EXPECT_EQ(lastName.Value.Get(), "Brown") << "a field that is missing leaves its control alone";
  authorId.Value = "77";
  EXPECT_TRUE(binding.Save());
  EXPECT_EQ(other.Saves.back().fields, (store::Assignments{{"AuthorID", "77"}, {"Priority", "N"}}));
}

TEST_F(RowBindingTest, HandlerThatSavesWhileARowIsShownWritesNoValueOfTheRowBefore) {
  author.Show(0);
  authorId.Value = "999";
  lastName.OnChange = [this] { author.Save(); };
  author.Show(1);
  EXPECT_EQ(database.Value(Table::ImportAuthors, 1, "AuthorID"), "2");
  EXPECT_EQ(database.Value(Table::ImportAuthors, 0, "AuthorID"), "1");
}

TEST_F(RowBindingTest, ValuesOfAFieldComeInTheOrderOfTheRows) {
  database.With(Table::FtpSettings, "FtpServerName", "Clinic", 2);
  const std::vector<std::string> names = server.Values("FtpServerName");
  ASSERT_EQ(names.size(), static_cast<std::size_t>(kServers));
  EXPECT_EQ(names[0], "Ftp1");
  EXPECT_EQ(names[2], "Clinic");
  EXPECT_EQ(names[24], "Ftp25");
  EXPECT_EQ(server.Values("NoSuchField"), std::vector<std::string>(kServers));
}

TEST_F(RowBindingTest, FindsTheFirstRowWithAValue) {
  database.With(Table::FtpSettings, "FtpServerName", "Clinic", 6)
      .With(Table::FtpSettings, "FtpServerName", "Clinic", 9);
  EXPECT_EQ(server.Find("FtpServerName", "Clinic"), 6);
  EXPECT_EQ(author.Find("NumericSorter", "26"), 25);
  EXPECT_EQ(server.Find("FtpServerName", "clinic"), std::nullopt);
}

TEST_F(RowBindingTest, FindsARowByAValueThatCouldNotBeSaved) {
  server.Show(6);
  config.txtFtpName.Value = "Clinic";
  EXPECT_EQ(server.Find("FtpServerName", "Clinic"), std::nullopt) << "it is not saved yet";
  database.RefuseWrites("no");
  server.Save();
  EXPECT_EQ(server.Find("FtpServerName", "Clinic"), 6);
  EXPECT_EQ(server.Values("FtpServerName")[6], "Clinic");
}

}  // namespace
}  // namespace tavlo::test
