#pragma once

#include <optional>
#include <string>

#include "shell/deck.h"
#include "support/annex_twin.h"
#include "support/documents.h"
#include "support/simulated_audio.h"
#include "support/simulated_database.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"
#include "support/simulated_mixer.h"
#include "support/simulated_pedals.h"
#include "support/simulated_prompts.h"

namespace tavlo::test {

/// The whole program on simulated edges, with a root that was provisioned by an earlier start.
struct DeckBench {
  static constexpr const char* kRoot = "/home/typist/Lyrane/TavloDeck";

  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  SimulatedDatabases databases{disk, {.root = kRoot, .revision = "1.2.3"}};
  SimulatedAudioFile file;
  SimulatedTransform transform;
  SimulatedPlayer player{loop};
  SimulatedPromptControl promptControl;
  SimulatedMixer mixer;
  SimulatedSerialPort serialPort;
  SimulatedUsbWatcher usbWatcher;
  bool anotherCopy = false;
  std::optional<int> ended;
  /// The desktop has a program that shows what the machine is made of.
  bool hasInformationTool = true;
  int informationShown = 0;
  AnnexTwin annex;
  shell::Deck deck{{.loop = loop,
                    .disk = disk,
                    .databases = databases,
                    .audioFile = file,
                    .audioTransform = transform,
                    .audioPlayer = player,
                    .promptMediaControl = promptControl,
                    .sourceMixer = mixer,
                    .serialPort = serialPort,
                    .usbWatcher = usbWatcher,
                    .installRoot = kRoot,
                    .shareFolder = "/usr/share/tavlodeck",
                    .anotherCopyRuns = [this] { return anotherCopy; },
                    .showSystemInformation =
                        [this] {
                          informationShown += hasInformationTool;
                          return hasInformationTool;
                        },
                    .endProcess = [this](int status) { ended = status; }},
                   annex};
  forms::MainForm& form = deck.windows.main;
  forms::ConfigurationForm& config = deck.windows.configuration;

  DeckBench() {
    disk.WithFolder(kRoot);
    disk.WithFolder("/usr/share/tavlodeck/Prompts").WithFolder("/usr/share/tavlodeck/Fascia");
    databases.Place(SettingsPath(), databases.Shipped());
  }

  static std::string SettingsPath() { return std::string(kRoot) + "/Lyrane_Tavlo_Deck.mdb"; }
  static std::string InQueue() { return std::string(kRoot) + "/Files/InQueue/"; }
  static std::string Completed() { return std::string(kRoot) + "/Files/Completed/"; }

  std::string Drop(const std::string& name) {
    disk.WithFile(InQueue() + name, "sound of " + name);
    file.Sounds[InQueue() + name] = {.samples = 80'000};
    return name;
  }
  /// Puts a document into the Completed folder.
  std::string Keep(const std::string& name) {
    disk.WithFile(Completed() + name, "sound of " + name);
    file.Sounds[Completed() + name] = {.samples = 80'000};
    return name;
  }
  void ClickRow(int row) { form.listViewInQueue.RowClick(row); }

  /// Start, splash, load, first refresh.
  void StartUntilReady() {
    deck.Start();
    loop.Advance(base::Duration{std::chrono::seconds{10}});
  }
};

}  // namespace tavlo::test
