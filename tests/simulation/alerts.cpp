#include "simulation/alerts.h"

#include <algorithm>
#include <array>
#include <cctype>

#include "intake/import_directories.h"
#include "simulation/desk.h"
#include "simulation/trace.h"

namespace tavlo::simulation {
namespace {

/// Where the import directories begin in the order of a count, and where they end.
constexpr std::size_t kFirstImport = 2;
constexpr std::size_t kBehindImport = kFirstImport + intake::kImportDirectories;
constexpr std::size_t kAllFolders = kBehindImport + 1;

/// The ending of what counts in the folder at that place; empty where every file does.
std::string_view EndingAt(std::size_t place) {
  if (place == 0) return ".ew2";
  if (place == 1) return ".ds2";
  return place == kBehindImport ? ".eu2" : "";
}

bool EndsIn(std::string_view path, std::string_view lowerCaseEnding) {
  if (path.size() < lowerCaseEnding.size()) return false;
  const std::string_view end = path.substr(path.size() - lowerCaseEnding.size());
  return std::ranges::equal(end, lowerCaseEnding, [](unsigned char mine, unsigned char wanted) {
    return std::tolower(mine) == wanted;
  });
}

bool HasPriority(const std::string& path) {
  return path.find("P_", path.rfind('/') + 1) != path.npos;
}

std::ptrdiff_t Figure(const std::vector<std::string>& paths, bool priority) {
  return priority ? std::ranges::count_if(paths, &HasPriority) : std::ssize(paths);
}

bool IsMore(const std::vector<std::string>& now, const std::vector<std::string>& before,
            bool priority) {
  return Figure(now, priority) > Figure(before, priority);
}

}  // namespace

const std::array<Alerts::Words, 4>& Alerts::AllWords() {
  static constexpr std::array<Words, 4> kAll{{
      {"New dictation has arrived!", "Tavlo Deck - New Dictation Alert", "NewDocInQ"},
      {"New dictation is available for import!", "Tavlo Deck - New Dictation Alert",
       "NewDocInImport"},
      {"New priority dictation has arrived!", "Tavlo Deck - New Priority Dictation Alert",
       "NewPriorityDocInQ"},
      {"New priority dictation is available for import!",
       "Tavlo Deck - New Priority Dictation Alert", "NewPriorityDocInImport"},
  }};
  return kAll;
}

const Alerts::Words& Alerts::WordsOf(bool priority, bool import) {
  return AllWords()[(priority ? 2U : 0U) + (import ? 1U : 0U)];
}

void Alerts::Follow() {
  seen_ = {};
  isUnsure_ = false;
  listings_.clear();
  forms::MainForm& main = desk_.Main();
  for (forms::Command* command : {&main.cmdUpdateFileList, &main.cmdComplete, &main.cmdSave,
                                  &main.cmdSkip, &main.mnuViewQueue, &main.mnuViewImport}) {
    FollowCommand(*command);
  }
  FollowTick(desk_.Rooms()->refresh.tmrGetAllJobs.OnTick, Doing::Command);
  FollowTick(desk_.Rooms()->waitingWork.tmrWorkWaitingAlert.OnTick, Doing::Watch);
}

void Alerts::FollowCommand(forms::Command& command) {
  const bool opensImport = &command == &desk_.Main().mnuViewImport;
  command.OnPress = [this, opensImport, press = command.OnPress] {
    const bool stood = desk_.Main().frameImport.Visible;
    Enter(Doing::Command);
    scopes_.back().owesALook = opensImport && !stood;
    press();
    if (opensImport && !desk_.Main().frameImport.Visible) scopes_.back().owesALook = false;
    Leave();
  };
}

void Alerts::FollowTick(std::function<void()>& tick, Doing doing) {
  tick = [this, doing, run = tick] {
    Enter(doing);
    run();
    Leave();
  };
}

void Alerts::Enter(Doing doing) {
  for (Scope& scope : scopes_) {
    if (scope.check && doing == Doing::Hand) scope.check->isDisturbed = true;
  }
  const bool looksElsewhere = desk_.Main().frameFtp.Visible ||
                              desk_.Config().frmConfiguration.Visible ||
                              desk_.loop.MessageBoxOpen();
  scopes_.push_back({.doing = doing, .mayNotLook = doing == Doing::Watch && looksElsewhere});
}

void Alerts::Leave() {
  const Scope scope = scopes_.back();
  scopes_.pop_back();
  const bool isSilent = scope.rows && Messages() == scope.messages;
  if (isSilent) desk_.staysOnTop = true;
  isUnsure_ = isUnsure_ || desk_.Rooms()->waitingFigures.CountIsUnderWay();
  if (desk_.ended || desk_.SessionEnds() || desk_.disk.Crashed()) return;
  if (scope.owesALook) Fault("A list was built, and what waits is not taken as seen.");
  if (scope.check) LeaveCheck(*scope.check);
  if (isSilent && *scope.rows > 0 && !scope.check->isDisturbed) {
    Fault("An alert came without its message.");
  }
}

void Alerts::LeaveCheck(const Check& check) {
  if (check.isUnsure) return;
  if (check.ofQueue) Fault(std::string("Not told: ") + check.ofQueue->text);
  // A hand may have looked at it itself, or the folders give no answer any more.
  if (const Words* const words = OfImport(check); words && !check.isDisturbed) {
    Fault(std::string("Not told: ") + words->text);
  }
}

std::ptrdiff_t Alerts::Messages() const {
  return std::ranges::count_if(desk_.loop.Shown, [](const base::MessageBox& box) {
    return std::ranges::any_of(AllWords(),
                               [&](const Words& words) { return box.text == words.text; });
  });
}

std::vector<std::string> Alerts::Folders() const {
  const store::WorkFolders& folders = desk_.Rooms()->folders;
  std::vector<std::string> all{folders.Ew2QueuePath, folders.Ds2QueuePath};
  for (int number = 0; number < intake::kImportDirectories; ++number) {
    all.push_back(intake::ImportDirectoryPath(folders, std::to_string(number)));
  }
  all.push_back(folders.Eu2QueuePath);
  return all;
}

void Alerts::Listed(const std::string& folder, const store::Listing& listing) {
  if (!desk_.Rooms()) return;
  Listing listed{.folder = folder, .files = {}, .isWhole = listing.finished};
  for (const std::string& name : listing.names) listed.files.push_back(folder + name);
  listings_.push_back(std::move(listed));
  if (listings_.size() > kAllFolders) listings_.pop_front();
  const bool countHasFailed = CountHasFailed();
  const bool countIsWhole = CountIsWhole();
  if (!scopes_.empty() && scopes_.back().doing == Doing::Command) {
    if (folder == desk_.Rooms()->folders.InQueuePath) scopes_.back().owesALook = true;
    if (countHasFailed || countIsWhole) scopes_.back().owesALook = false;
    isUnsure_ = isUnsure_ || countHasFailed;
  }
  if (!countIsWhole) return;
  const bool isCheck = !scopes_.empty() && scopes_.back().doing == Doing::Watch;
  isCheck ? CheckFor(Counted()) : Look(Counted());
}

bool Alerts::CountIsWhole() const {
  const std::vector<std::string> folders = Folders();
  if (listings_.size() < folders.size()) return false;
  for (std::size_t place = 0; place < folders.size(); ++place) {
    const Listing& listing = listings_[place];
    if (listing.folder != folders[place]) return false;
    // Of the numbered directories a site may have less.
    const bool isNumbered = place > kFirstImport && place < kBehindImport;
    if (!listing.isWhole && !(isNumbered && !desk_.disk.Has(listing.folder))) return false;
  }
  return true;
}

bool Alerts::CountHasFailed() const {
  if (listings_.back().isWhole) return false;
  const std::vector<std::string> folders = Folders();
  const std::size_t most = std::min(listings_.size(), folders.size());
  for (std::size_t length = 1; length <= most; ++length) {
    const auto begin = listings_.end() - static_cast<std::ptrdiff_t>(length);
    const auto end = folders.begin() + static_cast<std::ptrdiff_t>(length);
    if (std::equal(folders.begin(), end, begin,
                   [](const std::string& folder, const Listing& listing) {
                     return listing.folder == folder;
                   })) {
      return true;
    }
  }
  return false;
}

Alerts::Sides Alerts::Counted() const {
  Sides now;
  for (std::size_t place = 0; place < kAllFolders; ++place) {
    Paths& side = place < kFirstImport || place == kBehindImport ? now.queue : now.import;
    std::ranges::copy_if(listings_[place].files, std::back_inserter(side),
                         [&](const auto& path) { return EndsIn(path, EndingAt(place)); });
  }
  return now;
}

Alerts::Sides Alerts::Standing() const {
  Sides now;
  const std::vector<std::string> folders = Folders();
  desk_.disk.ForEachFile([&](const std::string& path, const std::string&) {
    const auto slash = path.rfind('/') + 1;
    if (path[slash] == '.') return;
    for (std::size_t place = 0; place < folders.size(); ++place) {
      if (folders[place] != path.substr(0, slash) || !EndsIn(path, EndingAt(place))) continue;
      const bool isOfQueue = place < kFirstImport || place == kBehindImport;
      (isOfQueue ? now.queue : now.import).push_back(path);
    }
  });
  return now;
}

void Alerts::Look(const Sides& now) {
  seen_ = now;
  isUnsure_ = false;
  for (Scope& scope : scopes_) {
    if (scope.check) scope.check->isOverlooked = true;
  }
}

std::pair<const Alerts::Words*, const Alerts::Words*> Alerts::DueOf(const Sides& now) const {
  const std::string& mode = desk_.Config().txtWorkWaitingAlertMode.Value.Get();
  if (mode != "A" && mode != "P") return {};
  const bool priority = mode == "P";
  const bool inQueue = IsMore(now.queue, seen_.queue, priority);
  const bool inImport = IsMore(now.import, seen_.import, priority);
  if (desk_.Config().txtAutoImport.Value.Get() == "Y") {
    return {inQueue || inImport ? &WordsOf(priority, false) : nullptr, nullptr};
  }
  return {inQueue ? &WordsOf(priority, false) : nullptr,
          inImport ? &WordsOf(priority, true) : nullptr};
}

std::array<bool, 2> Alerts::MoreInImport(const Sides& now) const {
  return {IsMore(now.import, seen_.import, false), IsMore(now.import, seen_.import, true)};
}

const Alerts::Words* Alerts::OfImport(const Check& check) const {
  const std::string& mode = desk_.Config().txtWorkWaitingAlertMode.Value.Get();
  if (mode != "A" && mode != "P") return nullptr;
  const bool priority = mode == "P";
  return check.moreInImport[priority ? 1 : 0] ? &WordsOf(priority, true) : nullptr;
}

void Alerts::CheckFor(const Sides& now) {
  const std::string& mode = desk_.Config().txtWorkWaitingAlertMode.Value.Get();
  Scope& scope = scopes_.back();
  if (scope.mayNotLook) Fault("A check comes while the typist looks at something else.");
  if (mode == "1" || mode == "0") Fault("A check comes though alerts are off.");
  if (scope.check) return CheckAgain(*scope.check, now);
  const bool importsByItself = desk_.Config().txtAutoImport.Value.Get() == "Y";
  scope.check = {.ofQueue = DueOf(now).first, .import = now.import, .isUnsure = isUnsure_};
  if (!importsByItself) scope.check->moreInImport = MoreInImport(now);
  if (!scope.check->ofQueue) return;
  seen_.queue = now.queue;
  if (importsByItself) seen_.import = now.import;
}

void Alerts::CheckAgain(Check& check, const Sides& now) {
  if (!check.toldOfQueue) return Fault("Two checks come at once.");
  if (!DueOf(now).second) return;
  check.moreInImport = MoreInImport(now);
  check.import = now.import;
  check.isOverlooked = false;
}

void Alerts::Notified(const test::SimulatedNotifier::Notification& notification) {
  if (OnAlert) OnAlert();
  Check* const check = scopes_.empty() || !scopes_.back().check ? nullptr : &*scopes_.back().check;
  const auto isOf = [&](const Words* words) {
    return words && words->text == notification.text && words->title == notification.title;
  };
  if (check && isOf(check->ofQueue)) {
    check->ofQueue = nullptr;
    check->toldOfQueue = true;
  } else if (check && isOf(OfImport(*check))) {
    if (!check->isOverlooked) seen_.import = check->import;
    check->moreInImport = {};
  } else if (!check || !check->isUnsure) {
    return Fault("An alert for which nothing came: " + notification.text);
  }
  scopes_.back().rows = desk_.Main().listViewInQueue.Rows().size();
  scopes_.back().messages = Messages();
}

bool Alerts::AllFoldersStand() const {
  const std::vector<std::string> folders = Folders();
  for (std::size_t place = 0; place < folders.size(); ++place) {
    const bool isNumbered = place > kFirstImport && place < kBehindImport;
    if (!isNumbered && !desk_.disk.Has(folders[place])) return false;
  }
  return true;
}

bool Alerts::SomethingIsDue() const {
  // A path that leads nowhere keeps everything from being counted.
  if (isUnsure_ || !AllFoldersStand()) return false;
  const auto [ofQueue, ofImport] = DueOf(Standing());
  return ofQueue || ofImport;
}

void Alerts::LookWhatWasSaid() {
  for (const Words& words : AllWords()) {
    const std::string text = words.text;
    const auto alerts = std::ranges::count(desk_.notifier.notified, text,
                                           &test::SimulatedNotifier::Notification::text);
    const auto boxes = std::ranges::count(desk_.loop.Shown, text, &base::MessageBox::text);
    const std::string file = std::string("/") + words.prompt + ".";
    const auto prompts = std::ranges::count_if(
        desk_.promptControl.Sounded,
        [&](const std::string& path) { return path.find(file) != path.npos; });
    if (boxes > alerts || prompts > alerts) Fault("Told too often: " + text);
  }
}

std::string Alerts::TakeFault() {
  LookWhatWasSaid();
  return std::exchange(fault_, "");
}

void Alerts::Fault(const std::string& what) {
  if (!isUnsure_ && fault_.empty()) fault_ = what;
}

}  // namespace tavlo::simulation
