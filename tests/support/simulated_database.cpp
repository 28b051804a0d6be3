#include "support/simulated_database.h"

#include <algorithm>
#include <optional>
#include <sstream>
#include <utility>

namespace tavlo::test {
namespace {

using store::Field;
using store::OpenedDatabase;
using store::Table;
using store::TableShape;

constexpr std::string_view kFirstLine = "simulated settings";

SettingsTables ShippedTables(const store::ShippedDatabase& shipped) {
  SettingsTables tables;
  for (const TableShape& shape : store::kTables) {
    for (int row = 0; row < shape.rows; ++row) {
      store::Record record;
      for (const Field& field : store::FieldsOf(shape.table)) {
        record[std::string(field.name)] = store::ShippedValue(field, row, shipped);
      }
      tables[shape.table].push_back(std::move(record));
    }
  }
  return tables;
}

std::string Escaped(const std::string& value) {
  std::string escaped;
  for (const char c : value) {
    if (c == '\n') {
      escaped += "\\n";
    } else if (c == '\\') {
      escaped += "\\\\";
    } else {
      escaped += c;
    }
  }
  return escaped;
}

std::string Unescaped(const std::string& text) {
  std::string value;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != '\\') {
      value += text[at];
    } else if (++at < text.size()) {
      value += text[at] == 'n' ? '\n' : text[at];
    }
  }
  return value;
}

/// One line for each field: table, row, name and value.
std::string FileText(const SettingsTables& tables) {
  std::ostringstream text;
  text << kFirstLine << '\n';
  for (const auto& [table, rows] : tables) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
      for (const auto& [name, value] : rows[row]) {
        text << static_cast<int>(table) << ' ' << row << ' ' << name << ' ' << Escaped(value)
             << '\n';
      }
    }
  }
  text << "end";
  return text.str();
}

/// Nothing when the text is not a whole database.
std::optional<SettingsTables> TablesOf(const std::string& text) {
  std::istringstream lines(text);
  std::string line;
  if (!std::getline(lines, line) || line != kFirstLine) return {};
  SettingsTables tables;
  while (std::getline(lines, line) && line != "end") {
    std::istringstream words(line);
    int table = 0;
    std::size_t row = 0;
    std::string name;
    words >> table >> row >> name;
    words.get();
    std::string value;
    std::getline(words, value);
    auto& rows = tables[static_cast<Table>(table)];
    if (rows.size() <= row) rows.resize(row + 1);
    rows[row][name] = Unescaped(value);
  }
  if (line != "end") return {};
  return tables;
}

bool HasAllRows(const SettingsTables& tables) {
  for (const TableShape& shape : store::kTables) {
    const auto found = tables.find(shape.table);
    if (found == tables.end() || found->second.size() < static_cast<std::size_t>(shape.rows)) {
      return false;
    }
  }
  return true;
}

std::string NoAnswer(const std::string& path) {
  return "The settings database " + path + " gives no answer.";
}

/// Lets its file go when it is closed, and waits for the disk at each save.
class HeldDatabase : public SimulatedDatabase {
 public:
  HeldDatabase(SettingsTables tables, std::function<void(const SettingsTables&)> onSaved,
               std::shared_ptr<std::set<std::string>> held, SimulatedDisk& disk, std::string path)
      : SimulatedDatabase(std::move(tables), std::move(onSaved)),
        held_(std::move(held)),
        disk_(disk),
        path_(std::move(path)) {}
  ~HeldDatabase() override { held_->erase(path_); }

  bool WriteRows(const std::vector<store::RowAssignments>& rows) override {
    // A save that was left behind is written after all, unless the file has been closed by then.
    const auto late = [self = std::weak_ptr(self_), rows] {
      if (const auto open = self.lock()) (*open)->WriteLate(rows);
    };
    if (!disk_.Places.Answers({path_}, late)) return Refuse(rows, NoAnswer(path_));
    return SimulatedDatabase::WriteRows(rows);
  }

 private:
  std::shared_ptr<std::set<std::string>> held_;
  SimulatedDisk& disk_;
  std::string path_;
  const std::shared_ptr<HeldDatabase*> self_ = std::make_shared<HeldDatabase*>(this);
};

}  // namespace

SimulatedDatabase::SimulatedDatabase(const store::ShippedDatabase& shipped)
    : SimulatedDatabase(ShippedTables(shipped)) {}

SimulatedDatabase::SimulatedDatabase(SettingsTables tables,
                                     std::function<void(const SettingsTables&)> onSaved,
                                     bool readOnly)
    : tables_(std::move(tables)), onSaved_(std::move(onSaved)), readOnly_(readOnly) {}

SimulatedDatabase& SimulatedDatabase::With(Table table, std::string_view field,
                                           const std::string& value, int row) {
  tables_.at(table).at(static_cast<std::size_t>(row)).at(std::string(field)) = value;
  return *this;
}

SimulatedDatabase& SimulatedDatabase::Without(Table table, std::string_view field) {
  for (store::Record& row : tables_.at(table)) row.erase(std::string(field));
  return *this;
}

SimulatedDatabase& SimulatedDatabase::WithRows(Table table, std::size_t count) {
  tables_.at(table).resize(count);
  return *this;
}

std::string SimulatedDatabase::Value(std::string_view generalField) const {
  return Value(Table::GeneralSettings, 0, generalField);
}

std::string SimulatedDatabase::Value(Table table, int row, std::string_view field) const {
  return tables_.at(table).at(static_cast<std::size_t>(row)).at(std::string(field));
}

int SimulatedDatabase::RowCount(Table table) {
  const auto found = tables_.find(table);
  return found == tables_.end() ? 0 : static_cast<int>(found->second.size());
}

store::Record SimulatedDatabase::Read(Table table, int row) {
  if (row < 0 || row >= RowCount(table)) return {};
  store::Record record = tables_[table][static_cast<std::size_t>(row)];
  for (auto& [name, value] : record) {
    value.resize(std::min({value.size(), value.find('\0'), store::kLongestValue}));
  }
  return record;
}

std::string SimulatedDatabase::Objection(const std::vector<store::RowAssignments>& rows) {
  if (readOnly_) return "The settings database is open for reading only.";
  for (const auto& [table, row, fields] : rows) {
    for (const auto& [name, value] : fields) {
      if (value.size() > store::kLongestValue) return "The value of " + name + " is too long.";
    }
    if (row < 0 || row >= RowCount(table)) return "There is no such row.";
  }
  return refusal_;
}

bool SimulatedDatabase::Refuse(const std::vector<store::RowAssignments>& rows,
                               const std::string& why) {
  for (const auto& [table, row, fields] : rows) {
    for (const auto& field : fields) refused_.insert({table, row, field.first});
  }
  lastFailure_ = why;
  return false;
}

bool SimulatedDatabase::WriteRows(const std::vector<store::RowAssignments>& rows) {
  const std::string objection = Objection(rows);
  if (!objection.empty()) return Refuse(rows, objection);
  for (const auto& [table, row, fields] : rows) {
    for (const auto& field : fields) refused_.erase({table, row, field.first});
  }
  Put(rows);
  return true;
}

void SimulatedDatabase::WriteLate(const std::vector<store::RowAssignments>& rows) {
  if (Objection(rows).empty()) Put(rows);
}

void SimulatedDatabase::Put(const std::vector<store::RowAssignments>& rows) {
  ++Transactions;
  for (const auto& [table, row, fields] : rows) {
    store::Record& record = tables_[table][static_cast<std::size_t>(row)];
    for (const auto& [name, value] : fields) {
      const auto found = record.find(name);
      if (found != record.end()) found->second = value.substr(0, value.find('\0'));
    }
    Saves.push_back({table, row, fields});
  }
  if (onSaved_) onSaved_(tables_);
}

SimulatedDatabases::SimulatedDatabases(SimulatedDisk& disk, store::ShippedDatabase shipped)
    : disk_(disk), shipped_(std::move(shipped)) {}

void SimulatedDatabases::Place(const std::string& path, const SettingsTables& tables) {
  disk_.WithFile(path, FileText(tables));
}

SettingsTables SimulatedDatabases::Look(const std::string& path) const {
  return TablesOf(disk_.Contents(path)).value_or(SettingsTables{});
}

SettingsTables SimulatedDatabases::Shipped() const { return ShippedTables(shipped_); }

OpenedDatabase SimulatedDatabases::Open(const std::string& path) {
  const std::string subject = "The settings database " + path;
  if (!disk_.LetsOpen(path)) return {{}, NoAnswer(path)};
  if (!disk_.Has(path)) return {{}, subject + " does not exist."};
  if (held_->contains(path)) return {{}, subject + " is held by another program."};
  if (disk_.IsReadOnly(path)) return {{}, subject + " can not be read and written."};
  auto tables = TablesOf(disk_.Contents(path));
  if (!tables || !HasAllRows(*tables)) return {{}, subject + " is damaged."};
  for (auto& [table, rows] : ShippedTables(shipped_)) {
    // What stands already is kept; only what is missing comes from the shipped row.
    for (std::size_t row = 0; row < rows.size(); ++row) (*tables)[table][row].merge(rows[row]);
  }
  (*tables)[Table::RevisionInfo][0]["Revision"] = shipped_.revision;
  disk_.Write(path, FileText(*tables));
  held_->insert(path);
  auto save = [this, path](const SettingsTables& saved) { disk_.Write(path, FileText(saved)); };
  return {std::make_unique<HeldDatabase>(std::move(*tables), save, held_, disk_, path), {}};
}

OpenedDatabase SimulatedDatabases::OpenOld(const std::string& path) {
  const std::string subject = "The settings database " + path;
  if (!disk_.LetsOpen(path)) return {{}, NoAnswer(path)};
  if (!disk_.Has(path)) return {{}, subject + " does not exist."};
  auto tables = TablesOf(disk_.Contents(path));
  if (!tables) return {{}, subject + " is damaged."};
  return {std::make_unique<SimulatedDatabase>(std::move(*tables), nullptr, true), {}};
}

std::string SimulatedDatabases::Create(const std::string& path) {
  const std::string subject = "The settings database " + path + " can not be made.";
  if (!disk_.LetsOpen(path)) return NoAnswer(path);
  if (disk_.Has(path)) return subject;
  if (!disk_.Has(path.substr(0, path.rfind('/')))) return subject;
  disk_.WithFile(path, FileText(ShippedTables(shipped_)));
  return {};
}

}  // namespace tavlo::test
