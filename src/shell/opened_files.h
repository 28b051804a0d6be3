#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "intake/dropped_files.h"
#include "playback/document_in_work.h"
#include "shell/file_handover.h"
#include "window/main_window.h"

namespace tavlo::shell {

/// Files that somebody opens with the deck: those that its start was given, and those that later
/// starts hand over. They are copied into the Queue as if a hand had let them go over its list, as
/// soon as a hand could do that, and the Queue then shows. Until then they wait: for the first
/// list, for the end of a document in work, of a list change or of a message box, for the
/// configuration to close.
class OpenedFiles {
 public:
  /// As many may wait. Of more it is said that they were not taken.
  static constexpr std::size_t kMost = 1'000;

  /// All of them must outlive it.
  struct Parts {
    base::Loop& loop;
    window::MainWindow& window;
    const playback::DocumentInWork& documentInWork;
    intake::DroppedFiles& droppedFiles;
    FileHandover& handover;
  };
  explicit OpenedFiles(const Parts& parts);

  /// Looks whether what waits may be taken; runs only while something waits.
  base::Timer tmrOpenedFiles;

  /// Takes the files that this start was given, full paths, and from here on those of later starts.
  void Begin(const std::vector<std::string>& given);
  /// The deck ends and nothing waits any more: copies what does, for the next start to show.
  void End();

 private:
  void Add(const std::vector<std::string>& paths);
  /// Files of another start: whoever opened them wants to see the deck.
  void Come(const std::vector<std::string>& paths);
  void ComeToFront();
  void Look();
  bool MayTake() const;
  void Take();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  const playback::DocumentInWork& documentInWork_;
  intake::DroppedFiles& droppedFiles_;
  FileHandover& handover_;
  std::vector<std::string> waiting_;
  std::size_t tooMany_ = 0;  ///< That came while so many waited.
  bool frontIsOwed_ = false;
};

}  // namespace tavlo::shell
