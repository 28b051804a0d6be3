#include "shell/rooms.h"

#include <utility>

namespace tavlo::shell {

Rooms::Rooms(const Platform& platform, Windows& windows, store::WorkFolders& workFolders,
             std::unique_ptr<store::SettingsDatabase> openDatabase)
    : database(std::move(openDatabase)),
      settings(*database),
      folders(workFolders),
      databaseUpgrade(platform.loop, platform.disk, folders, platform.databases, settings),
      names(platform.loop),
      moves(platform.disk, folders),
      rescueFolder(platform.loop, windows.main, platform.disk, folders, platform.openFolder),
      files{platform.disk, folders, names, moves, rescueFolder},
      binding(platform.loop, windows.main, windows.configuration, settings, folders),
      mainWindow(windows.main, windows.configuration, [this] { binding.SavePlayerPlace(); }),
      configuration(mainWindow, binding, folders),
      prompts(windows.configuration, binding, folders, platform.audioPlayer,
              platform.promptMediaControl),
      equalizer(platform.loop, windows.configuration, platform.audioPlayer),
      mixerPage(windows.configuration, platform.audioPlayer, platform.sourceMixer),
      documentInWork(windows.main.cmdSkip),
      engine(platform.loop, mainWindow, documentInWork,
             {platform.audioFile, platform.audioTransform, platform.audioPlayer}, prompts,
             equalizer, mixerPage),
      transport(platform.loop, mainWindow, documentInWork, engine, prompts),
      positionDisplay(mainWindow, documentInWork, engine, transport),
      soundShaping(mainWindow, engine),
      preview(mainWindow, documentInWork, engine, prompts),
      playback{documentInWork, engine, transport, preview, prompts},
      passesFront(mainWindow),
      claims(platform.loop, platform.disk, moves, platform.claimOwner),
      conversion({platform.loop, platform.disk, folders, moves, claims,
                  platform.conversionLibraries, passesFront}),
      importList(platform.loop, mainWindow, files, playback, conversion, claims),
      authorProfiles(mainWindow, binding.AuthorProfile(), importList),
      importSending(platform.loop, mainWindow, files, playback, importList, claims),
      autoImport(mainWindow, importList, authorProfiles),
      retrieval({platform.loop, platform.disk, folders, moves, claims, conversion, autoImport,
                 passesFront, receiving}),
      droppedFiles(platform.loop, mainWindow, files),
      waitingFigures(platform.loop, platform.disk, folders),
      waitingWork(platform.loop, waitingFigures),
      queue(platform.loop, mainWindow, files, engine),
      refresh(platform.loop, mainWindow, playback, queue, waitingWork, retrieval),
      workAlert({platform.loop, mainWindow, playback, queue, waitingWork, waitingFigures,
                 platform.notifier}),
      opening(platform.loop, mainWindow, files, playback, waitingWork,
              importList.SelectedImportFile),
      completed(platform.loop, mainWindow, files, playback, opening),
      completedPurge(platform.loop, files),
      finishing(platform.loop, mainWindow, files, playback, queue, opening, waitingWork, retrieval),
      ftpServers(windows.main, binding.FtpProfile()),
      serverProfiles(windows.configuration, binding.FtpProfile(), authorProfiles, ftpServers),
      ftp({platform.loop, mainWindow, platform.ftpClient, ftpServers, platform.disk, folders, moves,
           retrieval, receiving},
          windows.configuration),
      footPedal(platform.loop, mainWindow, transport),
      serialPedal(platform.loop, windows.configuration, footPedal, platform.serialPort),
      usbPedal(platform.loop, footPedal, platform.usbWatcher),
      pedalState(windows.configuration, serialPedal, usbPedal),
      farHand(mainWindow, transport),
      farKeys(platform.loop, windows.configuration, binding, platform.globalKeys, farHand),
      mediaPlayer({platform.loop, mainWindow, playback, positionDisplay, farHand}),
      waysFromAfar({platform.loop, windows.configuration, pedalState, serialPedal, usbPedal,
                    farKeys, platform.mediaBus}),
      branding(windows.main, windows.configuration, windows.about, settings, names),
      fascia(windows.main, platform.disk, folders),
      settingsChoices(mainWindow, binding, waitingWork, branding, serialPedal),
      pathChoices(windows.configuration, folders, platform.browsableFolders),
      views(platform.loop, mainWindow, playback),
      queueView(mainWindow, queue, waitingWork, retrieval),
      completedView(windows.main, completed),
      importView(mainWindow, importList, authorProfiles, waitingWork, retrieval),
      ftpView(windows.main, engine, ftpServers),
      report(platform.loop, mainWindow, files, queue, completed, platform.programStarter,
             settings.ProgramVersionText()),
      menus(platform, windows.about, mainWindow, configuration, playback,
            settings.ProgramVersionText()),
      openedFiles(
          {platform.loop, mainWindow, documentInWork, droppedFiles, platform.fileHandover}) {
  configuration.Register(settingsChoices);
  configuration.Register(equalizer);
  configuration.Register(mixerPage);
  configuration.Register(pathChoices);
  configuration.Register(serverProfiles);
  configuration.Register(farKeys);
  views.Register(queueView);
  views.Register(completedView);
  views.Register(importView);
  views.Register(ftpView);
}

}  // namespace tavlo::shell
