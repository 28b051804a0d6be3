#pragma once

#include <map>
#include <string>

#include "store/settings_database.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// The home folder of a user of a test's own, with what the deck keeps in it.
class Home {
 public:
  Home() = default;
  /// It stands in that folder.
  explicit Home(const std::string& where) : folder_(where) {}

  const std::string& Path() const { return folder_.Path(); }
  std::string Root() const { return Path() + "/Lyrane/TavloDeck"; }
  std::string SettingsPath() const { return Root() + "/Lyrane_Tavlo_Deck.mdb"; }
  std::string QueuePath() const { return Root() + "/Files/InQueue"; }
  std::string CompletedPath() const { return Root() + "/Files/Completed"; }

  /// Makes the root and its Queue folder as an installation has them, but for these settings.
  void MakeRoot(const store::Assignments& settings = {}) const;
  /// Writes fields of one row into the settings of a root that was made.
  void Store(store::Table table, int row, const store::Assignments& fields) const;
  /// Puts a file into the Queue folder and returns its path. The stamp is an old one, so that
  /// it does not count as a file that is still being written.
  std::string AddToQueue(const std::string& name, const std::string& bytes) const;

  /// All that stands below: path from the home folder on, and contents. A folder's are "folder", a
  /// link's what it leads to, of anything else that is no file they are "other".
  std::map<std::string, std::string> Everything() const;

 private:
  TemporaryFolder folder_;
};

/// Settings under which nothing sounds, steps back or is selected unless a test asks for it. What
/// stands in `others` is as it says there.
store::Assignments QuietSettings(const store::Assignments& others = {});

/// A document's name after the grammar: an author, a minute of the day to tell it by, a position.
std::string DocumentName(const std::string& author, int minute = 0, int savedPosition = 0);

}  // namespace tavlo::test
