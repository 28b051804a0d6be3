#pragma once

#include <string>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "lists/waiting_work.h"
#include "playback/playback.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// What a click on a row does. Until Play, selecting a document is only looking: it is neither
/// locked nor marked.
class Opening {
 public:
  /// `selectedImportFile` is the Import list's, which empties it when it is built anew.
  Opening(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
          const playback::Playback& playback, WaitingWork& waitingWork,
          std::string& selectedImportFile);

  /// Bare file name of the row last clicked in each list; empty until then.
  std::string SelectedQueueFile;
  std::string SelectedCompletedFile;
  std::string& SelectedImportFile;

  void GetSelectedJob();
  /// The two lists beside the Queue only let a document be heard: it cannot be played from there,
  /// and one that holds no sound is only spoken of.
  void PreviewCompletedDocument();
  /// `subdirectory` is the number of an import directory as text; "0" is the import folder itself.
  void PreviewImportDocument(const std::string& subdirectory);

 private:
  void WireQueue();
  void WireCompleted();
  void WireImport();
  void SoundBeginning(const std::string& documentPath);
  void FillStatusBar();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  store::WorkFolders& folders_;
  store::DocumentNames& names_;
  playback::DocumentInWork& document_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  playback::Preview& preview_;
  playback::Voice& voice_;
  WaitingWork& waitingWork_;
};

}  // namespace tavlo::lists
