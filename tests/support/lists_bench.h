#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "intake/claims.h"
#include "intake/import_list.h"
#include "intake/retrieval.h"
#include "lists/completed_list.h"
#include "lists/finishing.h"
#include "lists/opening.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "lists/waiting_work.h"
#include "playback/playback.h"
#include "store/document_files.h"
#include "support/documents.h"
#include "support/playback_bench.h"
#include "window/rescue_folder.h"

namespace tavlo::test {

/// Counts what the lists ask of the rooms that bring work in.
class IntakeTwin : public intake::Retrieval, public lists::WorkFigures {
 public:
  int retrievals = 0;
  int waitingWorkSeen = 0;

  void RunRetrievalPasses() override { ++retrievals; }
  void TakeWaitingWorkAsSeen() override { ++waitingWorkSeen; }
};

/// Converts as the real part does, or fails and leaves the source.
class ImportConversionTwin : public intake::ImportConversion {
 public:
  ImportConversionTwin(SimulatedDisk& disk, SimulatedAudioFile& file, const std::string& directory)
      : disk_(disk), file_(file), directory_(directory) {}

  /// The next files can not be converted.
  bool Fails = false;
  /// Names of what was to be converted.
  std::vector<std::string> Asked;
  std::function<void()> Meanwhile;

  void ConvertImportDssFile(std::string& fileName) override {
    Asked.push_back(fileName);
    const std::string source = directory_ + fileName;
    fileName.replace(fileName.size() - 4, 4, ".wav");
    if (Meanwhile) Meanwhile();
    if (Fails) return;
    disk_.WithFile(directory_ + fileName, disk_.Contents(source));
    file_.Sounds[directory_ + fileName] = {.samples = 80'000};
    disk_.Remove(source);
  }

 private:
  SimulatedDisk& disk_;
  SimulatedAudioFile& file_;
  const std::string& directory_;
};

/// How many of the paths are those of documents that were set aside.
inline std::size_t SetAside(const std::vector<std::string>& paths) {
  return static_cast<std::size_t>(std::ranges::count_if(paths, [](const std::string& path) {
    return path.find("/Rescued/") != path.npos || path.find("/.Rescued ") != path.npos;
  }));
}

/// The playback bench with the lists on its disk.
struct ListsBench : PlaybackBench {
  store::WorkFolders folders{disk, "/root"};
  store::DocumentNames names{loop};
  store::FileMoves moves{disk, folders};
  IntakeTwin intake;
  int& retrievals = intake.retrievals;
  int& waitingWorkSeen = intake.waitingWorkSeen;
  window::RescueFolder rescueFolder{loop, form, disk, folders, Edges().openFolder};
  const store::DocumentFiles files{disk, folders, names, moves, rescueFolder};
  /// Where the converted files stand.
  std::string convertsIn;
  const playback::Playback playback{documentInWork, engine, transport, preview, voice};
  lists::WaitingWork waitingWork{loop, intake};
  lists::QueueList queue{loop, window, files, engine};
  lists::Refresh refresh{loop, window, playback, queue, waitingWork, intake};
  ImportConversionTwin conversion{disk, file, convertsIn};
  intake::Claims claims{loop, disk, moves, {.host = "desk", .process = 41}};
  intake::ImportList importList{loop, window, files, playback, conversion, claims};
  lists::Opening opening{loop, window, files, playback, waitingWork, importList.SelectedImportFile};
  lists::CompletedList completed{loop, window, files, playback, opening};
  lists::Finishing finishing{loop, window, files, playback, queue, opening, waitingWork, intake};

  ListsBench() {
    disk.WithFolder("/root");
    folders.MakeTree();
    queue.MakeColumns("Subject");
    config.txtSubjectHeading.Value = "Subject";
    config.txtAutoQueueJob.Value = "N";
    form.listViewInQueue.Visible = true;
    form.cmdUpdateFileList.Enabled = true;
  }

  /// Puts a document into the InQueue folder, ten seconds long unless told otherwise.
  std::string Drop(const std::string& name, const SimulatedSound& sound = {.samples = 80'000}) {
    const std::string path = folders.InQueuePath + name;
    disk.WithFile(path, "sound of " + name);
    file.Sounds[path] = sound;
    return path;
  }
  std::string Drop(const Document& document, const SimulatedSound& sound = {.samples = 80'000}) {
    return Drop(document.Name(), sound);
  }

  std::string Cell(int row, int column) { return form.listViewInQueue.TextAt(row, column); }
  int Rows() { return static_cast<int>(form.listViewInQueue.Rows().size()); }
  int RowOf(const std::string& fileName) {
    for (int row = 0; row < Rows(); ++row) {
      if (Cell(row, forms::document_column::FileName) == fileName) return row;
    }
    return -1;
  }
  void ClickRowOf(const std::string& fileName) { form.listViewInQueue.RowClick(RowOf(fileName)); }
  /// The file names of all rows, sorted.
  std::vector<std::string> Listed() {
    std::vector<std::string> listed;
    for (int row = 0; row < Rows(); ++row) {
      listed.push_back(Cell(row, forms::document_column::FileName));
    }
    std::ranges::sort(listed);
    return listed;
  }
  /// Puts a document that is listed in work, stopped at that sample.
  void WorkOn(const std::string& fileName, double sample) {
    ClickRowOf(fileName);
    form.cmdPlay.Press(forms::By::Hand);
    form.cmdStop.Press(forms::By::Hand);
    documentInWork.CurrentSamplePosition = sample;
    prompts.clear();
  }
};

}  // namespace tavlo::test
