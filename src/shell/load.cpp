#include "shell/load.h"

#include <array>
#include <string>
#include <utility>

namespace tavlo::shell {
namespace {

using base::operator""ms;

constexpr std::array kFtpFileTypes = {
    "All files", "Orvane files", "eW2 files", "eU2 files", "dS2 files", "wav files",
    "mp3 files", "wma files",    "avi files", "dss files", "vox files",
};

void Call(const std::function<void()>& hook) {
  if (hook) hook();
}

}  // namespace

Load::Load(base::Loop& loop, forms::MainForm& form, forms::ConfigurationForm& config,
           window::MainWindow& window, window::ConfigurationWindow& configuration,
           window::SettingsBinding& settings, store::WorkFolders& folders,
           playback::AudioEngine& engine, playback::SoundShaping& shaping, lists::QueueList& queue,
           lists::CompletedList& completed, lists::Refresh& refresh, Branding& branding,
           Fascia& fascia, const playback::Hooks& sound, const lists::Hooks& listHooks,
           LoadHooks hooks)
    : loop_(loop),
      form_(form),
      config_(config),
      window_(window),
      configuration_(configuration),
      settings_(settings),
      folders_(folders),
      engine_(engine),
      shaping_(shaping),
      queue_(queue),
      completed_(completed),
      refresh_(refresh),
      branding_(branding),
      fascia_(fascia),
      sound_(sound),
      listHooks_(listHooks),
      hooks_(std::move(hooks)) {
  form_.frmMain.OnActivate = [this] { HandleActivate(); };
}

void Load::LoadMainWindow() {
  form_.frmMain.MousePointer = forms::Pointer::Hourglass;
  Call(hooks_.attachFtp);
  form_.frmMain.Centre();
  form_.frmMain.Visible = true;
  TakeWindowShape();
  form_.mnuFile.Enabled = false;
  form_.mnuView.Enabled = false;
  form_.mnuReport.Enabled = false;
  loop_.Wait(1000ms);
  Call(hooks_.upgradeDatabase);
  settings_.Load();
  engine_.InitializeNCTcontrol();
  settings_.TakeDeleteCompletedFiles();
  if (settings_.DeleteCompletedFiles > 0) Call(hooks_.purgeCompletedFiles);
  InitializeWorkAreas();
  settings_.FillEmptySettings();
  form_.chkImportSynchronize.Value = form_.txtImportSynchronize.Value.Get() == "Y";
  Call(hooks_.startUsbPedal);
  settings_.TakeAudioPrompts();
  shaping_.ApplyStored();
  sound_.ApplyEqualizer();
  HandleActivate();
  sound_.PlayPrompt("Welcome");
  listHooks_.TakeWaitingWorkAsSeen();
  StartAlertTimer();
  FillChoices();
  refresh_.tmrGetAllJobs.Start();
}

void Load::TakeWindowShape() {
  window_.WindowHeight = form_.frmMain.Height;
  window_.WindowWidth = form_.frmMain.Width;
  window_.PlayerFrameTop = form_.framePlayer.Top;
}

void Load::InitializeWorkAreas() {
  folders_.MakeTree();
  configuration_.ReloadQueuePaths();
  queue_.MakeColumns(config_.txtSubjectHeading.Value);
  completed_.MakeColumns(config_.txtSubjectHeading.Value);
  Call(hooks_.resetPedals);
  window_.guards = {};
  window_.CurrentView = "Queue";
  branding_.ApplyBranding();
  window_.PlayerLeftText = form_.txtPlayerLeft.Value;
  window_.PlayerTopText = form_.txtPlayerTop.Value;
}

void Load::StartAlertTimer() {
  const std::string& mode = config_.txtWorkWaitingAlertMode.Value;
  const forms::Text& interval = mode == "P" || mode == "A" ? config_.txtNewDictationAlertInterval
                                                           : config_.txtAutoQueueRefreshInterval;
  refresh_.tmrWorkWaitingAlert.SetInterval(window::AlertOptions::IntervalOf(interval));
  refresh_.tmrWorkWaitingAlert.Start();
}

void Load::FillChoices() {
  fascia_.ListFasciaImages();
  fascia_.LoadFasciaPictures();
  form_.comboFtpFileTypesToList.Clear();
  for (const char* type : kFtpFileTypes) form_.comboFtpFileTypesToList.Add(type);
  form_.comboFtpFileTypesToList.ListIndex = 0;
}

void Load::HandleActivate() {
  if (config_.txtAutoBackspace.Value.Get().empty()) config_.txtAutoBackspace.Value = "0";
  config_.sliderABS.Value =
      config_.sliderABS.Bounds.Nearest(config_.txtAutoBackspace.WholeNumber());
  window_.ApplyAlwaysOnTop();
  fascia_.LoadFasciaPictures();
}

}  // namespace tavlo::shell
