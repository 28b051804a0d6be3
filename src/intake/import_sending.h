#pragma once

#include <string>

#include "base/loop.h"
#include "forms/main_form.h"
#include "intake/carrier.h"
#include "intake/claims.h"
#include "intake/import_in_words.h"
#include "intake/import_list.h"
#include "playback/playback.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::intake {

/// Sends files of the import directory on show to the Queue, under names that are composed of the
/// profile on show and the clock. Of a file's own name only the last four characters stay.
///
/// A name that is taken in the Queue is passed over for the next second, since what waits there
/// gives way to nothing. On the loop's thread; what it is handed must outlive it.
class ImportSending {
 public:
  ImportSending(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
                const playback::Playback& playback, ImportList& list, Claims& claims);

 private:
  void SendOne();
  void SendAll();
  ImportBatch SendBatch(const std::string& folder, const store::Listing& listing);
  static void CountFailure(const ImportSent& sent, ImportBatch& batch);
  void ShowBatch(const ImportBatch& batch);
  ImportSent SendToQueue(const std::string& folder, const std::string& name,
                         base::CalendarTime sentAt);
  ImportSent MoveToQueue(const std::string& folder, const std::string& name,
                         const std::string& target);
  ImportSent CopyToQueue(const std::string& folder, const std::string& name,
                         const std::string& target);
  std::string ComposedName(const std::string& name, base::CalendarTime sentAt) const;

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  store::Disk& disk_;
  store::WorkFolders& folders_;
  store::FileMoves& moves_;
  Carrier carrier_;
  playback::AudioEngine& engine_;
  playback::Voice& voice_;
  ImportList& list_;
};

/// The times of a batch, by which its names differ. The seconds run on by 1, then 2, then 3; past
/// 59 the rest is thrown away and the minute goes on, and past 23 the hour begins anew on the same
/// date. This is intended.
class BatchTimes {
 public:
  explicit BatchTimes(base::CalendarTime start) : time_(start) {}

  /// Goes on to the time of the next file. False when there is none any more: the sum of second and
  /// step does not fit into a byte.
  [[nodiscard]] bool Next();
  base::CalendarTime Time() const { return time_; }

 private:
  base::CalendarTime time_;
  int step_ = 0;
};

}  // namespace tavlo::intake
