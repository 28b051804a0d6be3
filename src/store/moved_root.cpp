#include "store/moved_root.h"

#include <optional>
#include <string_view>
#include <utility>

#include "store/settings_fields.h"

namespace tavlo::store {
namespace {

/// Where a root stands in its user's home.
constexpr std::string_view kBelowHome = "/Lyrane/TavloDeck";

/// A path below the deck of somebody's home, in two parts.
struct PathOfDeck {
  std::string home;   ///< Without a separator at its end.
  std::string below;  ///< Empty or with a separator in front.
};

std::string FolderAround(const std::string& path) { return path.substr(0, path.rfind('/')); }

/// Nothing where the path leads elsewhere than into a deck of a home in the folder `homes`.
std::optional<PathOfDeck> DeckOf(const std::string& path, const std::string& homes) {
  if (!path.starts_with(homes + "/")) return {};
  const std::size_t name = homes.size() + 1;
  const std::size_t end = path.find('/', name);
  if (end == path.npos || path.compare(end, kBelowHome.size(), kBelowHome) != 0) return {};
  std::string below = path.substr(end + kBelowHome.size());
  if (!below.empty() && below[0] != '/') return {};
  return PathOfDeck{.home = path.substr(0, end), .below = std::move(below)};
}

}  // namespace

std::string FollowMovedRoot(Disk& disk, const WorkFolders& folders, SettingsStore& settings) {
  const std::string& root = folders.InstallRoot;
  if (!root.ends_with(kBelowHome)) return {};
  const std::string homes = FolderAround(root.substr(0, root.size() - kBelowHome.size()));
  Assignments followed;
  std::string gone;
  for (const Field& field : FieldsOf(Table::GeneralSettings)) {
    if (field.form != Form::Path) continue;
    const auto path = DeckOf(settings.Read(Table::GeneralSettings, field.name), homes);
    if (!path || disk.Look(path->home) != Entry::Nothing) continue;
    followed.emplace_back(field.name, root + path->below);
    gone = path->home;
  }
  if (followed.empty() || !settings.Write(Table::GeneralSettings, 0, followed)) return {};
  return "There is no " + gone + " here: paths that led to the deck in it lead to this one now.";
}

}  // namespace tavlo::store
