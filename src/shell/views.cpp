#include "shell/views.h"

#include <utility>

namespace tavlo::shell {

Views::Views(base::Loop& loop, forms::MainForm& form, forms::AboutForm& about,
             window::MainWindow& window, window::ConfigurationWindow& configuration,
             playback::AudioEngine& engine, playback::Transport& transport, lists::QueueList& queue,
             lists::Refresh& refresh, const playback::Hooks& sound, const lists::Hooks& listHooks,
             std::string programVersionText)
    : loop_(loop),
      form_(form),
      about_(about),
      window_(window),
      configuration_(configuration),
      engine_(engine),
      transport_(transport),
      queue_(queue),
      refresh_(refresh),
      sound_(sound),
      listHooks_(listHooks),
      programVersionText_(std::move(programVersionText)) {
  form_.mnuViewQueue.OnPress = [this] { ShowQueue(); };
  form_.mnuMinimize.OnPress = [this] { form_.frmMain.WindowShape = forms::Shape::Minimized; };
  form_.mnuAbout.OnPress = [this] { ShowAbout(); };
  form_.cmdEQ.OnPress = [this] { ShowEqualizer(); };
  about_.mnuClose.OnPress = [this] { about_.frmAbout.Visible = false; };
  about_.frmAbout.OnCloseRequest = [this] { about_.frmAbout.Visible = false; };
}

void Views::ShowQueue() {
  LeaveView();
  form_.frameCompleted.Visible = false;
  form_.frameImport.Visible = false;
  form_.frameFtp.Visible = false;
  form_.frameInQueue.Visible = true;
  const forms::Hourglass hourglass(form_.frmMain);
  form_.frameInQueue.Caption = "Queue";
  form_.cmdUpdateFileList.Visible = false;
  listHooks_.RunRetrievalPasses();
  queue_.RefreshQueueList();
  form_.cmdUpdateFileList.Visible = true;
  window_.CurrentView = "Queue";
  form_.cmdEQ.Enabled = true;
  form_.cmdNormalSpeed.Enabled = true;
  form_.cmdPlay.Enabled = form_.listViewInQueue.ListIndex >= 0;
  listHooks_.TakeWaitingWorkAsSeen();
  refresh_.tmrWorkWaitingAlert.Start();
}

void Views::LeaveView() {
  form_.cmdImportCompleteSnipetStop.Enabled = false;
  form_.cmdImportCompleteSnipetStop.Visible = true;
  transport_.StopWind();
  engine_.StopPlay();
  window_.DisableWindowControls();
  {
    const window::Raised pause(window_.guards.ListPauseActive);
    loop_.Yield();
  }
  window_.EnableWindowControls();
}

void Views::ShowAbout() {
  sound_.StopPrompt();
  engine_.tmrPlaySnipet.Stop();
  about_.lblVersion.Value = "Version " + programVersionText_;
  about_.frmAbout.Centre();
  about_.frmAbout.Visible = true;
}

void Views::ShowEqualizer() {
  if (!window_.guards.ListTransitionBusy) {
    form_.txtPlayerTop.Value = std::to_string(form_.frmMain.Top.Get());
    form_.txtPlayerLeft.Value = std::to_string(form_.frmMain.Left.Get());
    configuration_.ConfigOpenOnEqualizer = true;
    configuration_.Show();
    return;
  }
  window_.FocusAway();
}

}  // namespace tavlo::shell
