#pragma once

#include <string>
#include <vector>

#include "intake/retrieval_passes.h"
#include "support/install.h"
#include "support/simulated_conversion.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"

namespace tavlo::test {

/// What the passes show and read.
class FrontTwin : public intake::PassesFront {
 public:
  std::string pointer = "0";
  bool ftpSortShows = false;
  int ftpSortShown = 0;
  std::vector<std::string> said;
  std::vector<std::string> howFar;

  void ShowFtpSort(bool shows) override {
    ftpSortShows = shows;
    ftpSortShown += shows;
  }
  std::string FtpParseImportDirPointer() const override { return pointer; }
  void Say(const std::string& text) override { said.push_back(text); }
  void SayHowFar(const std::string& text) override { howFar.push_back(text); }
};

/// Writes down how automatic import drives the Import list.
class ImportDeskTwin : public intake::ImportDesk {
 public:
  std::string mode = "N";
  std::string synchronize = "Y";
  std::string subdirectory = "7";
  bool running = false;
  std::vector<std::string> steps;
  std::function<void()> OnRefresh = [] {};

  std::string AutoImportMode() const override { return mode; }
  std::string ImportSynchronize() const override { return synchronize; }
  std::string WavImportSubdirectory() const override { return subdirectory; }
  void SetWavImportSubdirectory(const std::string& text) override {
    subdirectory = text;
    steps.push_back("show " + text);
  }
  void SetAutoImportRunning(bool isRunning) override { running = isRunning; }
  void RefreshProfiles() override { steps.emplace_back("profiles"); }
  void FindProfile(int number) override { steps.push_back("find " + std::to_string(number)); }
  void MoveToFirstProfile() override { steps.emplace_back("first"); }
  void PressRefreshImportList() override {
    steps.push_back(running ? "refresh" : "refresh aloud");
    OnRefresh();
  }
  void PressSendAllImportFilesToQueue() override {
    steps.push_back(running ? "send" : "send aloud");
  }
};

/// One deck's part of the intake, on a disk that it may share with others.
struct IntakeDeck {
  IntakeDeck(SimulatedLoop& loop, SimulatedDisk& disk, const std::string& root,
             const intake::ClaimOwner& owner)
      : folders(disk, root),
        moves(disk, folders),
        claims(loop, disk, moves, owner),
        libraries(loop, disk),
        conversion({loop, disk, folders, moves, claims, libraries, front}),
        passes({loop, disk, folders, moves, claims, conversion, importDesk, front}) {
    disk.WithFolder(root);
    folders.MakeTree();
    folders.ReloadQueuePaths({.ew2QueuePath = folders.DefaultQueuePath(store::QueuePath::Ew2),
                              .ds2QueuePath = folders.DefaultQueuePath(store::QueuePath::Ds2),
                              .wavQueuePath = folders.DefaultQueuePath(store::QueuePath::Wav),
                              .eu2QueuePath = folders.DefaultQueuePath(store::QueuePath::Eu2),
                              .viewDelay = "0"});
  }

  store::WorkFolders folders;
  store::FileMoves moves;
  FrontTwin front;
  ImportDeskTwin importDesk;
  intake::Claims claims;
  SimulatedConversion libraries;
  intake::Conversion conversion;
  intake::RetrievalPasses passes;

  std::string Queued(const std::string& name) const { return folders.InQueuePath + name; }
  std::string Rescued(const std::string& name) const { return folders.RescuedPath() + name; }
  std::string Import(const std::string& below) const {
    return folders.DefaultQueuePath(store::QueuePath::Wav) + "/" + below;
  }
};

struct IntakeBench {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  IntakeDeck deck{loop, disk, kRoot, {.host = "desk", .process = 41}};

  intake::RetrievalPasses& passes = deck.passes;
  store::WorkFolders& folders = deck.folders;
  FrontTwin& front = deck.front;

  /// Has the folder lie on a file system of its own, as a share or a stick does.
  void MakeShareOf(const std::string& folder) { disk.WithFileSystemAt(folder); }
  std::vector<std::string> Titles() const {
    std::vector<std::string> titles;
    for (const base::MessageBox& box : loop.Shown) titles.push_back(box.title);
    return titles;
  }
};

}  // namespace tavlo::test
