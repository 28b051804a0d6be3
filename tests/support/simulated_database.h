#pragma once

#include <functional>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "store/settings_fields.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

/// The rows of a settings database.
using SettingsTables = std::map<store::Table, std::vector<store::Record>>;

/// A settings database in memory that refuses what the real one refuses and records every save.
class SimulatedDatabase : public store::SettingsDatabase {
 public:
  /// Holds every row as shipped.
  explicit SimulatedDatabase(const store::ShippedDatabase& shipped = {.root = "/root",
                                                                      .revision = "1.0.0"});
  /// Holds these rows and hands them to `onSaved` after each save.
  explicit SimulatedDatabase(SettingsTables tables,
                             std::function<void(const SettingsTables&)> onSaved = {},
                             bool readOnly = false);

  // What stands in it before a test acts.
  SimulatedDatabase& With(store::Table table, std::string_view field, const std::string& value,
                          int row = 0);
  SimulatedDatabase& With(std::string_view generalField, const std::string& value) {
    return With(store::Table::GeneralSettings, generalField, value);
  }
  /// The table lacks the field, as a table of an older release does.
  SimulatedDatabase& Without(store::Table table, std::string_view field);
  /// The table has only its first rows.
  SimulatedDatabase& WithRows(store::Table table, std::size_t count);

  /// Every write is refused with these words until `AcceptWrites`.
  void RefuseWrites(const std::string& why) { refusal_ = why; }
  void AcceptWrites() { refusal_.clear(); }

  // What became of it.
  std::string Value(std::string_view generalField) const;
  std::string Value(store::Table table, int row, std::string_view field) const;
  struct Save {
    store::Table table;
    int row;
    store::Assignments fields;
  };
  /// The saves that were written, in order. A refused one is none.
  std::vector<Save> Saves;
  /// How often something was written. All rows of one transaction are.
  int Transactions = 0;
  /// Whether the last write of the field was refused.
  bool WasRefused(store::Table table, int row, std::string_view field) const {
    return refused_.contains({table, row, std::string(field)});
  }

  int RowCount(store::Table table) override;
  store::Record Read(store::Table table, int row) override;
  [[nodiscard]] bool WriteRows(const std::vector<store::RowAssignments>& rows) override;
  std::string LastFailure() const override { return lastFailure_; }

 protected:
  /// Does what a write that was given up would have done, for whoever asked it has been told that
  /// it was refused.
  void WriteLate(const std::vector<store::RowAssignments>& rows);
  /// Notes that a write was refused. Always false.
  bool Refuse(const std::vector<store::RowAssignments>& rows, const std::string& why);

 private:
  using Place = std::tuple<store::Table, int, std::string>;

  void Put(const std::vector<store::RowAssignments>& rows);
  /// The empty text, or why the rows may not be written.
  std::string Objection(const std::vector<store::RowAssignments>& rows);

  SettingsTables tables_;
  std::function<void(const SettingsTables&)> onSaved_;
  bool readOnly_ = false;
  std::string refusal_;
  std::string lastFailure_;
  /// Fields whose last write was refused.
  std::set<Place> refused_;
};

/// Databases as files on the simulated disk, so that they are copied, renamed and lost with it, and
/// late where it is.
class SimulatedDatabases : public store::SettingsDatabases {
 public:
  explicit SimulatedDatabases(SimulatedDisk& disk, store::ShippedDatabase shipped = {
                                                       .root = "/root", .revision = "1.0.0"});

  /// Another program holds the file from here on.
  void HoldByAnother(const std::string& path) { held_->insert(path); }
  void LetGo(const std::string& path) { held_->erase(path); }
  /// Puts a database with these rows on the disk.
  void Place(const std::string& path, const SettingsTables& tables);
  /// The rows of a database on the disk, whoever has it open.
  SettingsTables Look(const std::string& path) const;
  /// Every row as it is shipped.
  SettingsTables Shipped() const;

  store::OpenedDatabase Open(const std::string& path) override;
  store::OpenedDatabase OpenOld(const std::string& path) override;
  std::string Create(const std::string& path) override;

 private:
  SimulatedDisk& disk_;
  store::ShippedDatabase shipped_;
  /// Shared with the open databases, each of which lets its file go when it is closed.
  std::shared_ptr<std::set<std::string>> held_ = std::make_shared<std::set<std::string>>();
};

}  // namespace tavlo::test
