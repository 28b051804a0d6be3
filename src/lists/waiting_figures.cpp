#include "lists/waiting_figures.h"

#include <algorithm>
#include <limits>

#include "base/text.h"
#include "intake/import_directories.h"

namespace tavlo::lists {
namespace {

/// The folders in the order in which they are counted.
enum Folder {
  kEw2,
  kDs2,
  kFirstImport,
  kEu2 = kFirstImport + intake::kImportDirectories,
  kFolders
};

constexpr std::string_view kAnyName;

/// The flag of a priority document and what closes the head of its name. This is our own decision:
/// the name is not parsed, so whatever holds these letters counts as priority.
constexpr std::string_view kPriorityMark = "P_";

void Add(std::int16_t& figure, std::int16_t more) {
  figure = static_cast<std::int16_t>(
      std::min<int>(figure + more, std::numeric_limits<std::int16_t>::max()));
}

}  // namespace

WaitingFigures::WaitingFigures(base::Loop& loop, store::Disk& disk,
                               const store::WorkFolders& folders)
    : loop_(loop), disk_(disk), folders_(folders) {}

Counted WaitingFigures::CountWaitingWork() {
  if (!tally_) tally_.emplace();
  const Counted counted = CountOn();
  if (counted == Counted::NotYet) return counted;
  const bool isLook = tally_->isLook;
  if (counted == Counted::Whole) TakeTally();
  tally_.reset();
  if (counted == Counted::Failed) {
    GoBackToLastSeen();
    lookIsOwed_ = lookIsOwed_ || isLook;
    return counted;
  }
  if (isLook) {
    SyncLastSeenFigures();
  } else if (lookIsOwed_) {
    LowerLastSeen();
  }
  lookIsOwed_ = false;
  return counted;
}

Counted WaitingFigures::CountOn() {
  const base::MonotonicTime begun = loop_.Now();
  while (tally_->nextFolder < kFolders) {
    if (!CountNext()) return Counted::Failed;
    ++tally_->nextFolder;
    if (loop_.Now() - begun >= kLongestPiece && tally_->nextFolder < kFolders) {
      return Counted::NotYet;
    }
  }
  return Counted::Whole;
}

bool WaitingFigures::CountNext() {
  const Sum queue{tally_->queue, tally_->queuePriority};
  switch (const int folder = tally_->nextFolder) {
    case kEw2:
      return Count(folders_.Ew2QueuePath, ".eW2", queue);
    case kDs2:
      return Count(folders_.Ds2QueuePath, ".dS2", queue);
    case kEu2:
      return Count(folders_.Eu2QueuePath, ".eU2", queue);
    default:
      return CountImportDirectory(folder - kFirstImport, {tally_->import, tally_->importPriority});
  }
}

void WaitingFigures::TakeTally() {
  WaitingQueueCount = tally_->queue;
  WaitingQueuePriorityCount = tally_->queuePriority;
  WaitingImportCount = tally_->import;
  WaitingImportPriorityCount = tally_->importPriority;
}

void WaitingFigures::GoBackToLastSeen() {
  WaitingQueueCount = LastQueueCount;
  WaitingQueuePriorityCount = LastQueuePriorityCount;
  WaitingImportCount = LastImportCount;
  WaitingImportPriorityCount = LastImportPriorityCount;
}

/// What the refresh has fetched whose look failed would else hide as much new work.
void WaitingFigures::LowerLastSeen() {
  LastQueueCount = std::min(LastQueueCount, WaitingQueueCount);
  LastQueuePriorityCount = std::min(LastQueuePriorityCount, WaitingQueuePriorityCount);
  LastImportCount = std::min(LastImportCount, WaitingImportCount);
  LastImportPriorityCount = std::min(LastImportPriorityCount, WaitingImportPriorityCount);
}

bool WaitingFigures::CountImportDirectory(int directory, const Sum& sum) {
  const std::string folder = intake::ImportDirectoryPath(folders_, std::to_string(directory));
  if (Count(folder, kAnyName, sum)) return true;
  // A path that a site has set need not hold all of the numbered directories. Nothing can wait in
  // one that is not there, and it must not keep the others from being told of.
  return directory > 0 && disk_.Look(folder) == store::Entry::Nothing;
}

bool WaitingFigures::Count(const std::string& folder, std::string_view ending, const Sum& sum) {
  loop_.Breathe();
  KnownFolder& known = known_[tally_->nextFolder];
  const bool isKnown = known.mark && known.path == folder && known.mark == disk_.MarkOf(folder);
  if (!isKnown) {
    std::optional<KnownFolder> listed = List(folder, ending);
    known = listed.value_or(KnownFolder{});
    if (!listed) return false;
  }
  Add(sum.all, known.all);
  Add(sum.priority, known.priority);
  return true;
}

std::optional<WaitingFigures::KnownFolder> WaitingFigures::List(const std::string& folder,
                                                                std::string_view ending) {
  // Asked before the names, so that what comes meanwhile changes it.
  KnownFolder found{.path = folder, .mark = disk_.MarkOf(folder)};
  const store::Listing listing = disk_.ListPlainFiles(folder);
  if (!listing.finished) return {};
  for (const std::string& name : listing.names) {
    if (!base::EndsInEitherCase(name, ending)) continue;
    Add(found.all, 1);
    if (name.find(kPriorityMark) != name.npos) Add(found.priority, 1);
  }
  return found;
}

void WaitingFigures::SyncLastSeenFigures() {
  SyncQueueFigures();
  SyncImportFigures();
}

void WaitingFigures::SyncQueueFigures() {
  LastQueueCount = WaitingQueueCount;
  LastQueuePriorityCount = WaitingQueuePriorityCount;
}

void WaitingFigures::SyncImportFigures() {
  LastImportCount = WaitingImportCount;
  LastImportPriorityCount = WaitingImportPriorityCount;
}

void WaitingFigures::TakeWaitingWorkAsSeen() {
  tally_.emplace().isLook = true;
  CountWaitingWork();
}

}  // namespace tavlo::lists
