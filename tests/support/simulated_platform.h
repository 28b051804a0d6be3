#pragma once

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/platform.h"
#include "support/install.h"
#include "support/simulated_audio.h"
#include "support/simulated_bus.h"
#include "support/simulated_conversion.h"
#include "support/simulated_database.h"
#include "support/simulated_disk.h"
#include "support/simulated_folders.h"
#include "support/simulated_ftp.h"
#include "support/simulated_handover.h"
#include "support/simulated_keys.h"
#include "support/simulated_libraries.h"
#include "support/simulated_loop.h"
#include "support/simulated_mixer.h"
#include "support/simulated_notifier.h"
#include "support/simulated_pedals.h"
#include "support/simulated_programs.h"
#include "support/simulated_prompts.h"

namespace tavlo::test {

/// Every twin of an edge, once, and the only place of the tests that fills a shell::Platform. Who
/// wants to see more of the loop, the disk or the files than the twins tell puts kinds of his own
/// in their places; an audio file that reads from the disk is handed it.
template <std::derived_from<SimulatedLoop> Loop, std::derived_from<SimulatedDisk> Disk,
          std::derived_from<SimulatedAudioFile> AudioFile>
class SimulatedPlatformOf {
 public:
  SimulatedPlatformOf() requires std::default_initializable<AudioFile> {}
  SimulatedPlatformOf() requires std::constructible_from<AudioFile, Disk&> : file(disk) {}
  SimulatedPlatformOf(const SimulatedPlatformOf&) = delete;
  virtual ~SimulatedPlatformOf() = default;

  Loop loop;
  Disk disk{loop};
  SimulatedFolders browsableFolders;
  SimulatedDatabases databases{disk, {.root = kRoot, .revision = "1.2.3"}};
  SimulatedLibraries libraryInspector{disk};
  AudioFile file;
  SimulatedTransform transform;
  SimulatedPlayer player{loop};
  SimulatedPromptControl promptControl;
  SimulatedMixer mixer;
  SimulatedSerialPort serialPort;
  SimulatedUsbWatcher usbWatcher;
  SimulatedConversion conversionLibraries{loop, disk};
  SimulatedNotifier notifier;
  SimulatedFtpClient ftp{loop, disk};
  SimulatedPrograms programs;
  SimulatedHandover handover{loop};
  SimulatedGlobalKeys keys;
  SimulatedMediaBus bus;
  /// Files that the next start is given.
  std::vector<std::string> filesToOpen;
  /// Another copy runs on the same root.
  bool anotherCopy = false;
  /// The desktop has a program that shows what the machine is made of.
  bool hasInformationTool = true;
  int informationShown = 0;
  /// The desktop has a file manager.
  bool hasFileManager = true;
  /// What it was asked to show.
  std::vector<std::string> foldersOpened;
  /// The status with which the deck asked for the end of the process.
  std::optional<int> ended;

  /// `below` begins with a separator.
  static std::string Path(const std::string& below) { return kRoot + below; }
  static std::string SettingsPath() { return Path("/Lyrane_Tavlo_Deck.mdb"); }

  /// Puts the settings on the disk as they are shipped, but for these.
  void PlaceSettings(const store::Assignments& settings = {}) {
    SettingsTables tables = databases.Shipped();
    store::Record& row = tables.at(store::Table::GeneralSettings).at(0);
    for (const auto& [field, value] : settings) row.at(field) = value;
    databases.Place(SettingsPath(), tables);
  }

  /// What stands on the disk in a field of the general settings, whoever has them open.
  std::string Stored(std::string_view field) const {
    const SettingsTables tables = databases.Look(SettingsPath());
    return tables.at(store::Table::GeneralSettings).at(0).at(std::string(field));
  }

  /// What a deck stands on. The twins must outlive it and stay where they are.
  shell::Platform Edges() {
    return {.loop = loop,
            .disk = disk,
            .browsableFolders = browsableFolders,
            .databases = databases,
            .libraryInspector = libraryInspector,
            .audioFile = file,
            .audioTransform = transform,
            .audioPlayer = player,
            .promptMediaControl = promptControl,
            .sourceMixer = mixer,
            .serialPort = serialPort,
            .usbWatcher = usbWatcher,
            .conversionLibraries = conversionLibraries,
            .notifier = notifier,
            .ftpClient = ftp,
            .programStarter = programs,
            .fileHandover = handover,
            .globalKeys = keys,
            .mediaBus = bus,
            .claimOwner = {.host = "desk", .process = 41},
            .installRoot = kRoot,
            .shareFolder = kShare,
            .filesToOpen = filesToOpen,
            .claimRoot = [this] { return ClaimRoot(); },
            .showSystemInformation =
                [this] {
                  informationShown += hasInformationTool;
                  return hasInformationTool;
                },
            .openFolder =
                [this](const std::string& folder) {
                  if (hasFileManager) foldersOpened.push_back(folder);
                  return hasFileManager;
                },
            .endProcess = [this](int status) { EndProcess(status); }};
  }

 protected:
  virtual void EndProcess(int status) { ended = status; }

 private:
  /// The lock stands on the folder above the root.
  shell::RootClaim ClaimRoot() {
    if (!disk.LetsOpen(kRoot.substr(0, kRoot.rfind('/')))) return shell::RootClaim::OutOfReach;
    return anotherCopy ? shell::RootClaim::OfAnotherCopy : shell::RootClaim::Ours;
  }
};

using SimulatedPlatform = SimulatedPlatformOf<SimulatedLoop, SimulatedDisk, SimulatedAudioFile>;

}  // namespace tavlo::test
