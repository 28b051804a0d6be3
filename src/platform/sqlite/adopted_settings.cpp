#include "platform/sqlite/adopted_settings.h"

#include <algorithm>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/disk/posix_disk.h"
#include "platform/sqlite/private_file.h"
#include "platform/sqlite/settings_failures.h"
#include "store/settings_fields.h"

namespace tavlo::platform {
namespace {

namespace fs = std::filesystem;
using store::Table;

/// These tell rows and builds apart, and are those of the new database.
constexpr std::string_view kOurs[] = {"ID", "NumericSorter", "Revision"};

std::string BesideOf(const fs::path& path) {
  return path.parent_path() / ("." + path.filename().string() + ".new");
}

void RemoveJournal(const std::string& path) {
  std::error_code failed;
  for (const char* const ending : kBesideEndings) fs::remove(path + ending, failed);
}

void RemoveWithJournal(const std::string& path) {
  std::error_code failed;
  fs::remove(path, failed);
  RemoveJournal(path);
}

store::Assignments WhatIsTaken(store::Record row) {
  store::Assignments fields;
  for (auto& [name, value] : row) {
    if (std::ranges::find(kOurs, name) != std::end(kOurs)) continue;
    fields.emplace_back(name, std::move(value));
  }
  return fields;
}

std::vector<store::RowAssignments> RowsOf(store::SettingsDatabase& old) {
  std::vector<store::RowAssignments> rows;
  for (const store::TableShape& shape : store::kTables) {
    for (int row = 0; row < std::min(old.RowCount(shape.table), shape.rows); ++row) {
      rows.push_back({shape.table, row, WhatIsTaken(old.Read(shape.table, row))});
    }
  }
  return rows;
}

/// A second name where the file system has such, else a copy.
bool KeepAside(const std::string& path, const std::string& aside) {
  std::error_code failed;
  fs::remove(aside, failed);
  fs::create_hard_link(path, aside, failed);
  if (failed) fs::copy_file(path, aside, failed);
  return !failed;
}

}  // namespace

std::string AdoptSettings(const std::string& path, store::SettingsDatabase& old,
                          store::SettingsDatabases& databases) {
  const std::string beside = BesideOf(path);
  RemoveWithJournal(beside);
  if (std::string failure = databases.Create(beside); !failure.empty()) return failure;
  store::OpenedDatabase fresh = databases.Open(beside);
  std::string failure = fresh.failure;
  if (fresh.database && !fresh.database->WriteRows(RowsOf(old))) {
    failure = fresh.database->LastFailure();
  }
  fresh.database.reset();
  // An empty one stays behind when the file is closed, and would miss the rename.
  RemoveJournal(beside);
  const std::string aside = fs::path(path).replace_extension(".md1");
  if (failure.empty() && !KeepAside(path, aside)) {
    failure =
        SettingsSentence(path, "is one of an older release, and can not be kept as " + aside + ".");
  }
  std::error_code unnamed;
  if (failure.empty()) {
    // A database of ours that stood there before may have left one, which is not the new one's.
    RemoveJournal(path);
    fs::rename(beside, path, unnamed);
  }
  if (unnamed) failure = SettingsSentence(path, "can not be replaced: " + unnamed.message() + ".");
  if (!failure.empty()) RemoveWithJournal(beside);
  // Its passwords are nobody else's matter either.
  NarrowToOwner(aside);
  std::ignore = PosixDisk().FlushFolder(fs::path(path).parent_path());
  return failure;
}

}  // namespace tavlo::platform
