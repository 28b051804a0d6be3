#pragma once

#include <string>

#include "shell/deck.h"
#include "support/documents.h"
#include "support/simulated_platform.h"

namespace tavlo::test {

/// The whole program on simulated edges, with a root that was provisioned by an earlier start.
struct DeckBench : SimulatedPlatform {
  shell::Deck deck{Edges()};
  forms::MainForm& form = deck.windows.main;
  forms::ConfigurationForm& config = deck.windows.configuration;

  DeckBench() {
    disk.WithFolder(kRoot);
    for (const char* folder : {"/Prompts", "/Fascia"}) disk.WithFolder(kShare + folder);
    PlaceSettings();
  }

  static std::string InQueue() { return Path("/Files/InQueue/"); }
  static std::string Completed() { return Path("/Files/Completed/"); }

  std::string Drop(const std::string& name) { return Put(InQueue(), name); }
  /// Puts a document into the Completed folder.
  std::string Keep(const std::string& name) { return Put(Completed(), name); }
  // These two stand once the settings are open.
  playback::AudioEngine& Engine() { return deck.Built()->engine; }
  playback::DocumentInWork& InWork() { return deck.Built()->documentInWork; }
  void ClickRow(int row) { form.listViewInQueue.RowClick(row); }

  /// Start, splash, load, first refresh.
  void StartUntilReady() {
    deck.Start();
    loop.Advance(base::Duration{std::chrono::seconds{10}});
  }
  /// The same with these settings stored before.
  void StartWith(const store::Assignments& settings) {
    PlaceSettings(settings);
    StartUntilReady();
  }

 private:
  std::string Put(const std::string& folder, const std::string& name) {
    disk.WithFile(folder + name, "sound of " + name);
    file.Sounds[folder + name] = {.samples = 80'000};
    return name;
  }
};

}  // namespace tavlo::test
