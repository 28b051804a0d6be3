#include "store/provisioning.h"

#include <tuple>
#include <vector>

#include "store/disk_words.h"
#include "store/work_folders.h"

namespace tavlo::store {
namespace {

std::string Failure(const std::string& path, DiskResult result) {
  return path + " can not be made: " + std::string(WhyNot(result)) + ".";
}

std::string WithoutSeparator(const std::string& folder) {
  return folder.substr(0, folder.find_last_not_of('/') + 1);
}

std::string ParentOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

std::string MakeMissingFolder(Disk& disk, const std::string& path) {
  const DiskResult made = disk.MakeFolder(path);
  const bool stands = made == DiskResult::AlreadyThere && disk.Look(path) == Entry::Folder;
  return stands || made == DiskResult::Done ? "" : Failure(path, made);
}

/// Builds the parts of a root one after the other. Each gives the empty text or what failed.
class RootBuilder {
 public:
  RootBuilder(Disk& disk, const std::string& shareFolder, const std::string& halfMadeRoot)
      : disk_(disk), installed_(disk, shareFolder), root_(disk, halfMadeRoot) {}

  std::string Build(SettingsDatabases& databases) {
    std::string failure = MakeFolder(root_.InstallRoot);
    if (failure.empty()) failure = CopyFiles(installed_.PromptsPath(), root_.PromptsPath());
    if (failure.empty()) failure = CopyFiles(installed_.FasciaPath(), root_.FasciaPath());
    if (failure.empty()) failure = LinkLibraries();
    if (failure.empty()) failure = databases.Create(root_.SettingsDatabasePath());
    if (failure.empty()) failure = Flush();
    return failure;
  }

 private:
  std::string MakeFolder(const std::string& path) {
    const DiskResult made = disk_.MakeFolder(path);
    return made == DiskResult::Done ? "" : Failure(path, made);
  }

  std::string CopyFiles(const std::string& from, const std::string& to) {
    if (auto failure = MakeFolder(WithoutSeparator(to)); !failure.empty()) return failure;
    const Listing listing = disk_.ListPlainFiles(from);
    if (!listing.finished) return "The installed files in " + from + " can not be read.";
    for (const auto& name : listing.names) {
      const DiskResult copied = disk_.Copy(from + name, to + name);
      if (copied != DiskResult::Done) return Failure(to + name, copied);
    }
    return "";
  }

  std::string LinkLibraries() {
    if (auto failure = MakeFolder(root_.DssCodecFolder()); !failure.empty()) return failure;
    std::string failure = Link(installed_.MuLawHeaderPath(), root_.MuLawHeaderPath());
    if (failure.empty()) failure = Link(installed_.PedalWatchPath(), root_.PedalWatchPath());
    for (const auto rate : kDssCodecRates) {
      if (failure.empty()) failure = Link(installed_.DssCodecPath(rate), root_.DssCodecPath(rate));
    }
    return failure;
  }

  std::string Link(const std::string& target, const std::string& path) {
    const Entry installed = disk_.Look(target);
    if (installed == Entry::OutOfReach) return Failure(path, DiskResult::OutOfReach);
    if (installed != Entry::PlainFile) return "";
    const DiskResult made = disk_.MakeLink(target, path);
    return made == DiskResult::Done ? "" : Failure(path, made);
  }

  std::string Flush() {
    for (const auto& folder :
         {root_.PromptsPath(), root_.FasciaPath(), root_.DssCodecFolder(), root_.InstallRoot}) {
      const DiskResult flushed = disk_.FlushFolder(folder);
      if (flushed != DiskResult::Done) return Failure(folder, flushed);
    }
    return "";
  }

  Disk& disk_;
  const WorkFolders installed_;
  const WorkFolders root_;
};

}  // namespace

std::string ProvisionRoot(Disk& disk, SettingsDatabases& databases, const std::string& installRoot,
                          const std::string& shareFolder) {
  const std::string parent = ParentOf(installRoot);
  const std::string halfMadeRoot = parent + "/." + installRoot.substr(parent.size() + 1) + ".new";
  const bool half = disk.Look(halfMadeRoot) == Entry::Folder;
  const DiskResult cleared = half ? disk.RemoveFolder(halfMadeRoot) : DiskResult::Done;
  const Entry standing = disk.Look(installRoot);
  if (standing == Entry::Folder) return "";

  std::string failure;
  // What is removed late might be what is built now.
  if (standing == Entry::OutOfReach || cleared == DiskResult::OutOfReach) {
    failure = "The folder gives no answer.";
  } else if (standing != Entry::Nothing) {
    failure = Failure(installRoot, DiskResult::AlreadyThere);
  }
  if (failure.empty()) failure = MakeMissingFolder(disk, parent);
  if (!failure.empty()) return RootFailure(installRoot, failure);

  failure = RootBuilder(disk, shareFolder, halfMadeRoot).Build(databases);
  if (failure.empty()) {
    const DiskResult renamed = disk.Rename(halfMadeRoot, installRoot);
    if (renamed != DiskResult::Done) failure = Failure(installRoot, renamed);
  }
  if (!failure.empty()) {
    std::ignore = disk.RemoveFolder(halfMadeRoot);
    return RootFailure(installRoot, failure);
  }
  std::ignore = disk.FlushFolder(parent);
  return "";
}

std::string RootFailure(const std::string& installRoot, const std::string& reason) {
  return "Tavlo Deck needs its work folder " + installRoot + ".\n\n" + reason;
}

}  // namespace tavlo::store
