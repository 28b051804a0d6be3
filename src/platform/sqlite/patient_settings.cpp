#include "platform/sqlite/patient_settings.h"

#include <algorithm>
#include <functional>
#include <map>
#include <utility>
#include <vector>

#include "platform/reach/let_go.h"
#include "platform/sqlite/pulse.h"
#include "platform/sqlite/settings_failures.h"

namespace tavlo::platform {
namespace {

using store::OpenedDatabase;
using store::Record;
using store::Table;

/// Of each table; more than any of ours has. What somebody else's file has behind them is read when
/// it is asked for.
constexpr int kMostRowsKept = 64;

constexpr std::string_view kNoAnswer = "gives no answer.";

/// What a table held when its database was opened, and what was written since.
struct KeptTable {
  int rowCount = 0;
  std::vector<Record> rows;
};
using KeptTables = std::map<Table, KeptTable>;

KeptTables ReadTables(store::SettingsDatabase& database) {
  KeptTables tables;
  for (const store::TableShape& shape : store::kTables) {
    KeptTable& kept = tables[shape.table];
    kept.rowCount = database.RowCount(shape.table);
    for (int row = 0; row < std::min(kept.rowCount, kMostRowsKept); ++row) {
      kept.rows.push_back(database.Read(shape.table, row));
    }
  }
  return tables;
}

/// An open database, which is used by one errand at a time.
struct OpenFile {
  std::unique_ptr<store::SettingsDatabase> database;
  std::shared_ptr<Pulse> pulse;
};

/// What an errand that opens a database brings back.
struct Opening {
  std::shared_ptr<OpenFile> file;
  KeptTables tables;
  std::string failure;
};

}  // namespace

class PatientSettingsDatabases::Rows : public store::SettingsDatabase {
 public:
  Rows(Errands& errands, std::string path, Opening opening, std::shared_ptr<std::set<Rows*>> open)
      : errands_(errands),
        path_(std::move(path)),
        file_(std::move(opening.file)),
        tables_(std::move(opening.tables)),
        open_(std::move(open)) {
    open_->insert(this);
  }
  ~Rows() override {
    open_->erase(this);
    Close();
  }
  Rows(const Rows&) = delete;

  void Close() {
    if (file_) LetGo(errands_, path_, std::exchange(file_, {}));
  }

  int RowCount(Table table) override { return tables_[table].rowCount; }

  Record Read(Table table, int row) override {
    const KeptTable& kept = tables_[table];
    if (row < 0 || row >= kept.rowCount) return {};
    if (row < static_cast<int>(kept.rows.size())) return kept.rows[static_cast<std::size_t>(row)];
    const auto record = std::make_shared<Record>();
    const bool answered = Ask([record, table, row](store::SettingsDatabase& database) {
      *record = database.Read(table, row);
    });
    return answered ? *record : Record();
  }

  bool WriteRows(const std::vector<store::RowAssignments>& rows) override {
    struct Attempt {
      bool written = false;
      std::string failure;
    };
    const auto attempt = std::make_shared<Attempt>();
    const bool answered = Ask([attempt, rows](store::SettingsDatabase& database) {
      attempt->written = database.WriteRows(rows);
      if (!attempt->written) attempt->failure = database.LastFailure();
    });
    // What was left behind may be writing into the attempt still.
    if (!answered) return Refuse(SettingsSentence(path_, kNoAnswer));
    if (!attempt->written) return Refuse(attempt->failure);
    for (const store::RowAssignments& row : rows) Keep(row);
    return true;
  }

  std::string LastFailure() const override { return lastFailure_; }

 private:
  /// False when the disk gave no answer.
  bool Ask(std::function<void(store::SettingsDatabase&)> ask) {
    if (!file_) return false;
    return errands_.Run(path_, [file = file_, ask = std::move(ask)](Errands::Sign& sign) {
      const Pulse::Heard heard(*file->pulse, sign);
      ask(*file->database);
    });
  }

  void Keep(const store::RowAssignments& written) {
    const auto& [table, row, fields] = written;
    std::vector<Record>& rows = tables_[table].rows;
    if (row >= static_cast<int>(rows.size())) return;
    for (const auto& [name, value] : fields) {
      if (!store::FindField(table, name)) continue;
      rows[static_cast<std::size_t>(row)][name] = value.substr(0, value.find('\0'));
    }
  }

  bool Refuse(std::string why) {
    lastFailure_ = std::move(why);
    return false;
  }

  Errands& errands_;
  const std::string path_;
  std::shared_ptr<OpenFile> file_;
  KeptTables tables_;
  const std::shared_ptr<std::set<Rows*>> open_;
  std::string lastFailure_;
};

PatientSettingsDatabases::PatientSettingsDatabases(Errands& errands, store::ShippedDatabase shipped,
                                                   SqliteSettingsDatabases::Opener openAccess)
    : errands_(errands),
      shipped_(std::move(shipped)),
      openAccess_(std::move(openAccess)),
      open_(std::make_shared<std::set<Rows*>>()) {}

OpenedDatabase PatientSettingsDatabases::Open(const std::string& path) {
  return OpenBy(&SqliteSettingsDatabases::Open, path);
}

OpenedDatabase PatientSettingsDatabases::OpenOld(const std::string& path) {
  return OpenBy(&SqliteSettingsDatabases::OpenOld, path);
}

OpenedDatabase PatientSettingsDatabases::OpenBy(Calls call, const std::string& path) {
  const auto pulse = std::make_shared<Pulse>();
  const auto opening = std::make_shared<Opening>();
  SqliteSettingsDatabases files(shipped_, openAccess_, pulse);
  const bool answered =
      errands_.Run(path, [files, call, path, pulse, opening](Errands::Sign& sign) mutable {
        const Pulse::Heard heard(*pulse, sign);
        OpenedDatabase opened = (files.*call)(path);
        opening->failure = opened.failure;
        if (!opened.database) return;
        opening->tables = ReadTables(*opened.database);
        opening->file = std::make_shared<OpenFile>(
            OpenFile{.database = std::move(opened.database), .pulse = pulse});
      });
  // A database that is opened after that is closed by the errand, which is then its only owner.
  if (!answered) return {{}, SettingsSentence(path, kNoAnswer)};
  if (!opening->file) return {{}, opening->failure};
  return {std::make_unique<Rows>(errands_, path, std::move(*opening), open_), {}};
}

std::string PatientSettingsDatabases::Create(const std::string& path) {
  const auto pulse = std::make_shared<Pulse>();
  const auto failure = std::make_shared<std::string>();
  SqliteSettingsDatabases files(shipped_, openAccess_, pulse);
  const bool answered =
      errands_.Run(path, [files, path, pulse, failure](Errands::Sign& sign) mutable {
        const Pulse::Heard heard(*pulse, sign);
        *failure = files.Create(path);
      });
  return answered ? *failure : SettingsSentence(path, kNoAnswer);
}

void PatientSettingsDatabases::CloseAll() {
  for (Rows* const rows : *open_) rows->Close();
}

}  // namespace tavlo::platform
