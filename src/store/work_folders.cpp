#include "store/work_folders.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>
#include <vector>

#include "base/text.h"

namespace tavlo::store {
namespace {

constexpr std::string_view kWindowsRoot = "c:\\Lyrane\\TavloDeck";
constexpr std::string_view kLibrarySuffix = ".so";
constexpr int kImportDirectories = 25;

/// The folders that are made at start, in the order of making.
std::vector<std::string> TreeFolders() {
  std::vector<std::string> folders{"Files", "Files/eW2Queue", "Files/dS2Queue", "Files/Completed",
                                   "Files/ImportQueue"};
  for (int number = 1; number <= kImportDirectories; ++number) {
    folders.push_back("Files/ImportQueue/" + std::to_string(number));
  }
  folders.insert(folders.end(), {"Files/InQueue", "PlaceOldDatabaseHere", "Reports",
                                 "Files/eU2Queue", "Files/FtpQueue"});
  return folders;
}

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

/// Windows knows no case in paths.
bool SameOnWindows(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char x, char y) { return Lower(x) == Lower(y); });
}

Locked LockedBy(Readiness readiness) {
  switch (readiness) {
    case Readiness::Free:
    case Readiness::FreeReadOnly:
      return Locked::No;
    case Readiness::ProcessInTrouble:
      return Locked::NotKnown;
    case Readiness::OutOfReach:
      return Locked::OutOfReach;
    case Readiness::InUse:
    case Readiness::Unusable:
      break;
  }
  return Locked::Yes;
}

/// A file that is free stays so when its attributes can not be changed.
Locked LockedOnceNormal(DiskResult madeNormal) {
  return madeNormal == DiskResult::OutOfReach ? Locked::OutOfReach : Locked::No;
}

}  // namespace

WorkFolders::WorkFolders(Disk& disk, std::string installRoot)
    : InstallRoot(std::move(installRoot)),
      InQueuePath(Below("Files/InQueue/")),
      FtpQueuePath(Below("Files/FtpQueue/")),
      disk_(disk) {}

std::string WorkFolders::Below(std::string_view name) const {
  return InstallRoot + "/" + std::string(name);
}

std::string WorkFolders::QueueReportPath() const {
  return ReportsPath() + "Tavlo_Deck_Queue_Report.txt";
}

std::string WorkFolders::CompletedReportPath() const {
  return ReportsPath() + "Tavlo_Deck_Completed_Report.txt";
}

std::string WorkFolders::PurgeLogPath() const { return ReportsPath() + "Tavlo_Deck_Purge_Log.txt"; }

std::string WorkFolders::OldPurgeLogPath() const {
  return ReportsPath() + "Tavlo_Deck_Purge_Log_Old.txt";
}

std::string WorkFolders::OldDatabasePath() const {
  return Below("PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb");
}

std::string WorkFolders::OldDatabaseAsidePath() const {
  return Below("PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.md1");
}

std::string WorkFolders::UpgradeMarkerPath() const {
  return Below("PlaceOldDatabaseHere/UpgradeFinished.txt");
}

std::string WorkFolders::DssCodecFolder() const { return Below("DssCodec"); }

std::string WorkFolders::DssCodecPath(std::string_view rate) const {
  return DssCodecFolder() + "/DssCodec" + std::string(rate) + std::string(kLibrarySuffix);
}

std::string WorkFolders::MuLawHeaderPath() const {
  return Below("MuLawHeader") + std::string(kLibrarySuffix);
}

std::string WorkFolders::PedalWatchPath() const {
  return Below("PedalWatch") + std::string(kLibrarySuffix);
}

std::string WorkFolders::DefaultQueuePath(QueuePath path) const {
  switch (path) {
    case QueuePath::Ew2:
      return Below("Files/eW2Queue");
    case QueuePath::Ds2:
      return Below("Files/dS2Queue");
    case QueuePath::Wav:
      return Below("Files/ImportQueue");
    case QueuePath::Eu2:
      return Below("Files/eU2Queue");
  }
  return {};
}

void WorkFolders::MakeTree() {
  for (const auto& folder : TreeFolders()) std::ignore = disk_.MakeFolder(Below(folder));
}

void WorkFolders::ReloadQueuePaths(const QueuePathSettings& settings) {
  Ew2QueuePath = QueuePathOf(settings.ew2QueuePath);
  Ds2QueuePath = QueuePathOf(settings.ds2QueuePath);
  WavQueuePath = QueuePathOf(settings.wavQueuePath);
  Eu2QueuePath = QueuePathOf(settings.eu2QueuePath);
  const double delay = std::nearbyint(base::NumberValue(settings.viewDelay));
  if (delay >= 0 && delay <= std::numeric_limits<std::uint8_t>::max()) {
    ViewDelay = static_cast<std::uint8_t>(delay);
  }
}

std::string WorkFolders::QueuePathOf(std::string_view setting) const {
  return MapStoredPath(setting) + "/";
}

std::string WorkFolders::MapStoredPath(std::string_view stored) const {
  if (!SameOnWindows(stored.substr(0, kWindowsRoot.size()), kWindowsRoot)) {
    return std::string(stored);
  }
  std::string below(stored.substr(kWindowsRoot.size()));
  if (!below.empty() && below[0] != '\\') return std::string(stored);
  std::replace(below.begin(), below.end(), '\\', '/');
  while (below.ends_with('/')) below.pop_back();
  for (const auto& folder : TreeFolders()) {
    const std::string ours = "/" + folder;
    const bool leadsThere = SameOnWindows(below.substr(0, ours.size()), ours) &&
                            (below.size() == ours.size() || below[ours.size()] == '/');
    if (leadsThere) below.replace(0, ours.size(), ours);
  }
  return InstallRoot + below;
}

Locked WorkFolders::FileIsLocked(const std::string& path) {
  const Readiness readiness = disk_.TestReadiness(path);
  if (readiness != Readiness::FreeReadOnly) return LockedBy(readiness);
  return LockedOnceNormal(disk_.SetAttributesNormal(path));
}

Locked WorkFolders::FileIsLocked(FolderWalk& walk) {
  const Readiness readiness = walk.TestReadiness();
  if (readiness != Readiness::FreeReadOnly) return LockedBy(readiness);
  return LockedOnceNormal(walk.SetAttributesNormal());
}

base::MessageBox WorkFolders::QueueNetworkFault() const {
  // The wording is kept as users know it, the carriage return included.
  return {.title = "Tavlo Deck - Network Fault",
          .text = "The .wav file's path " + InQueuePath +
                  " can not be found.\n\n\r"
                  "The network may be down.  Please try again later, or enter the configuration "
                  "menu to check the settings for this path",
          .icon = base::Icon::Warning};
}

base::MessageBox WorkFolders::CompletedPathFault() const {
  return {.title = "Tavlo Deck - Path Fault",
          .text =
              "The completed files path can not be found.\n"
              "Please verify that a " +
              Below("Files/Completed") + " directory exists",
          .icon = base::Icon::Warning};
}

}  // namespace tavlo::store
