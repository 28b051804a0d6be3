#include "support/simulated_disk.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <tuple>
#include <utility>

#include "support/simulated_paths.h"

namespace tavlo::test {
namespace {

using store::DiskResult;

constexpr std::size_t kMostBytesOfAName = 255;
constexpr std::chrono::seconds kKernelWritesAfter{30};

}  // namespace

SimulatedDisk::SimulatedDisk(base::Loop& loop) : Places(loop), loop_(loop) {
  Make("/", Kind::Folder, "");
  WithFolder(CurrentFolder);
}

SimulatedDisk& SimulatedDisk::WithFolder(const std::string& path) {
  const auto absolute = Absolute(path);
  MakeParents(absolute);
  if (!entries_.contains(absolute)) Make(absolute, Kind::Folder, "");
  return *this;
}

SimulatedDisk& SimulatedDisk::WithFile(const std::string& path, const std::string& contents) {
  MakeParents(Absolute(path));
  Make(Absolute(path), Kind::File, contents);
  return *this;
}

SimulatedDisk& SimulatedDisk::WithLink(const std::string& path, const std::string& target) {
  MakeParents(Absolute(path));
  Make(Absolute(path), Kind::Link, target);
  return *this;
}

SimulatedDisk& SimulatedDisk::WithFifo(const std::string& path) {
  MakeParents(Absolute(path));
  Make(Absolute(path), Kind::Fifo, "");
  return *this;
}

SimulatedDisk& SimulatedDisk::WithFileSystemAt(const std::string& folder) {
  WithFolder(folder);
  fileSystems_.push_back(Absolute(folder));
  return *this;
}

void SimulatedDisk::Write(const std::string& path, const std::string& contents) {
  Node& node = entries_.at(Absolute(path));
  node.contents = contents;
  // Virtual time stands still while a rule runs, and two changes have two stamps.
  node.stamp = std::max(Stamp(), node.stamp + 1);
}

void SimulatedDisk::FailOperation(int nth, DiskResult result, Failing failing) {
  fault_ = Fault{operationCount_ + nth, result, failing};
}

void SimulatedDisk::StallAtOperation(int nth, const std::string& folder) {
  stalling_ = Stalling{operationCount_ + nth, Absolute(folder)};
}

void SimulatedDisk::CrashAtOperation(int nth) { crashAt_ = operationCount_ + nth; }

void SimulatedDisk::LoseWhatWasNotFlushed() {
  std::reverse(unflushedRenames_.begin(), unflushedRenames_.end());
  for (const auto& [from, to, at] : unflushedRenames_) {
    if (loop_.Now() - at > kKernelWritesAfter) continue;
    if (entries_.contains(to) && !entries_.contains(from)) MoveEntries(to, from);
  }
  unflushedRenames_.clear();
}

void SimulatedDisk::Heal() {
  fault_.reset();
  crashAt_.reset();
  stalling_.reset();
}

void SimulatedDisk::SetFreeSpace(const std::string& path, std::uint64_t bytes) {
  freeSpace_[FileSystemOf(Absolute(path))] = bytes;
}

std::string SimulatedDisk::Contents(const std::string& path) const {
  const auto found = entries_.find(Absolute(path));
  return found == entries_.end() ? "(nothing there)" : found->second.contents;
}

std::vector<std::string> SimulatedDisk::NamesIn(const std::string& folder) const {
  std::vector<std::string> names;
  for (const auto& [path, node] : entries_) {
    if (path != "/" && FolderOf(path) == Absolute(folder)) names.push_back(NameOf(path));
  }
  return names;
}

std::vector<std::string> SimulatedDisk::FilesHolding(const std::string& contents) const {
  std::vector<std::string> paths;
  for (const auto& [path, node] : entries_) {
    if (node.kind == Kind::File && node.contents == contents) paths.push_back(path);
  }
  return paths;
}

std::size_t SimulatedDisk::FileCount() const {
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(),
                    [](const auto& entry) { return entry.second.kind == Kind::File; }));
}

void SimulatedDisk::ForEachFile(const LookAtFile& look) const {
  for (const auto& [path, node] : entries_) {
    if (node.kind == Kind::File) look(path, node.contents);
  }
}

int SimulatedDisk::NumberOf(const std::string& path) const {
  const auto found = entries_.find(Absolute(path));
  return found == entries_.end() ? 0 : found->second.number;
}

std::string SimulatedDisk::PathOf(int number) const {
  const auto found = std::find_if(entries_.begin(), entries_.end(), [number](const auto& entry) {
    return entry.second.number == number;
  });
  return found == entries_.end() ? "" : found->first;
}

std::vector<std::string> SimulatedDisk::Changes() const {
  constexpr std::array<std::string_view, 5> kLooking{"List ", "Facts ", "Look ", "Test ", "Open "};
  std::vector<std::string> changes;
  for (const auto& operation : Operations) {
    if (std::none_of(kLooking.begin(), kLooking.end(),
                     [&](auto word) { return operation.starts_with(word); })) {
      changes.push_back(operation);
    }
  }
  return changes;
}

store::Listing SimulatedDisk::ListPlainFiles(const std::string& folder) {
  return List(folder, Dots::Hidden);
}

store::Listing SimulatedDisk::ListDotFiles(const std::string& folder) {
  return List(folder, Dots::Alone);
}

store::Listing SimulatedDisk::List(const std::string& folder, Dots dots) {
  const auto absolute = Absolute(folder);
  const auto fault = BeginToOpen("List " + absolute, {absolute});
  if (fault) return {.processInTrouble = fault == DiskResult::ProcessInTrouble};
  if (!Is(absolute, Kind::Folder)) return {};
  const auto broken = brokenListings_.find(absolute);
  if (broken != brokenListings_.end() && broken->second == 0) return {};
  std::vector<std::pair<int, std::string>> found;
  const std::string below = absolute == "/" ? absolute : absolute + "/";
  for (auto entry = entries_.lower_bound(below); entry != entries_.end(); ++entry) {
    const auto& [path, node] = *entry;
    if (!path.starts_with(below)) break;
    const bool listed = NameOf(path).starts_with('.') == (dots == Dots::Alone);
    if (node.kind == Kind::File && FolderOf(path) == absolute && listed) {
      found.emplace_back(node.number, NameOf(path));
    }
  }
  std::sort(found.begin(), found.end());
  store::Listing listing{.started = true, .finished = true};
  for (auto& [number, name] : found) {
    if (broken != brokenListings_.end() && listing.names.size() == broken->second) break;
    listing.names.push_back(std::move(name));
  }
  listing.finished = broken == brokenListings_.end();
  listing.processInTrouble = !listing.finished && ListingBreaksForWantOfMemory;
  return listing;
}

std::optional<store::FileFacts> SimulatedDisk::Facts(const std::string& path) {
  const auto absolute = Absolute(path);
  if (Begin("Facts " + absolute, {absolute}) || !Is(absolute, Kind::File)) return {};
  const Node& node = entries_.at(absolute);
  return store::FileFacts{.size = node.contents.size(), .stamp = node.stamp};
}

std::optional<store::FolderMark> SimulatedDisk::MarkOf(const std::string& folder) {
  const auto absolute = Absolute(folder);
  const bool certain = FoldersAreMarked && Is(absolute, Kind::Folder) &&
                       !brokenListings_.contains(absolute) && !Places.AnyStalls();
  if (!certain) return {};
  store::FolderMark mark{.inode = static_cast<std::uint64_t>(NumberOf(absolute))};
  std::string names;
  const std::string below = absolute == "/" ? absolute : absolute + "/";
  for (auto entry = entries_.lower_bound(below);
       entry != entries_.end() && entry->first.starts_with(below); ++entry) {
    if (FolderOf(entry->first) != absolute) continue;
    names += entry->first + "/" + std::to_string(entry->second.number);
  }
  mark.changedAt = static_cast<std::int64_t>(std::hash<std::string>()(names));
  return mark;
}

std::optional<std::int64_t> SimulatedDisk::ChangedAt(const std::string& path) {
  const auto absolute = Absolute(path);
  if (Begin("Facts " + absolute, {absolute}) || !Is(absolute, Kind::File)) return {};
  const Node& node = entries_.at(absolute);
  return std::max(node.stamp, node.changedAt);
}

store::Entry SimulatedDisk::Look(const std::string& path) {
  auto absolute = Absolute(path);
  const auto fault = Begin("Look " + absolute, {absolute});
  if (fault == DiskResult::OutOfReach) return store::Entry::OutOfReach;
  if (fault || !entries_.contains(absolute)) return store::Entry::Nothing;
  if (Is(absolute, Kind::Link)) absolute = Absolute(entries_.at(absolute).contents);
  if (Is(absolute, Kind::File)) return store::Entry::PlainFile;
  return Is(absolute, Kind::Folder) ? store::Entry::Folder : store::Entry::Other;
}

store::Readiness SimulatedDisk::TestReadiness(const std::string& path) {
  const auto absolute = Absolute(path);
  const auto fault = BeginToOpen("Test " + absolute, {absolute});
  if (fault == DiskResult::ProcessInTrouble) return store::Readiness::ProcessInTrouble;
  if (fault == DiskResult::OutOfReach) return store::Readiness::OutOfReach;
  if (fault || !Is(absolute, Kind::File)) return store::Readiness::Unusable;
  const Node& node = entries_.at(absolute);
  return node.unreadable ? store::Readiness::Unusable : ReadinessOf(node);
}

store::Readiness SimulatedDisk::ReadinessOf(const Node& node) {
  if (node.writers > 0) return store::Readiness::InUse;
  return node.readOnly ? store::Readiness::FreeReadOnly : store::Readiness::Free;
}

std::string SimulatedDisk::Absolute(const std::string& path) const {
  const std::string whole = path.starts_with('/') ? path : CurrentFolder + "/" + path;
  std::string absolute;
  for (const char c : whole) {
    if (c != '/' || !absolute.ends_with('/')) absolute += c;
  }
  if (absolute.size() > 1 && absolute.ends_with('/')) absolute.pop_back();
  return absolute;
}

std::string SimulatedDisk::FileSystemOf(const std::string& absolute) const {
  std::string innermost = "/";
  for (const auto& folder : fileSystems_) {
    const bool holds = absolute == folder || IsBelow(absolute, folder);
    if (holds && folder.size() > innermost.size()) innermost = folder;
  }
  return innermost;
}

std::int64_t SimulatedDisk::Stamp() const {
  const base::CalendarTime now = loop_.WallClock();
  const std::chrono::sys_days day = std::chrono::year{now.year} / now.month / now.day;
  const auto seconds = std::chrono::seconds(day.time_since_epoch()).count() + now.hour * 3600LL +
                       now.minute * 60LL + now.second;
  return (seconds * 1000 + now.millisecond) * 1'000'000;
}

SimulatedDisk::Node& SimulatedDisk::Make(const std::string& absolute, Kind kind,
                                         const std::string& contents) {
  return entries_[absolute] =
             Node{.kind = kind, .contents = contents, .stamp = Stamp(), .number = ++lastNumber_};
}

void SimulatedDisk::MakeParents(const std::string& absolute) {
  for (auto slash = absolute.find('/', 1); slash != absolute.npos;
       slash = absolute.find('/', slash + 1)) {
    const auto folder = absolute.substr(0, slash);
    if (!entries_.contains(folder)) Make(folder, Kind::Folder, "");
  }
}

bool SimulatedDisk::Is(const std::string& absolute, Kind kind) const {
  const auto found = entries_.find(absolute);
  return found != entries_.end() && found->second.kind == kind;
}

DiskResult SimulatedDisk::CanHold(const std::string& absolute) const {
  if (!Is(FolderOf(absolute), Kind::Folder)) return DiskResult::NotFound;
  if (lockedFolders_.contains(FolderOf(absolute))) return DiskResult::NoAccess;
  return NameOf(absolute).size() > kMostBytesOfAName ? DiskResult::Failed : DiskResult::Done;
}

bool SimulatedDisk::TakeSpace(const std::string& absolute, std::uint64_t bytes) {
  const auto space = freeSpace_.find(FileSystemOf(absolute));
  if (space == freeSpace_.end()) return true;
  if (space->second < bytes) return false;
  space->second -= bytes;
  return true;
}

void SimulatedDisk::MoveEntries(const std::string& from, const std::string& to) {
  std::map<std::string, Node> moved;
  for (auto& [path, node] : entries_) {
    if (path == from || IsBelow(path, from)) moved[to + path.substr(from.size())] = node;
  }
  std::erase_if(entries_, [&](const auto& entry) {
    return entry.first == from || IsBelow(entry.first, from);
  });
  entries_.merge(moved);
}

std::optional<DiskResult> SimulatedDisk::BeginToOpen(const std::string& record,
                                                     const std::vector<std::string>& paths,
                                                     const Effect& effect) {
  const auto fault = Begin(record, paths, effect);
  return !fault && FindsNoHandle(paths.front()) ? DiskResult::ProcessInTrouble : fault;
}

std::optional<DiskResult> SimulatedDisk::Begin(const std::string& record,
                                               const std::vector<std::string>& paths,
                                               const Effect& effect) {
  if (BetweenOperations && !Crashed()) BetweenOperations();
  const int number = ++operationCount_;
  if (Crashed()) return DiskResult::Failed;
  Operations.push_back(record);
  if (stalling_ && number == stalling_->at) Places.Stall(std::exchange(stalling_, {})->folder);
  const auto late = [effect] {
    if (effect) std::ignore = effect();
  };
  if (!Places.Answers(paths, late)) return DiskResult::OutOfReach;
  // The process may have ended in the meantime.
  if (Crashed()) return DiskResult::Failed;
  if (!fault_ || number < fault_->at) return {};
  if (fault_->failing == Failing::Once && number > fault_->at) return {};
  return fault_->result;
}

}  // namespace tavlo::test
