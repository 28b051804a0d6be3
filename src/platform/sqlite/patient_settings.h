#pragma once

#include <memory>
#include <set>
#include <string>

#include "platform/reach/errands.h"
#include "platform/sqlite/sqlite_settings.h"
#include "store/settings_database.h"
#include "store/settings_fields.h"

namespace tavlo::platform {

/// Settings databases on a disk that may stall: what touches a file is an errand, and a call that
/// gets no answer fails like any other that the disk refuses. The first 64 rows of each table, more
/// than any of ours has, are read when a database is opened and kept, so that who looks at them
/// asks nothing of the disk. To read a row behind them is an errand, as every write is: the loop
/// breathes meanwhile, and the record is empty where no answer comes. Lives on the loop's thread.
class PatientSettingsDatabases : public store::SettingsDatabases {
 public:
  /// `errands` must outlive it and every database that it opens. `openAccess` is as for
  /// SqliteSettingsDatabases; it is called on the errand's thread.
  PatientSettingsDatabases(Errands& errands, store::ShippedDatabase shipped,
                           SqliteSettingsDatabases::Opener openAccess = {});

  store::OpenedDatabase Open(const std::string& path) override;
  store::OpenedDatabase OpenOld(const std::string& path) override;
  std::string Create(const std::string& path) override;

  /// Closes every database that is open, for a process that ends without letting go of its parts.
  /// They refuse every write from then on.
  void CloseAll();

 private:
  class Rows;
  using Calls = store::OpenedDatabase (SqliteSettingsDatabases::*)(const std::string& path);

  store::OpenedDatabase OpenBy(Calls call, const std::string& path);

  Errands& errands_;
  const store::ShippedDatabase shipped_;
  const SqliteSettingsDatabases::Opener openAccess_;
  /// Those that are open. A database may be closed when this is gone.
  const std::shared_ptr<std::set<Rows*>> open_;
};

}  // namespace tavlo::platform
