#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "base/loop.h"
#include "store/disk.h"
#include "store/settings_database.h"
#include "store/settings_store.h"
#include "store/work_folders.h"

namespace tavlo::store {

/// Takes over the settings of an older release. Whoever wants that puts the old database into a
/// folder of its own; it is copied field by field, so that a field that it lacks, or that can not
/// be taken, keeps what a new database holds. At the start behind the copy the old database is set
/// aside under another name.
class DatabaseUpgrade {
 public:
  /// All of it must outlive the upgrade. `databases` opens the old one, `settings` is the new one.
  DatabaseUpgrade(base::Loop& loop, Disk& disk, const WorkFolders& folders,
                  SettingsDatabases& databases, SettingsStore& settings)
      : loop_(loop), disk_(disk), folders_(folders), databases_(databases), settings_(settings) {}

  /// Runs at each start, before the settings are shown. Without an old database it does nothing.
  /// Gives what the quiet line should say of it, since the box at the end comes in any case: why
  /// nothing was taken over. The empty text when something was, or nothing should be.
  [[nodiscard]] std::string UpgradeDatabase();

 private:
  void SetAside();
  bool Agreed();
  /// One transaction: a crash leaves each field as it was, or all of them taken over. The empty
  /// text, or why nothing was.
  std::string CopySettings();
  std::vector<RowAssignments> GeneralSettingsOf(SettingsDatabase& old) const;
  std::vector<RowAssignments> ImportAuthorsOf(SettingsDatabase& old) const;
  std::string Shipped(std::string_view field) const;
  /// What is taken over for a value of the old database: a path as this platform knows it.
  std::string Taken(std::string_view field, const std::string& stored) const;
  void WriteMarker();

  base::Loop& loop_;
  Disk& disk_;
  const WorkFolders& folders_;
  SettingsDatabases& databases_;
  SettingsStore& settings_;
};

}  // namespace tavlo::store
