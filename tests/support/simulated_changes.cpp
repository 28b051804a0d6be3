#include <string>
#include <utility>

#include "support/simulated_disk.h"
#include "support/simulated_paths.h"

namespace tavlo::test {
namespace {

using store::DiskResult;

std::string HalfOf(const std::string& contents) { return contents.substr(0, contents.size() / 2); }

}  // namespace

// What changes a simulated disk. Each operation has its effect at once, or late if it was left
// behind.

DiskResult SimulatedDisk::SetAttributesNormal(const std::string& path) {
  const auto absolute = Absolute(path);
  const auto make = [this, absolute] {
    if (!Is(absolute, Kind::File)) return DiskResult::NotFound;
    entries_.at(absolute).readOnly = false;
    return DiskResult::Done;
  };
  const auto fault = BeginToOpen("SetAttributesNormal " + absolute, {absolute}, make);
  return fault ? *fault : make();
}

DiskResult SimulatedDisk::Renew(const std::string& path) {
  const auto absolute = Absolute(path);
  const auto renew = [this, absolute] {
    if (!Is(absolute, Kind::File)) return DiskResult::NotFound;
    entries_.at(absolute).changedAt = Stamp();
    return DiskResult::Done;
  };
  const auto fault = Begin("Renew " + absolute, {absolute}, renew);
  return fault ? *fault : renew();
}

DiskResult SimulatedDisk::Copy(const std::string& from, const std::string& to) {
  const auto source = Absolute(from);
  const auto target = Absolute(to);
  const auto finish = [this, source, target] { return FinishCopy(source, target); };
  const auto fault = BeginToOpen("Copy " + source + " -> " + target, {source, target}, finish);
  const bool alreadyLost = Crashed() && operationCount_ > *crashAt_;
  const bool leavesNothing = fault == DiskResult::AlreadyThere || fault == DiskResult::NotFound ||
                             fault == DiskResult::ProcessInTrouble || alreadyLost;
  // A folder that owes an answer shows nothing of what is on its way there.
  const bool unseen = fault == DiskResult::OutOfReach && (Has(target) || Places.Owes(target));
  if (unseen) return *fault;
  const DiskResult refused = WhyNotCopied(source, target);
  if (refused != DiskResult::Done) return fault == DiskResult::OutOfReach ? *fault : refused;
  if (leavesNothing) return *fault;
  const Node original = entries_.at(source);
  const bool fits = TakeSpace(target, original.contents.size());
  if (fault || !fits) {
    Make(target, Kind::File, HalfOf(original.contents));
    return fault.value_or(DiskResult::NoSpace);
  }
  Make(target, Kind::File, original.contents).stamp = original.stamp;
  if (OnNextCopy) std::exchange(OnNextCopy, nullptr)();
  return DiskResult::Done;
}

DiskResult SimulatedDisk::WhyNotCopied(const std::string& source, const std::string& target) const {
  if (!Is(source, Kind::File)) return DiskResult::NotFound;
  if (entries_.at(source).unreadable) return DiskResult::NoAccess;
  const DiskResult held = CanHold(target);
  if (held != DiskResult::Done) return held;
  return entries_.contains(target) ? DiskResult::AlreadyThere : DiskResult::Done;
}

DiskResult SimulatedDisk::FinishCopy(const std::string& source, const std::string& target) {
  const bool halfMade = Is(source, Kind::File) && Is(target, Kind::File) &&
                        entries_.at(target).contents == HalfOf(entries_.at(source).contents);
  const DiskResult refused = WhyNotCopied(source, target);
  if (refused != DiskResult::Done && !halfMade) return refused;
  const Node original = entries_.at(source);
  Make(target, Kind::File, original.contents).stamp = original.stamp;
  return DiskResult::Done;
}

DiskResult SimulatedDisk::Rename(const std::string& from, const std::string& to) {
  const auto source = Absolute(from);
  const auto target = Absolute(to);
  const auto rename = [this, source, target] { return RenameNow(source, target); };
  const auto fault = Begin("Rename " + source + " -> " + target, {source, target}, rename);
  return fault ? *fault : rename();
}

DiskResult SimulatedDisk::RenameNow(const std::string& source, const std::string& target) {
  if (!Is(FolderOf(target), Kind::Folder)) return DiskResult::NotFound;
  if (FileSystemOf(source) != FileSystemOf(target)) return DiskResult::OtherFileSystem;
  const DiskResult held = CanHold(target);
  if (held != DiskResult::Done) return held;
  if (!entries_.contains(source)) return DiskResult::NotFound;
  if (lockedFolders_.contains(FolderOf(source))) return DiskResult::NoAccess;
  if (entries_.contains(target)) return DiskResult::AlreadyThere;
  if (IsBelow(target, source)) return DiskResult::Failed;
  MoveEntries(source, target);
  entries_.at(target).changedAt = Stamp();
  unflushedRenames_.push_back({source, target, loop_.Now()});
  return DiskResult::Done;
}

DiskResult SimulatedDisk::Delete(const std::string& path) {
  const auto absolute = Absolute(path);
  const auto remove = [this, absolute] {
    if (Is(absolute, Kind::Folder)) return DiskResult::Failed;
    if (lockedFolders_.contains(FolderOf(absolute))) return DiskResult::NoAccess;
    return entries_.erase(absolute) == 1 ? DiskResult::Done : DiskResult::NotFound;
  };
  const auto fault = Begin("Delete " + absolute, {absolute}, remove);
  return fault ? *fault : remove();
}

DiskResult SimulatedDisk::Append(const std::string& path, std::string_view text) {
  const auto absolute = Absolute(path);
  const auto append = [this, absolute, added = std::string(text)] {
    return AppendNow(absolute, added);
  };
  const auto fault = BeginToOpen("Append " + absolute, {absolute}, append);
  return fault ? *fault : append();
}

DiskResult SimulatedDisk::AppendNow(const std::string& absolute, const std::string& text) {
  const DiskResult held = CanHold(absolute);
  if (held != DiskResult::Done) return held;
  if (!entries_.contains(absolute)) Make(absolute, Kind::File, "");
  if (!Is(absolute, Kind::File)) return DiskResult::Failed;
  if (entries_.at(absolute).readOnly) return DiskResult::NoAccess;
  if (!TakeSpace(absolute, text.size())) return DiskResult::NoSpace;
  Write(absolute, entries_.at(absolute).contents + text);
  return DiskResult::Done;
}

DiskResult SimulatedDisk::MakeLink(const std::string& target, const std::string& path) {
  const auto absolute = Absolute(path);
  const auto make = [this, target, absolute] { return MakeNew(absolute, Kind::Link, target); };
  const auto fault = Begin("MakeLink " + absolute + " -> " + target, {absolute}, make);
  return fault ? *fault : make();
}

DiskResult SimulatedDisk::MakeFolder(const std::string& path) {
  const auto absolute = Absolute(path);
  const auto make = [this, absolute] {
    // What stands there is seen before whether its folder could hold it.
    if (entries_.contains(absolute)) return DiskResult::AlreadyThere;
    return MakeNew(absolute, Kind::Folder, "");
  };
  const auto fault = Begin("MakeFolder " + absolute, {absolute}, make);
  return fault ? *fault : make();
}

DiskResult SimulatedDisk::MakeNew(const std::string& absolute, Kind kind,
                                  const std::string& contents) {
  const DiskResult held = CanHold(absolute);
  if (held != DiskResult::Done) return held;
  if (entries_.contains(absolute)) return DiskResult::AlreadyThere;
  Make(absolute, kind, contents);
  return DiskResult::Done;
}

DiskResult SimulatedDisk::RemoveFolder(const std::string& path) {
  const auto absolute = Absolute(path);
  const auto remove = [this, absolute] {
    if (!Is(absolute, Kind::Folder)) return DiskResult::NotFound;
    std::erase_if(entries_, [&](const auto& entry) {
      return entry.first == absolute || IsBelow(entry.first, absolute);
    });
    return DiskResult::Done;
  };
  const auto fault = Begin("RemoveFolder " + absolute, {absolute}, remove);
  return fault ? *fault : remove();
}

DiskResult SimulatedDisk::FlushFolder(const std::string& folder) {
  const auto absolute = Absolute(folder);
  const auto flush = [this, absolute] {
    if (!Is(absolute, Kind::Folder)) return DiskResult::NotFound;
    std::erase_if(unflushedRenames_,
                  [&](const auto& rename) { return FolderOf(rename.to) == absolute; });
    return DiskResult::Done;
  };
  const auto fault = BeginToOpen("FlushFolder " + absolute, {absolute}, flush);
  return fault ? *fault : flush();
}

DiskResult SimulatedDisk::Produce(const std::string& source, const std::string& path,
                                  const std::string& contents) {
  const auto from = Absolute(source);
  const auto absolute = Absolute(path);
  const auto make = [this, absolute, contents] {
    const DiskResult held = CanHold(absolute);
    if (held != DiskResult::Done) return held;
    if (entries_.contains(absolute) && !Is(absolute, Kind::File)) return DiskResult::Failed;
    if (!TakeSpace(absolute, contents.size())) return DiskResult::NoSpace;
    Make(absolute, Kind::File, contents);
    return DiskResult::Done;
  };
  const auto fault = BeginToOpen("Produce " + absolute, {from, absolute}, make);
  return fault ? *fault : make();
}

}  // namespace tavlo::test
