#include "shell/deck.h"

#include <utility>

#include "store/missing_files.h"
#include "store/missing_libraries.h"
#include "store/provisioning.h"

namespace tavlo::shell {

Deck::Deck(Platform platform)
    : windows(platform.loop),
      platform_(std::move(platform)),
      folders_(platform_.disk, platform_.installRoot),
      splash_(platform_.loop, windows.splash, [this] { load_->LoadMainWindow(); }) {}

void Deck::Start() {
  RootClaim claim = platform_.claimRoot();
  if (claim == RootClaim::OfAnotherCopy && !platform_.filesToOpen.empty()) {
    if (platform_.fileHandover.HandOver(platform_.filesToOpen)) return platform_.endProcess(0);
    // One that was just ending may have ended meanwhile.
    claim = platform_.claimRoot();
  }
  if (claim == RootClaim::OfAnotherCopy) return RefuseSecondCopy();
  store::OpenedDatabase opened;
  std::string failure;
  if (claim == RootClaim::Ours) failure = OpenRoot(opened);
  if (claim == RootClaim::OutOfReach || RootIsOutOfReach()) {
    failure = store::RootFailure(platform_.installRoot,
                                 "It gives no answer. The network may be down, or the device gone; "
                                 "start again when it is back.");
  }
  if (!failure.empty()) return EndWith(failure);
  rooms_.emplace(platform_, windows, folders_, std::move(opened.database));
  load_.emplace(platform_.loop, windows, *rooms_);
  exit_.emplace(platform_.loop, windows, *rooms_, platform_.endProcess);
  rooms_->openedFiles.Begin(platform_.filesToOpen);
  splash_.Show(rooms_->settings.ProgramVersionText());
}

bool Deck::RootIsOutOfReach() {
  const std::string& root = platform_.installRoot;
  return platform_.disk.OutOfReach(root) ||
         platform_.disk.OutOfReach(root.substr(0, root.rfind('/')));
}

std::string Deck::OpenRoot(store::OpenedDatabase& opened) {
  store::Disk& disk = platform_.disk;
  const std::string& root = platform_.installRoot;
  const std::string& share = platform_.shareFolder;
  const std::string failure = store::ProvisionRoot(disk, platform_.databases, root, share);
  if (!failure.empty()) return failure;
  opened = platform_.databases.Open(folders_.SettingsDatabasePath());
  if (!opened.database) return opened.failure;
  store::AddMissingPrompts(disk, root, share);
  store::AddMissingFascia(disk, root, share);
  store::AddMissingLibraries(disk, platform_.libraryInspector, root, share);
  return {};
}

void Deck::EndSession() {
  if (!rooms_) return platform_.endProcess(0);
  exit_->EndSession();
}

void Deck::EndSessionNow() {
  if (!rooms_) return platform_.endProcess(0);
  exit_->EndSessionNow();
}

void Deck::RefuseSecondCopy() {
  // The wording is kept as users know it, though it speaks of another system's keys.
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
}

void Deck::EndWith(const std::string& failure) {
  platform_.loop.Show({.title = "Tavlo Deck", .text = failure, .icon = base::Icon::Critical});
  platform_.endProcess(1);
}

}  // namespace tavlo::shell
