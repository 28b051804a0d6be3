#include "lists/finishing.h"

#include "forms/control_groups.h"
#include "lists/outcome_in_words.h"
#include "store/saved_position.h"

namespace tavlo::lists {
namespace {

using base::operator""ms;
using playback::PromptName;

/// Holds what a key asked for while it is due and being stored, however that ends.
template <typename Way>
class Due {
 public:
  Due(std::optional<Way>& due, bool& storing, Way way) : due_(due), storing_(storing) {
    due_ = way;
  }
  ~Due() {
    due_.reset();
    storing_ = false;
  }
  Due(const Due&) = delete;

 private:
  std::optional<Way>& due_;
  bool& storing_;
};

}  // namespace

Finishing::Finishing(base::Loop& loop, window::MainWindow& window,
                     const store::DocumentFiles& files, const playback::Playback& playback,
                     QueueList& queue, Opening& opening, WaitingWork& waitingWork,
                     intake::Retrieval& retrieval)
    : loop_(loop),
      form_(window.Form()),
      config_(window.Config()),
      window_(window),
      disk_(files.disk),
      folders_(files.folders),
      moves_(files.moves),
      document_(playback.document),
      engine_(playback.engine),
      transport_(playback.transport),
      queue_(queue),
      opening_(opening),
      voice_(playback.voice),
      waitingWork_(waitingWork),
      retrieval_(retrieval) {
  form_.cmdComplete.OnPress = [this] { Finish(Way::Complete); };
  form_.cmdSave.OnPress = [this] { Finish(Way::Save); };
  form_.cmdSkip.OnPress = [this] { Finish(Way::Skip); };
}

void Finishing::Finish(Way way) {
  // Another list change is inside a wait: it may be about to select something else.
  if (!window_.guards.ListsMayChange()) return;
  // The settings may keep the place of the player waiting, and the ear must not wait with it.
  engine_.HushPlay();
  if (form_.frmMain.WindowShape == forms::Shape::Normal) window_.SavePlayerPosition();
  // A document that was clicked earlier and does not show any more must not be taken.
  if (!ChosenDocumentShows()) opening_.SelectedQueueFile.clear();
  window_.PlayRequested = false;
  DisableTransportButtons();
  // A click in the yield below would change which document is stored.
  form_.listViewInQueue.Enabled = false;
  {
    const window::ListTransition transition(window_.guards);
    form_.frmMain.WindowShape = forms::Shape::Normal;
    LeaveAndStore(way);
    ReturnToList();
    const bool listIsWhole = RebuildList(way);
    if (way == Way::Complete) opening_.SelectedQueueFile.clear();
    document_.CurrentDocumentPath.clear();
    // When the list could not be read it is not known which document is next.
    if (listIsWhole) AutoQueueNextDocument();
  }
  waitingWork_.TakeAsSeen();
  waitingWork_.UserActed();
  waitingWork_.GoOn();
  window_.FocusAway();
}

bool Finishing::ChosenDocumentShows() const {
  if (window_.MiniPlayerShows()) return true;
  const forms::Table& list = form_.listViewInQueue;
  return window_.QueueDocumentShows() &&
         list.TextAt(list.ListIndex, forms::document_column::FileName) ==
             opening_.SelectedQueueFile;
}

void Finishing::LeaveAndStore(Way way) {
  const Due due(due_, storing_, way);
  LeaveDocument();
  // The end of the session may have come in that pass and stored it.
  if (!due_) return;
  storing_ = true;
  StoreOutcome(way);
}

void Finishing::StoreAtOnce() {
  // What a folder owes an answer for may still happen, so it is not asked for twice.
  if (storing_ && OwesAnAnswer()) return;
  if (!due_ && !document_.IsInWork()) return;
  const bool keepsPlace = !due_ && form_.frmMain.WindowShape == forms::Shape::Normal;
  transport_.StopWindAndPreview();
  engine_.StopPlay();
  engine_.CloseFile();
  // The document first: the settings may lie on a disk that gives trouble.
  StoreOutcome(due_.value_or(Way::Save));
  due_.reset();
  form_.cmdSkip.Enabled = false;
  if (keepsPlace) window_.SavePlayerPosition();
}

bool Finishing::OwesAnAnswer() const {
  return disk_.OutOfReach(folders_.InQueuePath) || disk_.OutOfReach(folders_.CompletedPath());
}

void Finishing::LeaveDocument() {
  document_.DocumentPrimed = false;
  transport_.StopWindAndPreview();
  engine_.StopPlay();
  loop_.Yield();
  // The file is closed first, because what follows renames or moves it.
  engine_.CloseFile();
}

void Finishing::StoreOutcome(Way way) {
  storedAsAsked_ = true;
  if (way == Way::Skip) return;
  form_.slPosition.Value = 0;
  // Without a name the paths below are those of whole folders.
  storedAsAsked_ = !opening_.SelectedQueueFile.empty();
  if (!storedAsAsked_) return;
  if (way == Way::Complete) return MoveToCompleted();
  SavePosition();
}

void Finishing::SavePosition() {
  const double position = document_.CurrentSamplePosition;
  const store::Moved stored =
      store::WriteSavedPosition(position, opening_.SelectedQueueFile, folders_, moves_);
  const std::string& name = opening_.SelectedQueueFile;
  if (stored.result != store::DiskResult::Done) {
    return StoredOtherwise(SaveFailureInWords(stored, name));
  }
  // Some names take a position that no opening of the document finds again, or none at all.
  store::DocumentNames names(loop_);
  names.ParseDocumentName(name);
  const bool lost = position >= 1 && names.Record.SavedPosition == 0;
  if (lost) StoredOtherwise(NamelessPositionInWords(name));
}

void Finishing::MoveToCompleted() {
  const std::string& name = opening_.SelectedQueueFile;
  // This is intended: the document leaves the Queue even when its copy failed, and is then kept in
  // the rescue folder. It takes its name at position 0 on the way: under that name another document
  // may wait in the Queue.
  const store::Moved moved = moves_.MoveOrRescue(
      folders_.InQueuePath + name, folders_.CompletedPath() + store::CompletedName(name));
  window_.Say(MoveInWords(Trip::ToCompleted, moved, name, folders_));
  storedAsAsked_ = moved.result == store::DiskResult::Done;
}

void Finishing::StoredOtherwise(const std::string& words) {
  storedAsAsked_ = false;
  window_.Say(words);
}

void Finishing::ReturnToList() {
  form_.lblFilePositionHMS.Value = "00:00:00";
  SetEnabled(forms::FinishingKeys(form_), false);
  form_.listViewInQueue.Visible = true;
  form_.cmdUpdateFileList.Enabled = true;
  form_.listViewInQueue.Enabled = true;
  window_.LeaveMiniPlayer();
  SetEnabled(forms::TransportKeys(form_), false);
  SetEnabled(forms::SoundShapingKeys(form_), false);
  form_.Slider1.Enabled = false;
  form_.cmdImportCompleteSnipetStop.Visible = true;
  form_.cmdStop.Visible = false;
  form_.Slider1.Value = engine_.PlaySpeedPercent - 100;
  form_.lblFilePositionHMS.Visible = false;
}

bool Finishing::RebuildList(Way way) {
  const forms::Hourglass hourglass(form_.frmMain);
  form_.frameInQueue.Caption = "Queue";
  const bool staysInList = !QueuesByItself();
  if (staysInList && storedAsAsked_) {
    voice_.PlayPrompt(way == Way::Complete ? PromptName("Complete")
                      : way == Way::Save   ? PromptName("Save")
                                           : PromptName("Return"));
  }
  form_.listViewInQueue.Visible = false;
  form_.cmdUpdateFileList.Enabled = false;
  SetEnabled(forms::Menus(form_), false);
  loop_.Wait(500ms);
  retrieval_.RunRetrievalPasses();
  const bool listIsWhole = queue_.RefreshQueueList();
  form_.listViewInQueue.Visible = true;
  form_.cmdUpdateFileList.Enabled = true;
  SetEnabled(forms::Menus(form_), true);
  const bool allDone = storedAsAsked_ && listIsWhole && queue_.QueueCount == 0;
  if (way == Way::Complete && staysInList && allDone) voice_.PlayPrompt("AllDone");
  return listIsWhole;
}

bool Finishing::QueuesByItself() const { return config_.txtAutoQueueJob.Value.Get() == "Y"; }

void Finishing::AutoQueueNextDocument() {
  if (!QueuesByItself()) return;
  const forms::Table& list = form_.listViewInQueue;
  for (int row = 0; row < static_cast<int>(list.Rows().size()); ++row) {
    if (list.TextAt(row, forms::document_column::Saved) == "Saved") continue;
    opening_.SelectedQueueFile = list.TextAt(row, forms::document_column::FileName);
    form_.listViewInQueue.ListIndex = row;
    opening_.GetSelectedJob();
    return;
  }
}

void Finishing::DisableTransportButtons() {
  SetEnabled(forms::FinishingKeys(form_), false);
  SetEnabled(forms::MovingKeys(form_), false);
  form_.cmdPlay.Enabled = false;
  SetEnabled(forms::SoundShapingKeys(form_), false);
}

}  // namespace tavlo::lists
