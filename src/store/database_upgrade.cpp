#include "store/database_upgrade.h"

#include <algorithm>
#include <iterator>
#include <tuple>
#include <utility>

#include "base/text.h"
#include "store/settings_fields.h"

namespace tavlo::store {
namespace {

constexpr const char* kTitle = "Tavlo Deck - Upgrade";
constexpr const char* kNothingTaken = "Nothing of the old settings was taken over. ";
/// Where an older release had its import directories.
constexpr std::string_view kOlderImportFolder = "/Files/wavImport";

/// A field that may be newer than the old database is set to what a new database holds before it is
/// copied; the others stay as they are.
enum class Before { AsItIs, AsShipped };
struct TakenField {
  std::string_view name;
  Before before;
};

/// In the order of the copy.
constexpr TakenField kGeneralFields[] = {
    {"AutoBackspace", Before::AsItIs},
    {"AutoPreview", Before::AsItIs},
    {"WindIncrement", Before::AsItIs},
    {"AccelerateWindIncrementFlag", Before::AsItIs},
    {"SubjectHeading", Before::AsItIs},
    {"AudioPromptsFlag", Before::AsItIs},
    {"MinimizeMiniPlayerFlag", Before::AsItIs},
    {"WordProcessorPath", Before::AsItIs},
    {"FaciaImagePointer", Before::AsShipped},
    {"PlayerTop", Before::AsItIs},
    {"PlayerLeft", Before::AsItIs},
    {"TitleBarHeight", Before::AsItIs},
    {"AlwaysOnTopFlag", Before::AsItIs},
    {"SkipBegEndFlag", Before::AsItIs},
    {"SwapRewFwdPedalFlag", Before::AsItIs},
    {"ViewDelay", Before::AsItIs},
    {"OEMLogo", Before::AsItIs},
    {"WavConvMode", Before::AsItIs},
    {"AutoQueueDocumentFlag", Before::AsItIs},
    {"ImportWavSynchronizeFlag", Before::AsItIs},
    {"DeleteCompletedFiles", Before::AsItIs},
    {"SerialFootPedalComPort", Before::AsItIs},
    {"Ew2QueuePath", Before::AsShipped},
    {"Ds2QueuePath", Before::AsShipped},
    {"WavQueuePath", Before::AsShipped},
    {"Eu2QueuePath", Before::AsShipped},
    {"Speed", Before::AsShipped},
    {"Volume", Before::AsShipped},
    {"PromptVolume", Before::AsShipped},
    {"USBorSerialFootPedal", Before::AsShipped},
    {"CustomEq1", Before::AsShipped},
    {"CustomEq2", Before::AsShipped},
    {"CustomEq3", Before::AsShipped},
    {"CustomEq4", Before::AsShipped},
    {"CustomEq5", Before::AsShipped},
    {"CustomEq6", Before::AsShipped},
    {"CustomEq7", Before::AsShipped},
    {"CustomEq8", Before::AsShipped},
    {"CustomEq9", Before::AsShipped},
    {"CustomEq10", Before::AsShipped},
    {"CustomEq11", Before::AsShipped},
    {"CustomEq12", Before::AsShipped},
    {"CustomDisplay", Before::AsShipped},
    {"ShowCustomDisplay", Before::AsShipped},
    {"MixerSelection", Before::AsShipped},
    {"WorkWaitingAlertMode", Before::AsShipped},
    {"AutoImportMode", Before::AsShipped},
    {"AutoRefreshMode", Before::AsShipped},
    {"NewDictationAlertInterval", Before::AsShipped},
    {"AutoQueueRefreshInterval", Before::AsShipped},
    {"PlayStopKey", Before::AsItIs},
    {"PlayHeldKey", Before::AsItIs},
    {"RewindHeldKey", Before::AsItIs},
    {"ForwardHeldKey", Before::AsItIs},
    {"ToBeginningKey", Before::AsItIs},
    {"ToEndKey", Before::AsItIs},
    {"SlowerKey", Before::AsItIs},
    {"FasterKey", Before::AsItIs},
    {"NormalSpeedKey", Before::AsItIs},
    {"CompleteKey", Before::AsItIs},
    {"SaveKey", Before::AsItIs},
    {"SkipKey", Before::AsItIs},
    {"BusSaysNothingFlag", Before::AsItIs},
};

constexpr std::string_view kAuthorFields[] = {
    "SystemID", "AuthorID",  "AuthorLastName", "Department",
    "Worktype", "Secretary", "Priority",       "Subject",
};

/// The value of a field, where there is one that a new database takes.
const std::string* Takeable(const Record& row, std::string_view field) {
  const auto found = row.find(std::string(field));
  const bool fits = found != row.end() && found->second.size() <= kLongestValue;
  return fits ? &found->second : nullptr;
}

}  // namespace

std::string DatabaseUpgrade::UpgradeDatabase() {
  // An earlier start has made the copy. This is our own decision: what was put there since then is
  // set aside unread, and a marker alone stays where it is.
  const bool isDone = disk_.Facts(folders_.UpgradeMarkerPath()).has_value();
  if (!isDone && !disk_.Facts(folders_.OldDatabasePath())) return {};
  if (isDone || !Agreed()) {
    SetAside();
    return {};
  }
  const std::string failure = CopySettings();
  WriteMarker();
  loop_.Show({.title = kTitle,
              .text = "Tavlo Deck upgrade is complete.",
              .icon = base::Icon::Information});
  return failure.empty() ? failure : std::string(kNothingTaken) + failure;
}

/// The marker goes last, and only behind the old database: as long as it stands nobody is asked.
void DatabaseUpgrade::SetAside() {
  const std::string oldPath = folders_.OldDatabasePath();
  const std::string aside = folders_.OldDatabaseAsidePath();
  // Some shares neither rename nor delete what is read-only.
  std::ignore = disk_.SetAttributesNormal(oldPath);
  if (disk_.Facts(oldPath)) std::ignore = disk_.Delete(aside);
  if (disk_.Rename(oldPath, aside) != DiskResult::Done) return;
  const std::string marker = folders_.UpgradeMarkerPath();
  if (!disk_.Facts(marker)) return;
  std::ignore = disk_.SetAttributesNormal(marker);
  std::ignore = disk_.Delete(marker);
}

bool DatabaseUpgrade::Agreed() {
  return loop_.Show({.title = kTitle,
                     .text = "Do you wish to import all data from the old database into the new "
                             "one?",
                     .icon = base::Icon::Question,
                     .buttons = base::Buttons::YesNo}) == base::Reply::Yes;
}

std::string DatabaseUpgrade::CopySettings() {
  const std::string path = folders_.OldDatabasePath();
  const OpenedDatabase old = databases_.OpenOld(path);
  if (!old.database) return old.failure;
  std::vector<RowAssignments> rows = GeneralSettingsOf(*old.database);
  std::ranges::move(ImportAuthorsOf(*old.database), std::back_inserter(rows));
  if (rows.empty()) return "There are none in " + path + ".";
  return settings_.WriteRows(rows) ? std::string() : settings_.LastFailure();
}

std::vector<RowAssignments> DatabaseUpgrade::GeneralSettingsOf(SettingsDatabase& old) const {
  const Record row = old.Read(Table::GeneralSettings, 0);
  if (row.empty()) return {};
  Assignments fields;
  for (const TakenField& field : kGeneralFields) {
    if (const std::string* const value = Takeable(row, field.name)) {
      fields.emplace_back(field.name, Taken(field.name, *value));
    } else if (field.before == Before::AsShipped) {
      fields.emplace_back(field.name, Shipped(field.name));
    }
  }
  return {{Table::GeneralSettings, 0, std::move(fields)}};
}

/// Rows are never added: what the old table has beyond the new one is left out.
std::vector<RowAssignments> DatabaseUpgrade::ImportAuthorsOf(SettingsDatabase& old) const {
  const int count = std::min(old.RowCount(Table::ImportAuthors),
                             settings_.Database().RowCount(Table::ImportAuthors));
  std::vector<RowAssignments> rows;
  for (int row = 0; row < count; ++row) {
    const Record author = old.Read(Table::ImportAuthors, row);
    Assignments fields;
    for (const std::string_view field : kAuthorFields) {
      const std::string* const value = Takeable(author, field);
      if (value) fields.emplace_back(field, *value);
    }
    if (!fields.empty()) rows.push_back({Table::ImportAuthors, row, std::move(fields)});
  }
  return rows;
}

std::string DatabaseUpgrade::Shipped(std::string_view field) const {
  return ShippedValue(*FindField(Table::GeneralSettings, field), 0,
                      {.root = folders_.InstallRoot, .revision = {}});
}

std::string DatabaseUpgrade::Taken(std::string_view field, const std::string& stored) const {
  if (FindField(Table::GeneralSettings, field)->form != Form::Path) return stored;
  const std::string path = folders_.MapStoredPath(stored);
  const std::string older = folders_.InstallRoot + std::string(kOlderImportFolder);
  // Who typed it in other letters meant the same folder.
  const bool isOlder = field == "WavQueuePath" && path.size() == older.size() &&
                       base::StartsInEitherCase(path, older);
  return isOlder ? Shipped(field) : path;
}

void DatabaseUpgrade::WriteMarker() {
  const std::string line =
      "Tavlo Deck upgrade finished: " + base::MomentText(loop_.WallClock()) + "\n";
  std::ignore = disk_.Append(folders_.UpgradeMarkerPath(), line);
}

}  // namespace tavlo::store
