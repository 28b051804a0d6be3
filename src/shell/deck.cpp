#include "shell/deck.h"

#include <utility>

#include "store/missing_files.h"
#include "store/missing_libraries.h"
#include "store/provisioning.h"

namespace tavlo::shell {
namespace {

/// What no room answers to is not offered: a menu entry or a key that a thaw of the window would
/// enable is not shown, other controls and pages of the configuration stand disabled.
void OfferOnlyWhatIsThere(Windows& windows) {
  forms::MainForm& main = windows.main;
  for (forms::Command* command : {&main.mnuReport, &main.cmdRefreshImportList}) {
    command->Visible = command->OnPress != nullptr;
  }
  main.chkImportSynchronize.Enabled = main.chkImportSynchronize.OnClick != nullptr;
  main.bConnect.Enabled = main.bConnect.OnPress != nullptr;
  main.comboFtpServerNames.Enabled = main.bConnect.Enabled;
  forms::ConfigurationForm& config = windows.configuration;
  config.frameConfigEqualizer.Enabled = config.cmdEqFlat.OnPress != nullptr;
  config.frameConfigMixer.Enabled = config.DeviceCombo.OnSelect != nullptr;
  config.frameFtp.Enabled = config.cmdFtpNext.OnPress != nullptr;
}

}  // namespace

Rooms::Rooms(const Platform& platform, Windows& windows, store::WorkFolders& workFolders,
             std::unique_ptr<store::SettingsDatabase> openDatabase)
    : sound{.playPrompt = [this](std::string_view name) { prompts.PlayPrompt(name); },
            .stopPrompt = [this] { prompts.StopPrompt(); },
            .applyEqualizer = [this] { equalizer.ApplyStored(); },
            .listSources = [this] { mixerPage.SetSrcDevice(); },
            .showConfiguration = [this] { configuration.Show(); }},
      database(std::move(openDatabase)),
      settings(*database),
      names(platform.loop),
      moves(platform.disk, workFolders),
      binding(platform.loop, windows.main, windows.configuration, settings, workFolders),
      mainWindow(windows.main, windows.configuration, [this] { binding.SavePlayerPlace(); }),
      configuration(windows.main, windows.configuration, binding, workFolders,
                    ConfigurationHooksFor()),
      prompts(windows.configuration, binding, workFolders, platform.audioPlayer,
              platform.promptMediaControl),
      engine(platform.loop, windows.main, windows.configuration, mainWindow, platform.audioFile,
             platform.audioTransform, platform.audioPlayer, sound),
      transport(platform.loop, windows.main, windows.configuration, mainWindow, engine, sound),
      positionDisplay(windows.main, mainWindow, engine, transport),
      soundShaping(windows.main, mainWindow, engine),
      equalizer(platform.loop, windows.configuration, platform.audioPlayer),
      mixerPage(windows.configuration, platform.audioPlayer, platform.sourceMixer),
      preview(windows.main, windows.configuration, mainWindow, engine, transport, sound),
      queue(platform.loop, windows.main, mainWindow, platform.disk, workFolders, names, engine),
      refresh(platform.loop, windows.main, mainWindow, engine, transport, queue, sound, listHooks),
      opening(platform.loop, windows.main, windows.configuration, workFolders, names, engine,
              transport, preview, sound, listHooks),
      completed(platform.loop, windows.main, mainWindow, platform.disk, workFolders, names, moves,
                engine, transport, opening, sound),
      finishing(platform.loop, windows.main, windows.configuration, mainWindow, workFolders, moves,
                engine, transport, queue, opening, refresh, sound, listHooks),
      footPedal(platform.loop, windows.main, windows.configuration, mainWindow, transport),
      serialPedal(platform.loop, windows.configuration, footPedal, platform.serialPort,
                  [this] { pedalState.Show(); }),
      usbPedal(platform.loop, footPedal, platform.usbWatcher, [this] { pedalState.Show(); }),
      pedalState(windows.configuration, serialPedal, usbPedal),
      branding(windows.main, windows.configuration, windows.about, settings, names),
      fascia(windows.main, platform.disk, workFolders),
      views(platform.loop, windows.main, windows.about, mainWindow, configuration, engine,
            transport, queue, completed, refresh, sound, listHooks, settings.ProgramVersionText(),
            platform.showSystemInformation, {}),
      load(platform.loop, windows.main, windows.configuration, mainWindow, configuration, binding,
           workFolders, engine, soundShaping, queue, completed, refresh, branding, fascia, sound,
           listHooks, LoadHooksFor()),
      exit(platform.loop, windows.main, mainWindow, engine, transport, refresh, sound,
           ExitHooksFor(), platform.endProcess) {}

LoadHooks Rooms::LoadHooksFor() {
  return {.resetPedals =
              [this] {
                footPedal.Reset();
                transport.WindTickCount = 0;
              },
          .startUsbPedal = [this] { usbPedal.StartWatch(); }};
}

ExitHooks Rooms::ExitHooksFor() {
  return {.stopPedals =
              [this] {
                usbPedal.StopReading();
                serialPedal.Stop();
              },
          .closePrompts = [this] { prompts.Close(); },
          .saveSettings = [this] { binding.Flush(); },
          .stopUsbWatch = [this] { usbPedal.StopWatch(); },
          .outcomeIsDue = [this] { return finishing.OutcomeIsDue(); },
          .storeOutcome = [this] { finishing.StoreAtOnce(); },
          .saveOpenSettings = [this] { configuration.SaveAtOnce(); },
          .dropPedals = [this] { usbPedal.Drop(); }};
}

window::ConfigurationHooks Rooms::ConfigurationHooksFor() {
  return {.restartAlertTimer =
              [this](base::Duration interval) {
                refresh.tmrWorkWaitingAlert.SetInterval(interval);
                refresh.tmrWorkWaitingAlert.Start();
              },
          .applyBranding = [this] { branding.ApplyBranding(); },
          .followPedalChoice = [this] { serialPedal.FollowChoice(); },
          .centerMiniPlayer = [this] { mainWindow.CenterMiniPlayer(); },
          .openEqualizer = [this] { equalizer.ShowStored(); },
          .showMixer = [this] { mixerPage.SetSrcDevice(); }};
}

Deck::Deck(Platform platform)
    : windows(platform.loop),
      platform_(std::move(platform)),
      folders_(platform_.disk, platform_.installRoot),
      splash_(platform_.loop, windows.splash, [this] { rooms_->load.LoadMainWindow(); }) {}

void Deck::Start() {
  if (RefuseSecondCopy()) return;
  const std::string failure = store::ProvisionRoot(platform_.disk, platform_.databases,
                                                   platform_.installRoot, platform_.shareFolder);
  if (!failure.empty()) {
    EndWith(failure);
    return;
  }
  store::OpenedDatabase opened = platform_.databases.Open(folders_.SettingsDatabasePath());
  if (!opened.database) {
    EndWith(opened.failure);
    return;
  }
  store::AddMissingPrompts(platform_.disk, platform_.installRoot, platform_.shareFolder);
  store::AddMissingFascia(platform_.disk, platform_.installRoot, platform_.shareFolder);
  store::AddMissingLibraries(platform_.disk, platform_.installRoot, platform_.shareFolder);
  rooms_.emplace(platform_, windows, folders_, std::move(opened.database));
  OfferOnlyWhatIsThere(windows);
  splash_.Show(rooms_->settings.ProgramVersionText());
}

void Deck::EndSession() {
  if (!rooms_) return platform_.endProcess(0);
  rooms_->exit.EndSession();
}

void Deck::EndSessionNow() {
  if (!rooms_) return platform_.endProcess(0);
  rooms_->exit.EndSessionNow();
}

bool Deck::RefuseSecondCopy() {
  if (!platform_.anotherCopyRuns()) return false;
  platform_.loop.Show(
      {.title = "Tavlo Deck - Running",
       .text = "The Tavlo Deck can not be started because Windows reports that it is already "
               "running.\n"
               "If you see the Tavlo Deck in the task bar, click on it to view it.\n"
               "If it is not in the task bar, press CTRL-ALT-DEL, click Task Manager, click "
               "Applications, and if the Lyrane_Tavlo_Deck_Project status is\n"
               "'Not Responding', then select it and click End Task.  Then exit the Task Manager "
               "and restart the Tavlo Deck.",
       .icon = base::Icon::Information});
  platform_.endProcess(1);
  return true;
}

void Deck::EndWith(const std::string& failure) {
  platform_.loop.Show({.title = "Tavlo Deck", .text = failure, .icon = base::Icon::Critical});
  platform_.endProcess(1);
}

}  // namespace tavlo::shell
