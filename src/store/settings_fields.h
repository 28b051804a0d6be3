#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "store/settings_database.h"

/// Every field of the settings database, once: where it stands, in which form, what a new database
/// holds in it and what it means. Reading, writing, making and upgrading a database derive from
/// this table.
namespace tavlo::store {

/// The form in which a value is stored. All of them are kept as text.
enum class Form {
  NumberText,  ///< Read through its number value wherever it is used; empty is 0.
  Number,      ///< A whole number that the program itself writes.
  YesNo,       ///< "Y" or "N".
  Truth,       ///< "-1" or "0".
  Letter,      ///< A letter or digit that stands for a choice.
  Text,
  Path,  ///< A folder, without a separator at its end.
};

struct Field {
  Table table;
  std::string_view name;
  Form form;
  /// What a new database holds. '#' stands for the number of the row, counted from 1; for a path
  /// it is the name of a folder of documents below the root.
  std::string_view shipped;
  /// For whoever uses the deck: the guide's reference of settings prints it.
  std::string_view meaning;
  /// What the field may hold, where its form does not tell; see AllowedValues.
  std::string_view allowed = {};
};

/// Tables with their stored names and how many rows each always has.
struct TableShape {
  Table table;
  std::string_view name;
  int rows;
};

inline constexpr std::array kTables{
    TableShape{Table::GeneralSettings, "GeneralSettings", 1},
    TableShape{Table::FtpSettings, "FtpSettings", 25},
    TableShape{Table::ImportAuthors, "ImportAuthors", 26},
    TableShape{Table::RevisionInfo, "RevisionInfo", 1},
};

const TableShape& ShapeOf(Table table);

/// All fields, grouped by table.
std::span<const Field> AllFields();
/// The fields of one table, in the order of its columns.
std::span<const Field> FieldsOf(Table table);
/// The field of that name; null when the table has none.
const Field* FindField(Table table, std::string_view name);

/// What a field may hold, in words.
std::string_view AllowedValues(const Field& field);

/// What a new database is made from.
struct ShippedDatabase {
  std::string root;      ///< The install root, without a separator at its end.
  std::string revision;  ///< The build's own revision.
};

/// The value that a new database holds in a field. Rows count from 0.
std::string ShippedValue(const Field& field, int row, const ShippedDatabase& shipped);

/// The four forms of truth are not interchangeable; each has its own readers and writers. A letter
/// code is compared as the text it is.
bool IsYes(std::string_view stored);
std::string YesNo(bool on);
/// True only for -1: another program's 1 is not this program's truth.
bool IsTruth(std::string_view stored);
std::string TruthText(bool on);
/// What a check box that is bound to a field holds: 1 or 0, and nothing of the -1 behind it.
int CheckBoxValue(std::string_view stored);

/// The whole number value of a text as a byte; nothing when it does not fit into one.
std::optional<std::uint8_t> ByteValue(std::string_view stored);

}  // namespace tavlo::store
