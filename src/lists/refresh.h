#pragma once

#include "base/loop.h"
#include "forms/main_form.h"
#include "intake/retrieval.h"
#include "lists/queue_list.h"
#include "lists/waiting_work.h"
#include "playback/playback.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// The refresh of the Queue, by button and at start-up.
class Refresh {
 public:
  Refresh(base::Loop& loop, window::MainWindow& window, const playback::Playback& playback,
          QueueList& queue, WaitingWork& waitingWork, intake::Retrieval& retrieval);

  /// Brings the first work in, once, after the window is on the screen.
  base::Timer tmrGetAllJobs;

 private:
  void UpdateFileList();
  void GetAllJobs();

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  QueueList& queue_;
  playback::Voice& voice_;
  WaitingWork& waitingWork_;
  intake::Retrieval& retrieval_;
};

}  // namespace tavlo::lists
