#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/sqlite/pulse.h"
#include "store/settings_database.h"
#include "store/settings_fields.h"

namespace tavlo::platform {

/// Settings databases in SQLite files. The file stays locked for as long as its database lives, and
/// each save is on the disk, or undone, whatever happens to the process.
///
/// The lock belongs to the process: nothing else in it may open and close the same file, since that
/// would give the lock away.
class SqliteSettingsDatabases : public store::SettingsDatabases {
 public:
  using Opener = std::function<store::OpenedDatabase(const std::string& path)>;

  /// `openAccess` opens an old release's database that is in Access format; without it such a file
  /// is refused. Where `Open` finds one it takes all of it into a database of our own, which then
  /// stands in its place. The pulse beats while a file is worked on.
  explicit SqliteSettingsDatabases(store::ShippedDatabase shipped, Opener openAccess = {},
                                   std::shared_ptr<const Pulse> pulse = std::make_shared<Pulse>());

  store::OpenedDatabase Open(const std::string& path) override;
  store::OpenedDatabase OpenOld(const std::string& path) override;
  std::string Create(const std::string& path) override;

 private:
  store::OpenedDatabase OpenAdopted(const std::string& path);

  store::ShippedDatabase shipped_;
  Opener openAccess_;
  std::shared_ptr<const Pulse> pulse_;
};

}  // namespace tavlo::platform
