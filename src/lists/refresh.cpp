#include "lists/refresh.h"

#include "forms/control_groups.h"

namespace tavlo::lists {
namespace {

using base::operator""ms;

/// The Queue and the menus are not to be had while the list is built anew. A refresh that fails on
/// its way gives them back like one that ends.
class Hidden {
 public:
  explicit Hidden(forms::MainForm& form) : form_(form) {
    form_.listViewInQueue.Enabled = false;
    form_.frameInQueue.Caption = "Queue";
    form_.listViewInQueue.Visible = false;
    form_.cmdUpdateFileList.Visible = false;
    SetEnabled(forms::Menus(form_), false);
  }
  ~Hidden() {
    form_.listViewInQueue.Visible = true;
    form_.listViewInQueue.Enabled = true;
    form_.cmdUpdateFileList.Visible = true;
    SetEnabled(forms::Menus(form_), true);
  }
  Hidden(const Hidden&) = delete;

 private:
  forms::MainForm& form_;
};

/// The first list is awaited: a start whose refresh fails on its way is still one.
class Awaited {
 public:
  explicit Awaited(forms::MainForm& form) : form_(form) { form_.listViewInQueue.Enabled = false; }
  ~Awaited() {
    form_.listViewInQueue.Visible = true;
    form_.listViewInQueue.Enabled = true;
    form_.cmdUpdateFileList.Enabled = true;
    form_.mnuFile.Enabled = true;
    form_.mnuView.Enabled = true;
    if (!form_.frameFtp.Visible) form_.mnuReport.Enabled = true;
  }
  Awaited(const Awaited&) = delete;

 private:
  forms::MainForm& form_;
};

}  // namespace

Refresh::Refresh(base::Loop& loop, window::MainWindow& window, const playback::Playback& playback,
                 QueueList& queue, WaitingWork& waitingWork, intake::Retrieval& retrieval)
    : tmrGetAllJobs(loop, "tmrGetAllJobs", 100ms),
      loop_(loop),
      form_(window.Form()),
      window_(window),
      engine_(playback.engine),
      transport_(playback.transport),
      queue_(queue),
      voice_(playback.voice),
      waitingWork_(waitingWork),
      retrieval_(retrieval) {
  form_.cmdUpdateFileList.OnPress = [this] { UpdateFileList(); };
  tmrGetAllJobs.OnTick = [this] { GetAllJobs(); };
}

void Refresh::UpdateFileList() {
  // A selection is inside its wait: it would go on with a row that is no longer there.
  if (!window_.guards.ListsMayChange()) return;
  const WatchPause watchPause(waitingWork_);
  transport_.StopWindAndPreview();
  engine_.StopPlay();
  engine_.CloseFile();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    // Play or a click in the waits would begin something that the rest of the refresh cuts short.
    const window::ListPause pause(window_.guards);
    const Hidden hidden(form_);
    loop_.Wait(500ms);
    retrieval_.RunRetrievalPasses();
    const bool listIsWhole = queue_.RefreshQueueList();
    form_.listViewInQueue.Visible = true;
    loop_.Wait(500ms);
    form_.cmdPlay.Enabled = false;
    form_.lblFilePositionHMS.Value = "00:00:00";
    // A list that could not be read is not said to be up to date.
    if (listIsWhole && !window_.guards.RefreshIsQuiet()) voice_.PlayPrompt("RefreshQueue");
  }
  if (!window_.guards.RefreshIsQuiet()) window_.FocusAway();
  waitingWork_.TakeAsSeen();
}

void Refresh::GetAllJobs() {
  tmrGetAllJobs.Stop();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    // A click and Play could otherwise put a document in work here, and the menus would be enabled
    // around it.
    const window::ListPause pause(window_.guards);
    const Awaited awaited(form_);
    retrieval_.RunRetrievalPasses();
    loop_.Wait(1000ms);
    queue_.RefreshQueueList();
    form_.listViewInQueue.Visible = true;
    loop_.Wait(500ms);
  }
  // What waited at the start is in the list now. Counted as it was then, as much again could come
  // before anybody is told.
  waitingWork_.TakeAsSeen();
}

}  // namespace tavlo::lists
