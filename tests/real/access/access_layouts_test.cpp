#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "access/access_bench.h"
#include "access/access_file.h"

namespace tavlo::test {
namespace {

using store::Table;

struct NamedForm {
  const char* name;
  AccessFileForm form;

  friend void PrintTo(const NamedForm& named, std::ostream* out) { *out << named.name; }
};

/// Whatever wrote an old database, what stands in it is read alike.
struct AccessLayouts : testing::TestWithParam<NamedForm>, AccessBench {
  const AccessFileForm& Form() const { return GetParam().form; }
  bool IsThird() const { return Form().layout == Jet::Three; }

  std::unique_ptr<store::SettingsDatabase> Read(const std::vector<AccessTable>& tables) const {
    PlaceOld(AccessFileBytes(Form(), tables));
    store::OpenedDatabase opened = OpenAccess(Old());
    EXPECT_TRUE(opened.database) << opened.failure;
    return std::move(opened.database);
  }
  /// The one row of general settings with this value in this field; nothing where it is not told.
  std::optional<std::string> Told(AccessType type, const AccessValue& value) const {
    const auto old = Read({{.name = "GeneralSettings",
                            .columns = {{"Volume"}, {"CustomDisplay", type}, {"Speed"}},
                            .rows = {{std::string("41000"), value, std::string("85")}}}});
    if (!old) return {};
    const store::Record row = old->Read(Table::GeneralSettings, 0);
    EXPECT_EQ(row.at("Volume"), "41000");
    EXPECT_EQ(row.at("Speed"), "85");
    const auto found = row.find("CustomDisplay");
    return found == row.end() ? std::nullopt : std::optional(found->second);
  }
  /// The table of authors, whose names are told.
  static AccessTable Authors(const std::vector<std::string>& names) {
    AccessTable table{.name = "ImportAuthors",
                      .columns = {{"NumericSorter", AccessType::Int}, {"AuthorLastName"}},
                      .rows = {}};
    for (const std::string& name : names) {
      table.rows.push_back({static_cast<double>(table.rows.size() + 1), name});
    }
    return table;
  }
  static std::string Author(store::SettingsDatabase& database, int row) {
    return database.Read(Table::ImportAuthors, row).at("AuthorLastName");
  }
};

INSTANTIATE_TEST_SUITE_P(
    Of, AccessLayouts,
    testing::Values(NamedForm{"Jet3", {.layout = Jet::Three}}, NamedForm{"Jet4", {}},
                    NamedForm{"Jet4WithShortTexts", {.compressedTexts = true}},
                    NamedForm{"Jet3WithHiddenPages", {.layout = Jet::Three, .key = 0x2004ba5e}},
                    NamedForm{"Jet4WithHiddenPages", {.key = 0x2004ba5e}}),
    [](const auto& tested) { return tested.param.name; });

TEST_P(AccessLayouts, NationalLettersAreRead) {
  const std::string text =
      IsThird() ? "Dr. Müller, Århus, façade, Žižka, 5 €" : "Dvořák, Łódź, Ελένη, Иван, 5 €, ÿ";
  EXPECT_EQ(Told(AccessType::Text, text), text);
  EXPECT_EQ(Told(AccessType::Memo, text), text);
}

TEST_P(AccessLayouts, NumbersOfEveryTypeAreReadInPlainForm) {
  EXPECT_EQ(Told(AccessType::Byte, 200.0), "200");
  EXPECT_EQ(Told(AccessType::Int, -300.0), "-300");
  EXPECT_EQ(Told(AccessType::Long, -123456.0), "-123456");
  EXPECT_EQ(Told(AccessType::Money, 12.5), "12.5");
  EXPECT_EQ(Told(AccessType::Money, -17.0), "-17");
  EXPECT_EQ(Told(AccessType::Single, 0.3), "0.3");
  EXPECT_EQ(Told(AccessType::Single, 50000.0), "50000");
  EXPECT_EQ(Told(AccessType::Double, 0.1), "0.1");
  EXPECT_EQ(Told(AccessType::Double, -2.0), "-2");
  if (IsThird()) return;
  EXPECT_EQ(Told(AccessType::Numeric, -12340.0), "-123.4");
}

TEST_P(AccessLayouts, TruthIsMinusOneOrZero) {
  EXPECT_EQ(Told(AccessType::Bool, true), "-1");
  EXPECT_EQ(Told(AccessType::Bool, false), "0");
}

TEST_P(AccessLayouts, NothingInAFieldIsTheEmptyText) {
  for (const AccessType type : {AccessType::Text, AccessType::Memo, AccessType::Int,
                                AccessType::Money, AccessType::Double}) {
    EXPECT_EQ(Told(type, {}), "") << static_cast<int>(type);
  }
  EXPECT_EQ(Told(AccessType::Text, std::string()), "");
}

TEST_P(AccessLayouts, MemosOfEveryLengthAreReadAndTooLongOnesAreLeftOut) {
  for (const std::size_t length : {1, 30, 900, 3000, 40000}) {
    std::string text(length, 'm');
    text.back() = '.';
    EXPECT_EQ(Told(AccessType::Memo, text), text);
  }
  EXPECT_EQ(Told(AccessType::Memo, std::string(store::kLongestValue + 1, 'm')), std::nullopt);
}

TEST_P(AccessLayouts, BytesOfAnotherProgramAreNoSetting) {
  EXPECT_EQ(Told(AccessType::Ole, std::string("\x15\x1c picture")), std::nullopt);
}

TEST_P(AccessLayouts, RowsOfEveryLengthAreRead) {
  constexpr int kRows = 250;
  AccessTable table{.name = "ImportAuthors",
                    .columns = {{"AuthorLastName"}, {"Subject"}, {"Secretary"}},
                    .rows = {}};
  for (std::size_t row = 0; row < kRows; ++row) {
    // One value of each row passes a border of 256 bytes at another place.
    table.rows.push_back(
        {std::string(row, 'a'), std::string(kRows - row / 2, 's'), std::to_string(row)});
  }
  const auto old = Read({table});
  ASSERT_TRUE(old);
  ASSERT_EQ(old->RowCount(Table::ImportAuthors), kRows);
  for (int row = 0; row < kRows; ++row) {
    const store::Record author = old->Read(Table::ImportAuthors, row);
    const auto size = static_cast<std::size_t>(row);
    EXPECT_EQ(author.at("AuthorLastName"), std::string(size, 'a'));
    EXPECT_EQ(author.at("Subject").size(), kRows - size / 2) << row;
    EXPECT_EQ(author.at("Secretary"), std::to_string(row));
  }
}

TEST_P(AccessLayouts, AuthorsComeInTheOrderOfTheirNumbers) {
  AccessTable authors = Authors({"Brown", "Okafor", "Haddad"});
  std::swap(authors.rows[0], authors.rows[2]);
  const auto old = Read({authors});
  ASSERT_TRUE(old);
  EXPECT_EQ(Author(*old, 0), "Brown");
  EXPECT_EQ(Author(*old, 1), "Okafor");
  EXPECT_EQ(Author(*old, 2), "Haddad");
}

TEST_P(AccessLayouts, AuthorsOfWhomOneHasNoNumberComeAsTheyStand) {
  AccessTable authors = Authors({"Brown", "Okafor", "Haddad"});
  authors.rows[1][0] = {};
  std::swap(authors.rows[0], authors.rows[2]);
  const auto old = Read({authors});
  ASSERT_TRUE(old);
  EXPECT_EQ(Author(*old, 0), "Haddad");
  EXPECT_EQ(Author(*old, 2), "Brown");
}

TEST_P(AccessLayouts, DeletedRowsAreNotThere) {
  AccessTable authors = Authors({"Brown", "Okafor", "Haddad"});
  authors.deleted = {1};
  const auto old = Read({authors});
  ASSERT_TRUE(old);
  ASSERT_EQ(old->RowCount(Table::ImportAuthors), 2);
  EXPECT_EQ(Author(*old, 1), "Haddad");
}

TEST_P(AccessLayouts, NamesKnowNoCase) {
  const auto old = Read({{.name = "GENERALSETTINGS",
                          .columns = {{"subjectheading"}},
                          .rows = {{std::string("Patient")}}}});
  ASSERT_TRUE(old);
  EXPECT_EQ(old->Read(Table::GeneralSettings, 0).at("SubjectHeading"), "Patient");
}

TEST_P(AccessLayouts, TablesThatAreMissingLeaveTheSettingsAsTheyAre) {
  PlaceOld(AccessFileBytes(Form(), {Authors({"Brown"})}));
  const auto settings = Upgrade();
  ASSERT_TRUE(settings);
  ExpectWhole(*settings);
  EXPECT_EQ(Author(*settings, 0), "Brown");
  EXPECT_EQ(settings->Read(Table::GeneralSettings, 0).at("Speed"), "100");
}

TEST_P(AccessLayouts, MoreAuthorsThanThereAreRowsAreLeftOut) {
  std::vector<std::string> names;
  for (int number = 1; number <= 60; ++number) names.push_back("Müller" + std::to_string(number));
  PlaceOld(AccessFileBytes(Form(), {Authors(names)}));
  const auto settings = Upgrade();
  ASSERT_TRUE(settings);
  ExpectWhole(*settings);
  EXPECT_EQ(Author(*settings, 0), "Müller1");
  EXPECT_EQ(Author(*settings, 25), "Müller26");
}

TEST_P(AccessLayouts, AllFieldsOfATableAreTakenOver) {
  AccessTable table{.name = "GeneralSettings", .columns = {}, .rows = {{}}};
  for (const store::Field& field : store::FieldsOf(Table::GeneralSettings)) {
    table.columns.push_back({std::string(field.name)});
    table.rows[0].emplace_back("7 " + std::string(field.name));
  }
  PlaceOld(AccessFileBytes(Form(), {table}));
  const auto settings = Upgrade();
  ASSERT_TRUE(settings);
  int taken = 0;
  for (const auto& [field, value] : settings->Read(Table::GeneralSettings, 0)) {
    taken += value == "7 " + field;
  }
  EXPECT_EQ(taken, static_cast<int>(table.columns.size()) - 3) << "three are not taken over";
}

TEST_P(AccessLayouts, EnvironmentOfTheUserChangesNothing) {
  struct Variable {
    Variable(const char* variable, const char* value) : name(variable) { ::setenv(name, value, 1); }
    ~Variable() { ::unsetenv(name); }
    const char* name;
  };
  const Variable into("MDBICONV", "UTF-16");
  const Variable from("MDB_JET3_CHARSET", "KOI8-R");
  const Variable options("MDBOPTS", "debug_all");
  EXPECT_EQ(Told(AccessType::Text, std::string("Müller")), "Müller");
}

}  // namespace
}  // namespace tavlo::test
