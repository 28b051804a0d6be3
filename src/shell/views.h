#pragma once

#include <vector>

#include "base/loop.h"
#include "forms/main_form.h"
#include "playback/playback.h"
#include "shell/view.h"
#include "window/main_window.h"

namespace tavlo::shell {

/// The views of the main window, of which one shows.
class Views {
 public:
  Views(base::Loop& loop, window::MainWindow& window, const playback::Playback& playback);

  /// Offers a view in its menu entry; it must outlive the window.
  void Register(View& view);

 private:
  void Show(View& view);
  void LeaveView();

  base::Loop& loop_;
  forms::MainForm& form_;
  window::MainWindow& window_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  std::vector<View*> views_;
};

}  // namespace tavlo::shell
