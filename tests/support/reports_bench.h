#pragma once

#include <string>

#include "reports/report.h"
#include "support/lists_bench.h"

namespace tavlo::test {

/// The lists bench with the Report entry, in an empty Queue view.
struct ReportsBench : ListsBench {
  const std::string queuePath = folders.QueueReportPath();
  const std::string completedPath = folders.CompletedReportPath();
  reports::Report report{loop, window, files, queue, completed, programs, "03.08.00.TD   1.2.3"};

  ReportsBench() {
    completed.MakeColumns("Subject");
    form.listViewInQueue.Clear();
  }

  void Keep(const std::string& name) {
    const std::string path = folders.CompletedPath() + name;
    disk.WithFile(path, "sound of " + name);
    file.Sounds[path] = {.samples = 80'000};
  }
  void ShowQueue() {
    window.CurrentView = "Queue";
    queue.RefreshQueueList();
  }
  void ShowCompleted() {
    window.CurrentView = "Complete";
    completed.RefreshCompletedList();
  }
  void Print() { form.mnuReport.Press(forms::By::Hand); }
  /// Prints a Queue of one document with that word processor in the settings.
  void StartWith(const std::string& wordProcessor) {
    config.txtWordProcessorPath.Value = wordProcessor;
    Drop(Document());
    ShowQueue();
    Print();
  }
};

}  // namespace tavlo::test
