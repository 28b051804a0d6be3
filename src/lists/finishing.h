#pragma once

#include <optional>
#include <string>

#include "base/loop.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "intake/retrieval.h"
#include "lists/opening.h"
#include "lists/queue_list.h"
#include "lists/waiting_work.h"
#include "playback/playback.h"
#include "store/document_files.h"
#include "window/main_window.h"

namespace tavlo::lists {

/// The three ways to leave a document: Complete moves it to the Completed folder, Save keeps it and
/// stores the position in its name, Skip leaves it as it is. All three bring the list back, fetch
/// new work and may open the next document by themselves.
class Finishing {
 public:
  Finishing(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
            const playback::Playback& playback, QueueList& queue, Opening& opening,
            WaitingWork& waitingWork, intake::Retrieval& retrieval);

  /// A key was pressed, and what it asked for is not stored yet.
  bool OutcomeIsDue() const { return due_.has_value(); }
  /// For the end of the session: stores what the pressed key asked for or, with a document in work,
  /// its position as Save does. The loop does not turn. Where it fails the document keeps its name.
  /// What is being stored already, in whose breath the session ends, is left to that.
  void StoreAtOnce();

 private:
  enum class Way { Complete, Save, Skip };

  void Finish(Way way);
  /// The chosen document is the one in work or the highlighted row of the Queue in front.
  bool ChosenDocumentShows() const;
  void LeaveAndStore(Way way);
  void LeaveDocument();
  void StoreOutcome(Way way);
  /// A folder between which documents move.
  bool OwesAnAnswer() const;
  void SavePosition();
  void MoveToCompleted();
  /// Says why the files did not become what the key asked for.
  void StoredOtherwise(const std::string& words);
  void ReturnToList();
  /// True when the list is whole.
  bool RebuildList(Way way);
  void AutoQueueNextDocument();
  bool QueuesByItself() const;
  void DisableTransportButtons();

  base::Loop& loop_;
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  window::MainWindow& window_;
  store::Disk& disk_;
  store::WorkFolders& folders_;
  store::FileMoves& moves_;
  playback::DocumentInWork& document_;
  playback::AudioEngine& engine_;
  playback::Transport& transport_;
  QueueList& queue_;
  Opening& opening_;
  playback::Voice& voice_;
  WaitingWork& waitingWork_;
  intake::Retrieval& retrieval_;
  std::optional<Way> due_;  ///< What a key asked for, until it is stored.
  bool storing_ = false;    ///< It is being stored; the loop may breathe meanwhile.
  /// What the key that was pressed last asked for has happened, so that it may be spoken of.
  bool storedAsAsked_ = true;
};

}  // namespace tavlo::lists
