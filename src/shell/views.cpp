#include "shell/views.h"

#include <utility>

#include "window/no_document.h"

namespace tavlo::shell {
namespace {

void Call(const std::function<void()>& hook) {
  if (hook) hook();
}

}  // namespace

Views::Views(base::Loop& loop, forms::MainForm& form, forms::AboutForm& about,
             window::MainWindow& window, window::ConfigurationWindow& configuration,
             playback::AudioEngine& engine, playback::Transport& transport, lists::QueueList& queue,
             lists::CompletedList& completed, lists::Refresh& refresh, const playback::Hooks& sound,
             const lists::Hooks& listHooks, std::string programVersionText,
             std::function<bool()> showSystemInformation, ViewHooks hooks)
    : loop_(loop),
      form_(form),
      about_(about),
      window_(window),
      configuration_(configuration),
      engine_(engine),
      transport_(transport),
      queue_(queue),
      completed_(completed),
      refresh_(refresh),
      sound_(sound),
      listHooks_(listHooks),
      programVersionText_(std::move(programVersionText)),
      showSystemInformation_(std::move(showSystemInformation)),
      hooks_(std::move(hooks)),
      views_{{"Queue", form.frameInQueue, "Queue", &Views::EnterQueue},
             {"Complete", form.frameCompleted, "Completed", &Views::EnterCompleted},
             {"Import", form.frameImport, "Import", &Views::EnterImport},
             {"Ftp", form.frameFtp, nullptr, &Views::EnterFtp}} {
  form_.mnuViewQueue.OnPress = [this] { Show(views_[0]); };
  form_.mnuViewCompleted.OnPress = [this] { Show(views_[1]); };
  form_.mnuViewImport.OnPress = [this] { Show(views_[2]); };
  form_.mnuViewFtp.OnPress = [this] { Show(views_[3]); };
  form_.mnuMinimize.OnPress = [this] { form_.frmMain.WindowShape = forms::Shape::Minimized; };
  form_.mnuAbout.OnPress = [this] { ShowAbout(); };
  form_.cmdEQ.OnPress = [this] { ShowEqualizer(); };
  about_.mnuSystemInfo.OnPress = [this] { ShowSystemInformation(); };
  about_.mnuClose.OnPress = [this] { about_.frmAbout.Visible = false; };
  about_.frmAbout.OnCloseRequest = [this] { about_.frmAbout.Visible = false; };
}

void Views::Show(const View& view) {
  // Another list change is inside a wait: it would go on in a view that is no longer its own.
  if (window_.guards.ListPauseActive) return;
  LeaveView();
  for (const View& other : views_) other.frame.Visible = &other == &view;
  const forms::Hourglass hourglass(form_.frmMain);
  if (view.caption) view.frame.Caption = view.caption;
  window_.CurrentView = view.word;
  (this->*view.enter)();
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
  // What was chosen in the view that is left does not show any more.
  window::ShowNoDocument(form_);
}

void Views::EnterQueue() {
  {
    // A pedal works under the box of a list that can not be reached, too.
    const window::Raised pause(window_.guards.ListPauseActive);
    form_.cmdUpdateFileList.Visible = false;
    listHooks_.RunRetrievalPasses();
    queue_.RefreshQueueList();
    form_.cmdUpdateFileList.Visible = true;
  }
  SetSoundShapingEnabled(true);
  form_.cmdPlay.Enabled = form_.listViewInQueue.ListIndex >= 0;
  TakeWorkAsSeen();
}

void Views::EnterCompleted() {
  SetSoundShapingEnabled(true);
  DisableTransportKeys();
  completed_.RefreshCompletedList();
  completed_.SetCompletedButtons();
}

void Views::EnterImport() {
  SetSoundShapingEnabled(true);
  DisableTransportKeys();
  form_.cmdRefreshImportList.Visible = false;
  Call(hooks_.buildImportList);
  // A key that no room answers to is not shown.
  form_.cmdRefreshImportList.Visible = form_.cmdRefreshImportList.OnPress != nullptr;
  for (forms::Command* button :
       {&form_.cmdSendImportFileToQueue, &form_.cmdSendAllImportFilesToQueue,
        &form_.cmdDeleteOneImportFile, &form_.cmdDeleteAllImportFile}) {
    button->Enabled = !form_.listViewImport.Rows().empty();
  }
  TakeWorkAsSeen();
}

void Views::EnterFtp() {
  engine_.tmrPlaySnipet.Stop();
  engine_.CloseFile();
  Call(hooks_.buildFtpServers);
  // Nothing is to be played or printed here.
  SetSoundShapingEnabled(false);
  form_.sldVol.Enabled = false;
  form_.Slider1.Enabled = false;
  form_.mnuReport.Enabled = false;
}

void Views::SetSoundShapingEnabled(bool enabled) {
  form_.cmdEQ.Enabled = enabled;
  form_.cmdNormalSpeed.Enabled = enabled;
}

void Views::DisableTransportKeys() {
  for (forms::Command* key : {&form_.cmdSkipBeg, &form_.cmdRewind, &form_.cmdStop, &form_.cmdPlay,
                              &form_.cmdForward, &form_.cmdSkipEnd}) {
    key->Enabled = false;
  }
}

void Views::TakeWorkAsSeen() {
  listHooks_.TakeWaitingWorkAsSeen();
  refresh_.tmrWorkWaitingAlert.Start();
}

void Views::ShowAbout() {
  sound_.StopPrompt();
  engine_.tmrPlaySnipet.Stop();
  about_.lblVersion.Value = "Version " + programVersionText_;
  about_.frmAbout.Centre();
  about_.frmAbout.Visible = true;
}

void Views::ShowSystemInformation() {
  if (showSystemInformation_()) return;
  loop_.Show({.title = "Tavlo Deck",
              .text = "System Information Is Unavailable At This Time",
              .icon = base::Icon::Information});
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
