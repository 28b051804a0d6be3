#include "shell/load.h"

#include <array>
#include <string>

#include "store/moved_root.h"

namespace tavlo::shell {
namespace {

using base::operator""ms;

constexpr std::array kFtpFileTypes = {
    "All files", "Orvane files", "eW2 files", "eU2 files", "dS2 files", "wav files",
    "mp3 files", "wma files",    "avi files", "dss files", "vox files",
};

}  // namespace

Load::Load(base::Loop& loop, Windows& windows, Rooms& rooms)
    : loop_(loop), windows_(windows), rooms_(rooms) {
  windows_.main.frmMain.OnActivate = [this] { HandleActivate(); };
}

void Load::LoadMainWindow() {
  forms::MainForm& form = windows_.main;
  form.frmMain.MousePointer = forms::Pointer::Hourglass;
  rooms_.ftp.Attach();
  form.frmMain.Centre();
  form.frmMain.Visible = true;
  TakeWindowShape();
  form.mnuFile.Enabled = false;
  form.mnuView.Enabled = false;
  form.mnuReport.Enabled = false;
  loop_.Wait(1000ms);
  rooms_.mainWindow.Say(rooms_.databaseUpgrade.UpgradeDatabase());
  rooms_.mainWindow.Say(store::FollowMovedRoot(rooms_.files.disk, rooms_.folders, rooms_.settings));
  window::SettingsBinding& settings = rooms_.binding;
  settings.Load();
  rooms_.engine.InitializeNCTcontrol();
  settings.TakeDeleteCompletedFiles();
  if (settings.DeleteCompletedFiles > 0) {
    rooms_.completedPurge.PurgeCompletedFiles(settings.DeleteCompletedFiles);
  }
  InitializeWorkAreas();
  settings.FillEmptySettings();
  for (const auto& pair : window::PairsOn(form.frameImport, settings.Bindings())) pair.ShowTick();
  rooms_.usbPedal.StartWatch();
  settings.TakeAudioPrompts();
  rooms_.soundShaping.ApplyStored();
  rooms_.equalizer.ApplyStored();
  HandleActivate();
  rooms_.prompts.PlayPrompt("Welcome");
  rooms_.waitingWork.TakeAsSeen();
  StartAlertTimer();
  FillChoices();
  rooms_.farKeys.Begin();
  rooms_.waysFromAfar.Offer(rooms_.mediaPlayer);
  rooms_.refresh.tmrGetAllJobs.Start();
}

void Load::TakeWindowShape() {
  rooms_.mainWindow.WindowHeight = windows_.main.frmMain.Height;
  rooms_.mainWindow.WindowWidth = windows_.main.frmMain.Width;
  rooms_.mainWindow.PlayerFrameTop = windows_.main.framePlayer.Top;
}

void Load::InitializeWorkAreas() {
  const forms::MainForm& form = windows_.main;
  window::MainWindow& window = rooms_.mainWindow;
  rooms_.folders.MakeTree();
  rooms_.configuration.ReloadQueuePaths();
  rooms_.queue.MakeColumns(windows_.configuration.txtSubjectHeading.Value);
  rooms_.completed.MakeColumns(windows_.configuration.txtSubjectHeading.Value);
  rooms_.importList.MakeColumns();
  ResetPedals();
  window.guards = {};
  window.PlayRequested = false;
  window.CurrentView = "Queue";
  rooms_.branding.ApplyBranding();
  window.PlayerLeftText = form.txtPlayerLeft.Value;
  window.PlayerTopText = form.txtPlayerTop.Value;
}

void Load::ResetPedals() {
  rooms_.footPedal.Reset();
  rooms_.transport.WindTickCount = 0;
}

void Load::StartAlertTimer() {
  const forms::ConfigurationForm& config = windows_.configuration;
  const std::string& mode = config.txtWorkWaitingAlertMode.Value;
  const forms::Text& interval = mode == "P" || mode == "A" ? config.txtNewDictationAlertInterval
                                                           : config.txtAutoQueueRefreshInterval;
  rooms_.waitingWork.RestartWith(window::AlertOptions::IntervalOf(interval));
}

void Load::FillChoices() {
  rooms_.fascia.ListFasciaImages();
  rooms_.fascia.LoadFasciaPictures();
  forms::Table& types = windows_.main.comboFtpFileTypesToList;
  types.Clear();
  for (const char* type : kFtpFileTypes) types.Add(type);
  types.ListIndex = 0;
}

void Load::HandleActivate() {
  forms::ConfigurationForm& config = windows_.configuration;
  if (config.txtAutoBackspace.Value.Get().empty()) config.txtAutoBackspace.Value = "0";
  config.sliderABS.Value = config.sliderABS.Bounds.Nearest(config.txtAutoBackspace.WholeNumber());
  rooms_.mainWindow.ApplyAlwaysOnTop();
  rooms_.workAlert.ForgetNotification();
  rooms_.fascia.LoadFasciaPictures();
}

}  // namespace tavlo::shell
