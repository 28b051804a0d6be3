#include "window/rescue_folder.h"

#include <utility>

namespace tavlo::window {

RescueFolder::RescueFolder(base::Loop& loop, forms::MainForm& form, store::Disk& disk,
                           const store::WorkFolders& folders, OpenFolder openFolder)
    : loop_(loop),
      key_(form.cmdRescued),
      disk_(disk),
      folders_(folders),
      openFolder_(std::move(openFolder)) {
  key_.OnPress = [this] { Open(); };
}

void RescueFolder::CountRescued() {
  if (disk_.OutOfReach(Path())) return;
  const store::Listing listing = disk_.ListPlainFiles(folders_.RescuedPath());
  // Until something is rescued there is no such folder. One that is there and does not tell what it
  // holds is not said to be empty.
  const bool none = !listing.started && disk_.Look(Path()) == store::Entry::Nothing;
  if (!listing.finished && !none) return;
  key_.Caption = "Rescued: " + std::to_string(listing.names.size());
  key_.Visible = !listing.names.empty();
}

void RescueFolder::Open() {
  switch (disk_.Look(Path())) {
    case store::Entry::Folder:
      if (!openFolder_(Path())) Say("No file manager could be started.");
      return;
    case store::Entry::OutOfReach:
      // A file manager would only stand still in front of it.
      return Say("It gives no answer.");
    case store::Entry::Nothing:
    case store::Entry::PlainFile:
    case store::Entry::Other:
      // Somebody has cleared it away since it was counted.
      return CountRescued();
  }
}

void RescueFolder::Say(const std::string& why) {
  loop_.Show({.title = "Tavlo Deck - Rescued",
              .text = "The rescued documents are in the folder\n" + Path() + "\n\n" + why,
              .icon = base::Icon::Information});
}

std::string RescueFolder::Path() const {
  const std::string path = folders_.RescuedPath();
  return path.substr(0, path.size() - 1);
}

}  // namespace tavlo::window
