#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "store/settings_database.h"

namespace tavlo::platform {

using AccessTables = std::map<store::Table, std::vector<store::Record>>;

/// A database of which all rows were read already. It can not be written.
class AccessRows : public store::SettingsDatabase {
 public:
  AccessRows(AccessTables tables, std::string path)
      : tables_(std::move(tables)), path_(std::move(path)) {}

  int RowCount(store::Table table) override {
    const auto found = tables_.find(table);
    return found == tables_.end() ? 0 : static_cast<int>(found->second.size());
  }
  store::Record Read(store::Table table, int row) override {
    if (row < 0 || row >= RowCount(table)) return {};
    return tables_.at(table)[static_cast<std::size_t>(row)];
  }
  bool WriteRows(const std::vector<store::RowAssignments>&) override { return false; }
  std::string LastFailure() const override {
    return "The settings database " + path_ + " is open for reading only.";
  }

 private:
  const AccessTables tables_;
  const std::string path_;
};

}  // namespace tavlo::platform
