#pragma once

#include <map>
#include <string>

#include "base/loop.h"
#include "forms/main_form.h"
#include "intake/claims.h"
#include "intake/directory_counts.h"
#include "intake/import_conversion.h"
#include "intake/import_in_words.h"
#include "playback/playback.h"
#include "store/document_files.h"
#include "store/folder_walk.h"
#include "window/main_window.h"

namespace tavlo::intake {

/// The files of one import directory at a time. Any file is a row, whatever it is called. The list
/// holds no data of its own and is right as of its last scan only: nobody watches the directory.
/// On the loop's thread; what it is handed must outlive it.
class ImportList {
 public:
  ImportList(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
             const playback::Playback& playback, ImportConversion& conversion, Claims& claims);

  /// Rows in the list.
  int ImportCount = 0;
  /// Sum of the rows' lengths, milliseconds.
  double ImportTotalLength = 0;
  /// Bare file name of the row that was clicked last; empty when no row is chosen.
  std::string SelectedImportFile;
  /// Automatic import presses the buttons: nothing is asked or announced.
  bool AutoImportRunning = false;
  /// One run of it has told of a directory that cannot be reached, and tells of no other.
  bool AutoImportTold = false;

  /// Makes the columns, once at start.
  void MakeColumns();
  /// Builds the list of a directory, which is that of `txtWavImportSubdirectory`. DSS files are
  /// converted on the way. True when the list is whole; else it was told, and the rows made so far
  /// stand.
  bool RefreshImportList(const std::string& directory);
  /// The four buttons that act on files are enabled while the list has rows.
  void SetImportButtons();

  /// What both commands that empty a directory leave behind: no rows and a caption with the count
  /// of the Completed list. `empty`: no file stays that the command was for.
  void ShowAsEmptied(bool empty);
  /// Asks a question of the Import view.
  bool UserAgrees(const char* question, base::Reply byDefault);

 private:
  void RefreshByCommand();
  void ShowChosenDirectory();
  void TakeLink();
  void SelectLinkedProfile();
  void DeleteOne();
  void DeleteAll();
  ImportDeletions DeleteDirectory(const std::string& folder);
  /// Deletes a file that is still the one that the list has shown.
  ImportDeletion DeleteIfSeen(const std::string& path);

  store::WalkEnd AddRows(store::FolderWalk& walk, const std::string& folder);
  /// Whole when the walk may go on.
  store::WalkEnd AddRow(store::FolderWalk& walk, const std::string& folder);
  void TellEnd(store::WalkEnd end, const std::string& directory);
  void ForgetRows();
  void WriteCaption(int count, double totalMilliseconds);

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  store::Disk& disk_;
  store::WorkFolders& folders_;
  store::FileMoves& moves_;
  store::RescueCount& rescued_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  playback::Voice& voice_;
  ImportConversion& conversion_;
  Claims& claims_;
  DirectoryCounts counts_;
  /// A header was clicked: from then on every list is sorted.
  bool sorted_ = false;
  /// The choice of a directory is inside its wait.
  bool turning_ = false;
  /// Whose files the rows are.
  std::string listedFolder_;
  /// The files that have rows, by their full paths, as they were when they were listed.
  std::map<std::string, store::FileFacts> seen_;
};

}  // namespace tavlo::intake
