#pragma once

#include <string>

#include "lists/completed_list.h"
#include "lists/finishing.h"
#include "lists/opening.h"
#include "lists/queue_list.h"
#include "lists/refresh.h"
#include "store/document_name.h"
#include "store/file_moves.h"
#include "store/work_folders.h"
#include "support/documents.h"
#include "support/playback_bench.h"
#include "support/simulated_disk.h"

namespace tavlo::test {

/// The playback bench with a disk and the lists on it.
struct ListsBench : PlaybackBench {
  SimulatedDisk disk{loop};
  store::WorkFolders folders{disk, "/root"};
  store::DocumentNames names{loop};
  store::FileMoves moves{disk, folders};
  int retrievals = 0;
  int waitingWorkSeen = 0;
  int actions = 0;
  lists::Hooks listHooks;
  lists::QueueList queue{loop, form, window, disk, folders, names, engine};
  lists::Refresh refresh{loop, form, window, engine, transport, queue, hooks, listHooks};
  lists::Opening opening{loop,   form,      config,  folders, names,
                         engine, transport, preview, hooks,   listHooks};
  lists::CompletedList completed{loop,  form,   window,    disk,    folders, names,
                                 moves, engine, transport, opening, hooks};
  lists::Finishing finishing{loop,      form,  config,  window,  folders, moves,    engine,
                             transport, queue, opening, refresh, hooks,   listHooks};

  ListsBench() {
    listHooks.runRetrievalPasses = [this] { ++retrievals; };
    listHooks.countWaitingWork = [this] { ++waitingWorkSeen; };
    listHooks.userActed = [this] { ++actions; };
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
};

}  // namespace tavlo::test
