#pragma once

#include <functional>
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
  std::string subdirectory = "0";
  bool ftpSortShows = false;
  int ftpSortShown = 0;
  std::vector<std::string> said;
  std::vector<std::string> howFar;

  void ShowFtpSort(bool shows) override {
    ftpSortShows = shows;
    ftpSortShown += shows;
  }
  std::string FtpParseImportDirPointer() const override { return pointer; }
  std::string WavImportSubdirectory() const override { return subdirectory; }
  void Say(const std::string& text) override { said.push_back(text); }
  void SayHowFar(const std::string& text) override { howFar.push_back(text); }
};

/// Runs in the place of automatic import.
class ImportChainTwin : public intake::ImportChain {
 public:
  int runs = 0;
  std::function<void()> OnRun = [] {};

  void AutoImportAll() override {
    ++runs;
    OnRun();
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
        passes({loop, disk, folders, moves, claims, conversion, importChain, front, receiving}) {
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
  intake::FileBeingReceived receiving;
  ImportChainTwin importChain;
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
