#pragma once

#include <string>
#include <string_view>

#include "base/loop.h"
#include "base/message_box.h"
#include "lists/completed_list.h"
#include "lists/queue_list.h"
#include "reports/program_starter.h"
#include "reports/report_text.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::reports {

/// The Report entry of the menu: writes what the list in front shows to a text file, and opens that
/// in the user's word processor, or in what the desktop opens texts with. The file stands as it was
/// or is gone until the new one is whole; there is never half of one. In a view without a list of
/// documents the entry does nothing.
class Report {
 public:
  Report(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
         const lists::QueueList& queue, const lists::CompletedList& completed,
         ProgramStarter& programs, std::string programVersionText);

 private:
  void WriteReport();
  /// Writes and opens it. What has to be said of that; a box without a text when nothing has.
  base::MessageBox WriteAndOpen(ReportKind kind);
  std::string Compose(ReportKind kind);
  /// Writes the text beside `path` and gives it that name.
  store::DiskResult Replace(const std::string& path, std::string_view text);
  store::DiskResult WriteBeside(const std::string& beside, std::string_view text);
  bool Open(const std::string& path);

  base::Loop& loop_;
  window::MainWindow& window_;
  forms::MainForm& form_;
  store::Disk& disk_;
  const store::WorkFolders& folders_;
  const store::DocumentNames& names_;
  const lists::QueueList& queue_;
  const lists::CompletedList& completed_;
  ProgramStarter& programs_;
  const std::string programVersionText_;
};

}  // namespace tavlo::reports
