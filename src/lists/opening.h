#pragma once

#include <string>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "lists/hooks.h"
#include "playback/preview.h"
#include "playback/transport.h"
#include "store/document_name.h"
#include "store/work_folders.h"

namespace tavlo::lists {

/// What a click on a row does. Until Play, selecting a document is only looking: it is neither
/// locked nor marked.
class Opening {
 public:
  Opening(base::Loop& loop, forms::MainForm& form, forms::ConfigurationForm& config,
          store::WorkFolders& folders, store::DocumentNames& names, playback::AudioEngine& engine,
          playback::Transport& transport, playback::Preview& preview, const Hooks& hooks);

  /// Bare file name of the Queue row last clicked; empty until then.
  std::string SelectedQueueFile;

  void GetSelectedJob();

 private:
  void FillStatusBar();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  store::WorkFolders& folders_;
  store::DocumentNames& names_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  playback::Preview& preview_;
};

}  // namespace tavlo::lists
