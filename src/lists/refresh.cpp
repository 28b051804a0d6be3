#include "lists/refresh.h"

namespace tavlo::lists {
namespace {

using base::operator""ms;

}  // namespace

Refresh::Refresh(base::Loop& loop, forms::MainForm& form, window::MainWindow& window,
                 playback::AudioEngine& engine, playback::Transport& transport, QueueList& queue,
                 const playback::Hooks& sound, const Hooks& hooks)
    : tmrWorkWaitingAlert(loop, "tmrWorkWaitingAlert", 5000ms),
      tmrGetAllJobs(loop, "tmrGetAllJobs", 100ms),
      loop_(loop),
      form_(form),
      window_(window),
      engine_(engine),
      transport_(transport),
      queue_(queue),
      sound_(sound),
      hooks_(hooks) {
  form_.cmdUpdateFileList.OnPress = [this] { UpdateFileList(); };
  tmrGetAllJobs.OnTick = [this] { GetAllJobs(); };
}

void Refresh::UpdateFileList() {
  // A selection is inside its wait: it would go on with a row that is no longer there.
  if (window_.guards.ListPauseActive) return;
  tmrWorkWaitingAlert.Stop();
  transport_.StopWindAndPreview();
  engine_.StopPlay();
  engine_.CloseFile();
  {
    const forms::Hourglass hourglass(form_.frmMain);
    // What Play or a click would begin in the waits, the rest of the refresh would cut short.
    const window::Raised pause(window_.guards.ListPauseActive);
    form_.listViewInQueue.Enabled = false;
    form_.frameInQueue.Caption = "Queue";
    form_.listViewInQueue.Visible = false;
    form_.cmdUpdateFileList.Visible = false;
    SetMenusEnabled(false);
    loop_.Wait(500ms);
    hooks_.RunRetrievalPasses();
    queue_.RefreshQueueList();
    form_.listViewInQueue.Visible = true;
    loop_.Wait(500ms);
    form_.listViewInQueue.Enabled = true;
    form_.cmdUpdateFileList.Visible = true;
    SetMenusEnabled(true);
    form_.cmdPlay.Enabled = false;
    form_.lblFilePositionHMS.Value = "00:00:00";
    if (!window_.guards.QuietRefresh) sound_.PlayPrompt("RefreshQueue");
  }
  if (!window_.guards.QuietRefresh) window_.FocusAway();
  hooks_.TakeWaitingWorkAsSeen();
  tmrWorkWaitingAlert.Start();
}

void Refresh::GetAllJobs() {
  tmrGetAllJobs.Stop();
  const forms::Hourglass hourglass(form_.frmMain);
  // A document that a click and Play put in work here would find the menus freed around it.
  const window::Raised pause(window_.guards.ListPauseActive);
  form_.listViewInQueue.Enabled = false;
  hooks_.RunRetrievalPasses();
  loop_.Wait(1000ms);
  queue_.RefreshQueueList();
  form_.listViewInQueue.Visible = true;
  loop_.Wait(500ms);
  form_.listViewInQueue.Enabled = true;
  form_.cmdUpdateFileList.Enabled = true;
  form_.mnuFile.Enabled = true;
  form_.mnuView.Enabled = true;
  if (!form_.frameFtp.Visible) form_.mnuReport.Enabled = true;
}

void Refresh::SetMenusEnabled(bool enabled) {
  form_.mnuFile.Enabled = enabled;
  form_.mnuView.Enabled = enabled;
  form_.mnuReport.Enabled = enabled;
}

}  // namespace tavlo::lists
