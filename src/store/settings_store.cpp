#include "store/settings_store.h"

#include "store/settings_fields.h"

namespace tavlo::store {
namespace {

constexpr std::string_view kVersionLiteral = "03.08.00.TD   ";

std::string FirstRevision(SettingsDatabase& database) {
  const Record row = database.Read(Table::RevisionInfo, 0);
  const auto found = row.find("Revision");
  return found == row.end() ? std::string() : found->second;
}

}  // namespace

SettingsStore::SettingsStore(SettingsDatabase& database)
    : Revision(FirstRevision(database)), database_(database) {}

bool SettingsStore::ReadInto(std::string& value, Table table, std::string_view field,
                             int row) const {
  const Record record = database_.Read(table, row);
  const auto found = record.find(std::string(field));
  if (found == record.end()) return false;
  value = found->second;
  return true;
}

std::string SettingsStore::Read(Table table, std::string_view field) const {
  std::string value;
  ReadInto(value, table, field);
  return value;
}

bool SettingsStore::ReadTruth(Table table, std::string_view field) const {
  return IsTruth(Read(table, field));
}

bool SettingsStore::Write(Table table, int row, const Assignments& fields) {
  return database_.Write(table, row, fields);
}

bool SettingsStore::WriteRows(const std::vector<RowAssignments>& rows) {
  return database_.WriteRows(rows);
}

std::string SettingsStore::ProgramVersionText() const {
  return std::string(kVersionLiteral) + Revision;
}

}  // namespace tavlo::store
