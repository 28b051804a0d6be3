#pragma once

#include <string>

#include "base/loop.h"
#include "base/message_box.h"
#include "forms/main_form.h"
#include "lists/document_scan.h"
#include "lists/opening.h"
#include "playback/playback.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// The documents that are finished. They are kept for a while, so that one can be heard again, sent
/// back to the Queue, or deleted. Like the Queue the list holds no data of its own.
class CompletedList {
 public:
  CompletedList(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
                const playback::Playback& playback, Opening& opening);

  /// Rows in the list.
  int CompletedCount = 0;
  /// Sum of the rows' lengths, milliseconds.
  double CompletedTotalLength = 0;

  /// Makes the columns, once at start.
  void MakeColumns(const std::string& subjectHeading);
  void RefreshCompletedList();
  /// The three buttons of the frame are enabled while the list has rows.
  void SetCompletedButtons();

 private:
  void ReturnToQueue();
  void DeleteOne();
  void DeleteAll();
  void LetPendingEventsPass();
  struct Deletion {
    bool any = false;                                    ///< There was something to delete.
    bool othersStay = false;                             ///< Files that are not waves.
    store::DiskResult result = store::DiskResult::Done;  ///< The first one that is not Done.
  };
  /// Deletes all waves of the folder, listed or not. Out of reach, it asks for no more of them.
  Deletion DeleteWaves();
  store::DiskResult WhyCutShort(const store::Listing& walk);
  void WriteCaption(double totalMilliseconds);
  bool UserAgrees(const char* title, const char* question);
  /// File name of the highlighted row; empty when there is none. A name that was clicked before the
  /// list was built anew does not count.
  std::string HighlightedFile() const;

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  store::Disk& disk_;
  store::WorkFolders& folders_;
  store::DocumentNames& names_;
  store::FileMoves& moves_;
  store::RescueCount& rescued_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  Opening& opening_;
  playback::Voice& voice_;
  DocumentScan scan_;
};

}  // namespace tavlo::lists
