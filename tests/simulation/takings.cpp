#include "simulation/takings.h"

#include <algorithm>
#include <utility>

#include "base/text.h"
#include "intake/import_directories.h"
#include "simulation/places.h"
#include "simulation/trace.h"
#include "store/saved_position.h"

namespace tavlo::simulation {
namespace {

const std::string kPathOfInQueue = Desk::Path(kInQueue);
const std::string kPathOfCompleted = Desk::Path(kCompleted);
const std::string kPathOfRescued = Desk::Path(kRescued);
constexpr const char* kSetAside = ".Rescued ";

std::string FolderOf(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

/// Half copies and what was set aside stand behind a dot; they are no documents of a list.
bool IsDocument(const std::string& path) {
  const std::string folder = FolderOf(path);
  return (folder == kPathOfInQueue || folder == kPathOfCompleted) && path[folder.size()] != '.';
}

bool IsSetAside(const std::string& from, const std::string& to) {
  return to.starts_with(kPathOfRescued) || to.starts_with(FolderOf(from) + kSetAside);
}

}  // namespace

Takings::Takings(Desk& desk) : desk_(desk) {
  desk_.OnGone = [this](const std::string& from, const std::string& to) { LookAt(from, to); };
}

void Takings::Press(forms::Command& command) {
  Press(command, [&] { command.Press(forms::By::Hand); });
}

void Takings::Press(const forms::Command& command, const std::function<void()>& press) {
  Wish wish = WishOf(command);
  const forms::MainForm& main = desk_.Main();
  const bool finishes = &command == &main.cmdComplete || &command == &main.cmdSave;
  const std::string path = finishes && !wish.mayTake.empty() ? *wish.mayTake.begin() : "";
  const std::string contents = desk_.disk.Contents(path);
  const std::size_t before = desk_.promptControl.Sounded.size();
  During(std::move(wish), press);
  // A program that has ended speaks no prompts.
  if (path.empty() || desk_.ended) return;
  const std::vector<std::string>& sounded = desk_.promptControl.Sounded;
  for (std::size_t at = before; at < sounded.size(); ++at) {
    LookWhetherItIsTrue(sounded[at], path, contents);
  }
}

void Takings::EndSession(bool now) {
  if (!desk_.Rooms() || desk_.ended || desk_.disk.Crashed()) return;
  Wish wish{.name = "The end of the session", .mayTake = InWork()};
  const bool alone = wishes_.empty() && wish.mayTake.size() == 1 && !desk_.disk.FaultPending();
  const std::string path = alone ? desk_.hearing.Path() : "";
  const std::string contents = desk_.disk.Contents(path);
  // What a key has asked for and not done yet is done now.
  for (const Wish& waiting : wishes_) {
    wish.mayTake.insert(waiting.mayTake.begin(), waiting.mayTake.end());
    wish.givesWay = waiting.givesWay;
  }
  const std::size_t boxes = desk_.loop.Shown.size();
  During(std::move(wish), [&] { desk_.EndSession(now); });
  if (desk_.loop.Shown.size() != boxes) Note("The end of the session asks.");
  if (now && !desk_.ended) Note("The session has ended, and the program goes on.");
  if (alone && !desk_.disk.Crashed()) LookWhetherItIsStored(path, contents);
}

void Takings::LookWhetherItIsTrue(const std::string& said, const std::string& path,
                                  const std::string& contents) {
  const std::string folder = FolderOf(path);
  const auto places = desk_.disk.FilesHolding(contents);
  // Somebody else has changed it or taken it away meanwhile.
  if (places.empty()) return;
  const auto stands = [&](const std::string& where) {
    return std::any_of(places.begin(), places.end(),
                       [&](const std::string& place) { return place.starts_with(where); });
  };
  if (said.find("/Prompts/Complete.") != said.npos && !stands(kPathOfCompleted)) {
    Note("Said to be completed: " + Readable(places.front()));
  }
  const double position = desk_.Rooms()->documentInWork.CurrentSamplePosition;
  if (said.find("/Prompts/Save.") != said.npos &&
      !stands(folder + store::WithSavedPosition(path.substr(folder.size()), position))) {
    Note("Said to be saved at " + std::to_string(position) + ": " + Readable(places.front()));
  }
}

void Takings::LookWhetherItIsStored(const std::string& path, const std::string& contents) {
  const std::string folder = FolderOf(path);
  const std::string stored =
      folder + store::WithSavedPosition(path.substr(folder.size()),
                                        desk_.Rooms()->documentInWork.CurrentSamplePosition);
  const bool isThere = desk_.disk.Contents(stored) == contents;
  const bool keptItsName = desk_.disk.Contents(path) == contents;
  const bool couldNot = desk_.disk.Has(stored) || stored.size() - folder.size() > kMostBytesOfAName;
  if (!isThere && !(keptItsName && couldNot)) {
    Note("The end of the session has not stored " + Readable(stored));
  }
}

Takings::Wish Takings::WishOf(const forms::Command& command) const {
  const forms::MainForm& main = desk_.Main();
  Wish wish{.name = command.Name};
  if (!command.Reachable() || !desk_.Rooms()) return wish;
  if (&command == &main.cmdComplete || &command == &main.cmdSave) {
    wish.mayTake = InWork();
    if (wish.mayTake.empty()) {
      wish.mayTake = Highlighted(main.listViewInQueue, main.frameInQueue, kPathOfInQueue,
                                 forms::document_column::FileName);
    }
    if (&command == &main.cmdComplete) wish.givesWay = kPathOfCompleted;
  } else if (&command == &main.cmdMoveToQueue || &command == &main.cmdDeleteOneCompleted) {
    wish.mayTake = Highlighted(main.listViewCompleted, main.frameCompleted, kPathOfCompleted,
                               forms::document_column::FileName);
  } else if (&command == &main.cmdDeleteAllCompleted) {
    wish.mayClear = kPathOfCompleted;
  } else {
    return WishOfImport(command);
  }
  return wish;
}

Takings::Wish Takings::WishOfImport(const forms::Command& command) const {
  const forms::MainForm& main = desk_.Main();
  Wish wish{.name = command.Name};
  const std::string folder =
      intake::ImportDirectoryPath(desk_.Rooms()->folders, main.txtWavImportSubdirectory.Value);
  if (&command == &main.cmdSendImportFileToQueue || &command == &main.cmdDeleteOneImportFile) {
    wish.mayTake =
        Highlighted(main.listViewImport, main.frameImport, folder, forms::import_column::FileName);
  } else if (&command == &main.cmdSendAllImportFilesToQueue ||
             &command == &main.cmdDeleteAllImportFile) {
    wish.mayClear = folder;
  }
  return wish;
}

std::set<std::string> Takings::InWork() const {
  const bool inWork = desk_.Rooms() && desk_.Rooms()->mainWindow.MiniPlayerShows();
  if (!inWork || desk_.hearing.Path().empty()) return {};
  return {desk_.hearing.Path()};
}

std::set<std::string> Takings::Highlighted(const forms::Table& list, const forms::Pane& frame,
                                           const std::string& folder, int column) {
  if (!frame.Visible || list.ListIndex < 0) return {};
  return {folder + list.TextAt(list.ListIndex, column)};
}

bool Takings::IsToBeImported(const std::string& path) const {
  if (!desk_.Rooms()) return false;
  const std::string folder = FolderOf(path);
  const std::string name = path.substr(folder.size());
  const store::WorkFolders& folders = desk_.Rooms()->folders;
  // What is swept, and what has to be converted, goes without being asked for.
  const bool isSwept = folder == folders.Ew2QueuePath || folder == folders.Ds2QueuePath ||
                       folder == folders.Eu2QueuePath || folder == folders.FtpQueuePath;
  const bool goesByItself = isSwept || base::EndsInEitherCase(name, ".dss") ||
                            desk_.Config().txtAutoImport.Value.Get() != "N";
  if (name.starts_with('.') || goesByItself) return false;
  // Those that are numbered, and none that happens to lie below the same folder.
  const std::string& root = folders.WavQueuePath;
  const bool isNumbered = folder.find_first_not_of("0123456789/", root.size()) == folder.npos;
  return !root.empty() && root != "/" && folder.starts_with(root) && isNumbered;
}

bool Takings::GivesWayInQueue(const std::string& from, const std::string& to) {
  const bool givesWay =
      FolderOf(from) == kPathOfInQueue && IsSetAside(from, to) && !InWork().contains(from);
  if (givesWay) madeWay_.insert(from);
  return givesWay;
}

void Takings::LookAtArrival(const std::string& from, const std::string& to) {
  if (to.empty() || madeWay_.erase(to) == 0) return;
  // A copy on its way has its source's bytes. So has what a server sends twice, which is no return
  // of the first one, nor is the wave that is made of it.
  const std::string name = from.substr(FolderOf(from).size());
  const bool isCopy = Ledger::IsHalfCopy(name) && !name.starts_with(".TavloWave ");
  const auto sources =
      isCopy ? Ledger::FilesOf(desk_.disk, desk_.disk.Contents(to)) : std::vector<std::string>();
  const bool ofTheUser = FolderOf(from) == kPathOfCompleted || IsToBeImported(from) ||
                         std::ranges::any_of(sources, [](const std::string& path) {
                           return FolderOf(path) == kPathOfCompleted;
                         });
  if (ofTheUser) Note("What waits in the Queue has given way to " + Readable(from));
}

void Takings::During(Wish wish, const std::function<void()>& act) {
  wishes_.push_back(std::move(wish));
  act();
  wishes_.pop_back();
}

void Takings::LookAt(const std::string& from, const std::string& to) {
  LookAtArrival(from, to);
  if (Ledger::IsHalfCopy(from.substr(FolderOf(from).size()))) copies_.insert(to);
  if (!IsDocument(from) && !IsToBeImported(from)) return;
  const bool isTakenBack = to.empty() || IsSetAside(from, to);
  if (isTakenBack && copies_.erase(from) > 0) return;
  // What comes in anew under its name sets it aside.
  if (!IsDocument(from) && IsSetAside(from, to)) return;
  if (GivesWayInQueue(from, to)) return;
  if (to.empty() && desk_.PurgeMayDelete(from)) return;
  if (wishes_.empty()) return Note("Without a command, away goes " + Readable(from));
  Wish& wish = wishes_.back();
  if (FolderOf(from) == wish.mayClear) return;
  if (!wish.mayTake.contains(from)) {
    const bool givesWay = FolderOf(from) == wish.givesWay && IsSetAside(from, to);
    if (!givesWay) {
      Note(wish.name + " takes what was neither in work nor highlighted: " + Readable(from) +
           " becomes " + Readable(to));
    }
    return;
  }
  wish.mayTake.insert(to);
}

void Takings::Note(const std::string& fault) {
  if (fault_.empty()) fault_ = fault;
}

std::string Takings::TakeFault() { return std::exchange(fault_, ""); }

}  // namespace tavlo::simulation
