#include "shell/deck.h"

#include <utility>

#include "store/missing_files.h"
#include "store/missing_libraries.h"
#include "store/provisioning.h"

namespace tavlo::shell {

Deck::Deck(Platform platform, Annex& annex)
    : windows(platform.loop),
      platform_(std::move(platform)),
      annex_(annex),
      folders_(platform_.disk, platform_.installRoot),
      splash_(platform_.loop, windows.splash, [this] { load_->LoadMainWindow(); }) {}

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
  rooms_.emplace(platform_, annex_, windows, folders_, std::move(opened.database));
  load_.emplace(platform_.loop, windows, *rooms_);
  exit_.emplace(platform_.loop, windows, *rooms_, platform_.endProcess);
  splash_.Show(rooms_->settings.ProgramVersionText());
}

void Deck::EndSession() {
  if (!rooms_) return platform_.endProcess(0);
  exit_->EndSession();
}

void Deck::EndSessionNow() {
  if (!rooms_) return platform_.endProcess(0);
  exit_->EndSessionNow();
}

bool Deck::RefuseSecondCopy() {
  if (!platform_.anotherCopyRuns()) return false;
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
  return true;
}

void Deck::EndWith(const std::string& failure) {
  platform_.loop.Show({.title = "Tavlo Deck", .text = failure, .icon = base::Icon::Critical});
  platform_.endProcess(1);
}

}  // namespace tavlo::shell
