#pragma once

#include "base/loop.h"
#include "forms/main_form.h"
#include "lists/hooks.h"
#include "lists/queue_list.h"
#include "playback/audio_engine.h"
#include "playback/transport.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// The refresh of the Queue, by button and at start-up.
class Refresh {
 public:
  Refresh(base::Loop& loop, forms::MainForm& form, window::MainWindow& window,
          playback::AudioEngine& engine, playback::Transport& transport, QueueList& queue,
          const playback::Hooks& sound, const Hooks& hooks);

  /// Looks for new work while nobody does anything.
  base::Timer tmrWorkWaitingAlert;
  /// Brings the first work in, once, after the window is on the screen.
  base::Timer tmrGetAllJobs;

 private:
  void UpdateFileList();
  void GetAllJobs();
  void SetMenusEnabled(bool enabled);

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  QueueList& queue_;
  const playback::Hooks& sound_;
  const Hooks& hooks_;
};

}  // namespace tavlo::lists
