#include "intake/retrieval_passes.h"

#include <algorithm>
#include <cmath>
#include <span>

#include "base/text.h"
#include "intake/file_progress.h"
#include "intake/names.h"
#include "window/guards.h"

namespace tavlo::intake {
namespace {

using store::DiskResult;
using Outcome = Carried::Outcome;

/// How many recordings are prepared while one is converted.
constexpr std::size_t kPreparedAhead = 2;

/// What matches everything.
constexpr const char* kAnyEnding = "";

std::string WithoutEnding(const std::string& entry) { return entry.substr(0, entry.size() - 4); }

}  // namespace

RetrievalPasses::RetrievalPasses(const Edges& edges)
    : edges_(edges), carrier_(edges.disk, edges.moves, edges.claims) {}

void RetrievalPasses::RunRetrievalPasses() {
  RunInOrder({&RetrievalPasses::RetrieveEe2Files, &RetrievalPasses::SortFtpQueue,
              &RetrievalPasses::RetrieveDs2Files, &RetrievalPasses::AutoImportAll,
              &RetrievalPasses::RetrieveEu2Files, &RetrievalPasses::RetrieveEw2Files});
}

void RetrievalPasses::RunImportPasses() {
  RunInOrder({&RetrievalPasses::RetrieveEe2Files, &RetrievalPasses::SortFtpQueue});
}

void RetrievalPasses::RunFtpSort() { RunInOrder({&RetrievalPasses::SortFtpQueue}); }

void RetrievalPasses::RunInOrder(const std::vector<PassEnd (RetrievalPasses::*)()>& passes) {
  if (running_) return;
  const window::Raised running(running_);
  for (const auto pass : passes) {
    if ((this->*pass)() == PassEnd::EndsTheRun) return;
  }
}

PassEnd RetrievalPasses::RetrieveEe2Files() {
  const DropFolder folder{"The .eE2 file's path ", Ee2QueuePath, ".eE2", true};
  return Sweep(folder, [this](const std::string& entry, std::size_t) {
    return carrier_.Carry(Ee2QueuePath, entry,
                          edges_.folders.InQueuePath + WithoutEnding(entry) + ".wav");
  });
}

PassEnd RetrievalPasses::RetrieveEw2Files() {
  const std::string& path = edges_.folders.Ew2QueuePath;
  const DropFolder folder{"The .eW2 file's path ", path, ".eW2"};
  return Sweep(folder, [this, &path](const std::string& entry, std::size_t) {
    return carrier_.Carry(path, entry,
                          edges_.folders.InQueuePath + WithEachReplaced(entry, ".eW2", ".wav"));
  });
}

PassEnd RetrievalPasses::RetrieveDs2Files() {
  const DropFolder folder{"The .dS2 file's path ", edges_.folders.Ds2QueuePath, ".dS2"};
  const Found found = Enumerate(folder);
  // How many of the names were handed on, to be prepared or treated.
  std::size_t prepared = 0;
  return TreatEach(folder, found, [&](const std::string& entry, std::size_t index) {
    const std::size_t begin = std::max(prepared, index + 1);
    prepared = std::min(index + 1 + kPreparedAhead, found.names.size());
    const std::span next = std::span(found.names).subspan(begin, prepared - begin);
    return edges_.conversion.ConvertDs2File(entry, next);
  });
}

PassEnd RetrievalPasses::RetrieveEu2Files() {
  const DropFolder folder{"The .eU2 file's path ", edges_.folders.Eu2QueuePath, ".eU2"};
  return Sweep(folder, [this](const std::string& entry, std::size_t) {
    return edges_.conversion.AddHeaderToEu2File(entry);
  });
}

PassEnd RetrievalPasses::SortFtpQueue() {
  const double stamp = StampOfNow();
  const std::string& path = edges_.folders.FtpQueuePath;
  const DropFolder folder{"The ftp file's path ", path, kAnyEnding};
  Found found = Enumerate(folder);
  std::erase(found.names, edges_.receiving.name);
  if (found.names.empty()) {
    // They may stand since a message of the network, and there is nothing to process any more.
    if (found.listing.finished) edges_.front.ShowFtpSort(false);
    return EndOfEnumeration(folder, found.listing);
  }
  edges_.front.ShowFtpSort(true);
  // Each entry uses up a number, also one that is left alone.
  const PassEnd end = TreatEach(folder, found, [&](const std::string& entry, std::size_t index) {
    const double number = stamp + static_cast<double>(index);
    const std::string target = TargetOfSorted(entry, number);
    const bool fits = target.size() - target.rfind('/') - 1 <= store::kMostBytesOfAName;
    return fits ? carrier_.Carry(path, entry, target) : Carried{.outcome = Outcome::NameTooLong};
  });
  // This is our own decision: they stand on under the message of a network that is down.
  if (end != PassEnd::NetworkFault) edges_.front.ShowFtpSort(false);
  return end;
}

double RetrievalPasses::StampOfNow() const {
  const base::CalendarTime now = edges_.loop.WallClock();
  std::string digits;
  for (const int part : {now.year, now.month, now.day, now.hour, now.minute, now.second}) {
    digits += std::to_string(part);
  }
  return base::NumberValue(digits);
}

std::string RetrievalPasses::TargetOfSorted(const std::string& entry, double stamp) const {
  const store::WorkFolders& folders = edges_.folders;
  const std::string_view ending = base::LastCharacters(entry, 4);
  if (ending == ".eU2") return folders.Eu2QueuePath + entry;
  if (ending == ".eW2") return folders.Ew2QueuePath + entry;
  if (ending == ".dS2") return folders.Ds2QueuePath + entry;
  const std::string mark = "_" + base::NumberText(std::floor(stamp)) + ".";
  const std::string name = WithEachReplaced(entry, ".", mark);
  // This is our own decision: what has no kind of its own goes below the root's import folder,
  // wherever the import directories are set to be.
  const std::string root = folders.DefaultQueuePath(store::QueuePath::Wav) + "/";
  const std::string pointer = edges_.front.FtpParseImportDirPointer();
  // An empty one, before any connection, doubles the separator and so means the root itself.
  return pointer == "0" ? root + name : root + pointer + "/" + name;
}

PassEnd RetrievalPasses::AutoImportAll() {
  edges_.importChain.AutoImportAll();
  return PassEnd::Over;
}

PassEnd RetrievalPasses::Sweep(const DropFolder& folder, const Treat& treat) {
  return TreatEach(folder, Enumerate(folder), treat);
}

RetrievalPasses::Found RetrievalPasses::Enumerate(const DropFolder& folder) {
  edges_.claims.TidyUp(folder.path);
  Found found{.names = {}, .listing = edges_.disk.ListPlainFiles(folder.path)};
  for (const std::string& name : found.listing.names) {
    if (base::EndsInEitherCase(name, folder.ending)) found.names.push_back(name);
  }
  return found;
}

PassEnd RetrievalPasses::TreatEach(const DropFolder& folder, const Found& found,
                                   const Treat& treat) {
  FileProgress progress([this](const auto& text) { edges_.front.SayHowFar(text); }, "Retrieving",
                        found.names.size());
  std::optional<PassEnd> end;
  for (std::size_t index = 0; index < found.names.size() && !end; ++index) {
    progress.Next();
    edges_.loop.Breathe();
    end = TreatIfFree(folder, found.names[index], index, treat);
  }
  return end ? *end : EndOfEnumeration(folder, found.listing);
}

std::optional<PassEnd> RetrievalPasses::TreatIfFree(const DropFolder& folder,
                                                    const std::string& entry, std::size_t index,
                                                    const Treat& treat) {
  switch (edges_.folders.FileIsLocked(folder.path + entry)) {
    case store::Locked::No:
      return Settle(folder, entry, treat(entry, index));
    case store::Locked::NotKnown:
      edges_.front.Say(CutShortInWords(folder.path));
      return PassEnd::Over;
    case store::Locked::OutOfReach:
      return TellNetworkFault(folder);
    case store::Locked::Yes:
      break;
  }
  return {};
}

PassEnd RetrievalPasses::EndOfEnumeration(const DropFolder& folder, const store::Listing& listing) {
  if (listing.finished) return PassEnd::Over;
  if (!listing.processInTrouble) return TellNetworkFault(folder);
  edges_.front.Say(CutShortInWords(folder.path));
  return PassEnd::Over;
}

PassEnd RetrievalPasses::TellNetworkFault(const DropFolder& folder) {
  edges_.loop.Show(NetworkFault(folder.networkPrefix, folder.path));
  return PassEnd::NetworkFault;
}

std::optional<PassEnd> RetrievalPasses::Settle(const DropFolder& folder, const std::string& entry,
                                               const Carried& carried) {
  if (!carried.displaced.empty()) edges_.front.Say(DisplacedInWords(carried.displaced));
  switch (carried.outcome) {
    case Outcome::Arrived:
    case Outcome::TakenByAnother:
    case Outcome::NotConverted:
    case Outcome::InUse:
      return {};
    case Outcome::NameTooLong:
      edges_.front.Say(NameTooLongInWords(folder.path + entry));
      return {};
    case Outcome::MayNotClaim:
      edges_.front.Say(MayNotRenameInWords(folder.path, carried.why));
      break;
    case Outcome::OutOfReach:
      if (edges_.disk.OutOfReach(folder.path)) return TellNetworkFault(folder);
      break;
    case Outcome::Failed:
      break;
  }
  if (folder.ignoresFailures) return SettleIgnored(folder, entry, carried);
  edges_.loop.Show(RetrievalFault(folder.path + entry, carried));
  return PassEnd::EndsTheRun;
}

/// The source goes although its copy failed. It is the only form of the dictation, so it is kept.
std::optional<PassEnd> RetrievalPasses::SettleIgnored(const DropFolder& folder,
                                                      const std::string& entry,
                                                      const Carried& carried) {
  // The next file would fare no better.
  if (carried.outcome != Outcome::Failed) return PassEnd::Over;
  const store::FileMoves::Place kept = edges_.moves.Rescue(carried.standsAt);
  if (kept.result == DiskResult::Done) {
    edges_.front.Say(KeptInWords(folder.path + entry, kept.path, carried.arrived));
  }
  return {};
}

}  // namespace tavlo::intake
