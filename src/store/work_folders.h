#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/message_box.h"
#include "store/disk.h"
#include "store/folder_walk.h"

namespace tavlo::store {

/// The output rates, in kHz, for which there is a conversion library.
inline constexpr std::array<std::string_view, 6> kDssCodecRates{"8", "11", "12", "16", "22", "44"};

/// The four paths that the configuration may set.
enum class QueuePath { Ew2, Ds2, Wav, Eu2 };

enum class Locked {
  No,
  Yes,
  NotKnown,    ///< The process has no handles or memory left to ask.
  OutOfReach,  ///< The folder gave no answer: whoever walks over it ends as when it fails.
};

/// The settings that `ReloadQueuePaths` reads, as the settings store holds them.
struct QueuePathSettings {
  std::string ew2QueuePath;
  std::string ds2QueuePath;
  std::string wavQueuePath;
  std::string eu2QueuePath;
  std::string viewDelay;
};

/// The folder tree is the database of documents: a document is waiting, completed or to be imported
/// because of the folder that holds its file. All of the tree hangs under one root, and this is the
/// one place that spells its names. Folder paths end in a separator, file paths do not.
class WorkFolders {
 public:
  /// `installRoot` is a full path without a trailing separator. Makes nothing.
  WorkFolders(Disk& disk, std::string installRoot);

  const std::string InstallRoot;

  /// Documents that wait to be typed, and what FTP fetched. Fixed.
  const std::string InQueuePath;
  const std::string FtpQueuePath;
  /// The configured drop folders; they may lie anywhere. Empty until `ReloadQueuePaths`.
  std::string Ew2QueuePath;
  std::string Ds2QueuePath;
  std::string WavQueuePath;
  std::string Eu2QueuePath;
  /// Seconds; read with the paths, and no rule acts on it.
  std::uint8_t ViewDelay = 0;

  std::string CompletedPath() const { return Below("Files/Completed/"); }
  /// Where documents go that a rule would have destroyed. Not in the tree that is made at start.
  std::string RescuedPath() const { return Below("Files/Rescued/"); }
  std::string PromptsPath() const { return Below("Prompts/"); }
  std::string FasciaPath() const { return Below("Fascia/"); }
  std::string ReportsPath() const { return Below("Reports/"); }
  std::string QueueReportPath() const;
  std::string CompletedReportPath() const;
  /// What the purge has deleted, and the log before that one.
  std::string PurgeLogPath() const;
  std::string OldPurgeLogPath() const;
  std::string SettingsDatabasePath() const { return Below("Lyrane_Tavlo_Deck.mdb"); }
  std::string OldDatabasePath() const;
  /// The old database once it has been set aside.
  std::string OldDatabaseAsidePath() const;
  std::string UpgradeMarkerPath() const;
  std::string DssCodecFolder() const;
  /// The conversion library of one output rate in kHz, one of `kDssCodecRates`.
  std::string DssCodecPath(std::string_view rate) const;
  std::string MuLawHeaderPath() const;
  std::string PedalWatchPath() const;

  /// What the default buttons of the configuration put back: no trailing separator.
  std::string DefaultQueuePath(QueuePath path) const;

  /// Makes the tree, one level at a time. What cannot be made, or stands already, is passed over.
  void MakeTree();

  /// Takes the four configured paths and the delay from the settings; makes no folder. A delay that
  /// is no byte leaves `ViewDelay` as it was.
  void ReloadQueuePaths(const QueuePathSettings& settings);
  /// A configured path as the path values hold it: mapped and with its trailing separator.
  std::string QueuePathOf(std::string_view setting) const;
  /// A path as this platform knows it. Old databases hold the tree under its Windows root, in
  /// either case; such a path is mapped to our root, the tree's folders spelled as the tree spells
  /// them, without a separator at its end. Any other path is returned as it is.
  std::string MapStoredPath(std::string_view stored) const;

  /// Yes while another program writes the file, or when it cannot be opened at all. A file that is
  /// free is given its normal attributes: a document stops being read-only by being looked at.
  Locked FileIsLocked(const std::string& path);
  /// The same of the file at which a walk stands.
  static Locked FileIsLocked(FolderWalk& walk);

  /// What a scan shows that cannot reach the InQueue folder.
  base::MessageBox QueueNetworkFault() const;
  /// The same for the Completed folder.
  base::MessageBox CompletedPathFault() const;

 private:
  std::string Below(std::string_view name) const;

  Disk& disk_;
};

}  // namespace tavlo::store
