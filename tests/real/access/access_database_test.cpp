#include "platform/access/access_database.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "access/access_bench.h"
#include "platform/sqlite/sqlite_connection.h"

namespace tavlo::test {
namespace {

using store::Table;

struct AccessDatabase : testing::Test, AccessBench {
  static std::string Value(store::SettingsDatabase& database, const std::string& field) {
    const store::Record row = database.Read(Table::GeneralSettings, 0);
    const auto found = row.find(field);
    return found == row.end() ? "missing" : found->second;
  }
};

TEST_F(AccessDatabase, NumbersTextsAndTruthsAreRead) {
  const store::OpenedDatabase old = OpenAccess(kComplete);
  ASSERT_TRUE(old.database) << old.failure;
  ASSERT_EQ(old.database->RowCount(Table::GeneralSettings), 1);
  EXPECT_EQ(Value(*old.database, "AutoBackspace"), "17");
  EXPECT_EQ(Value(*old.database, "SubjectHeading"), "Patient");
  EXPECT_EQ(Value(*old.database, "Volume"), "41000");
  EXPECT_EQ(Value(*old.database, "CustomEq1"), "-17");
  EXPECT_EQ(Value(*old.database, "CustomEq12"), "16");
  EXPECT_EQ(Value(*old.database, "AutoRefreshMode"), "-1");
  EXPECT_EQ(Value(*old.database, "CustomDisplay"), "Second floor typing room");
  EXPECT_EQ(old.database->Read(Table::ImportAuthors, 0).at("AuthorLastName"), "Author1");
}

TEST_F(AccessDatabase, FieldsThatAnEarlyReleaseLacksAreAbsent) {
  const store::OpenedDatabase old = OpenAccess(kEarly);
  ASSERT_TRUE(old.database) << old.failure;
  EXPECT_EQ(Value(*old.database, "AutoBackspace"), "17");
  EXPECT_EQ(Value(*old.database, "Speed"), "missing");
  EXPECT_EQ(Value(*old.database, "Eu2QueuePath"), "missing");
  EXPECT_GT(old.database->RowCount(Table::ImportAuthors), 26);
}

TEST_F(AccessDatabase, IsReadOnlyAndItsFileStaysAsItIs) {
  PlaceOld(BytesOf(kComplete));
  const store::OpenedDatabase old = OpenAccess(Old());
  ASSERT_TRUE(old.database) << old.failure;
  EXPECT_FALSE(old.database->Write(Table::GeneralSettings, 0, {{"Volume", "1"}}));
  EXPECT_NE(old.database->LastFailure().find(Old()), std::string::npos);
  EXPECT_TRUE(BytesOf(Old()) == BytesOf(kComplete));
}

TEST_F(AccessDatabase, CompleteOneIsTakenOver) {
  PlaceOld(BytesOf(kComplete));
  const auto settings = Upgrade();
  ASSERT_TRUE(settings);
  EXPECT_EQ(Value(*settings, "AutoBackspace"), "17");
  EXPECT_EQ(Value(*settings, "Speed"), "85");
  EXPECT_EQ(Value(*settings, "USBorSerialFootPedal"), "S");
  EXPECT_EQ(Value(*settings, "WavQueuePath"), Root() + "/Files/ImportQueue");
  EXPECT_EQ(settings->Read(Table::ImportAuthors, 1).at("AuthorLastName"), "Author2");
  EXPECT_EQ(loop.Shown.back().text, "Tavlo Deck upgrade is complete.");
}

TEST_F(AccessDatabase, EarlyOneIsTakenOverAsFarAsItGoes) {
  PlaceOld(BytesOf(kEarly));
  const auto settings = Upgrade();
  ASSERT_TRUE(settings);
  ExpectWhole(*settings);
  EXPECT_EQ(Value(*settings, "AutoBackspace"), "17");
  EXPECT_EQ(Value(*settings, "Speed"), "100");
  EXPECT_EQ(Value(*settings, "Eu2QueuePath"), Root() + "/Files/eU2Queue");
  EXPECT_EQ(Value(*settings, "WavQueuePath"), "e:\\dictation\\import");
}

TEST_F(AccessDatabase, InThePlaceOfOursIsTakenOverWholeAndStaysBeside) {
  std::filesystem::remove(Settings());
  std::filesystem::copy_file(kComplete, Settings());
  const store::OpenedDatabase opened = databases.Open(Settings());
  ASSERT_TRUE(opened.database) << opened.failure;
  ExpectWhole(*opened.database);
  EXPECT_EQ(Value(*opened.database, "EqualizerChoice"), "Hi");
  EXPECT_EQ(Value(*opened.database, "Volume"), "41000");
  EXPECT_TRUE(BytesOf(Root() + "/Lyrane_Tavlo_Deck.md1") == BytesOf(kComplete));
}

TEST_F(AccessDatabase, InThePlaceOfOneThatWasCutOffInASaveIsTakenOverWhole) {
  const std::string journal = Settings() + "-journal";
  {
    platform::SqliteConnection saving(std::make_shared<platform::Pulse>());
    ASSERT_EQ(saving.Open(Settings(), platform::SqliteConnection::Mode::ReadWrite),
              platform::StepResult::Done);
    ASSERT_EQ(saving.Run("BEGIN EXCLUSIVE"), platform::StepResult::Done);
    ASSERT_EQ(saving.Run("UPDATE GeneralSettings SET Speed = '70'"), platform::StepResult::Done);
    std::filesystem::copy_file(journal, folder / "journal");
  }
  ASSERT_GT(std::filesystem::file_size(folder / "journal"), 0u);
  const auto replace = std::filesystem::copy_options::overwrite_existing;
  std::filesystem::copy_file(folder / "journal", journal, replace);
  std::filesystem::copy_file(kComplete, Settings(), replace);
  const store::OpenedDatabase opened = databases.Open(Settings());
  ASSERT_TRUE(opened.database) << opened.failure;
  ExpectWhole(*opened.database);
  EXPECT_EQ(Value(*opened.database, "Volume"), "41000");
  EXPECT_TRUE(BytesOf(Root() + "/Lyrane_Tavlo_Deck.md1") == BytesOf(kComplete));
}

TEST_F(AccessDatabase, WithoutItsReaderIsNamedAsUnreadable) {
  const auto opened = platform::OpenAccessDatabase(kComplete, folder / "no program");
  EXPECT_FALSE(opened.database);
  EXPECT_NE(opened.failure.find(kComplete), std::string::npos);
}

TEST_F(AccessDatabase, ReaderThatDoesNotEndIsGivenUp) {
  for (const char* const endless : {"sleep 1000", "yes"}) {
    const std::string reader =
        folder.Write("reader", std::string("#!/bin/sh\nexec ") + endless + "\n");
    std::filesystem::permissions(reader, std::filesystem::perms::owner_all);
    EXPECT_FALSE(platform::OpenAccessDatabase(kComplete, reader).database) << endless;
  }
}

}  // namespace
}  // namespace tavlo::test
