#include "store/missing_files.h"

#include <tuple>

#include "store/work_folders.h"

namespace tavlo::store {
namespace {

/// Folders end in a separator.
void CopyMissing(Disk& disk, const std::string& installed, const std::string& folder) {
  const Listing listing = disk.ListPlainFiles(installed);
  if (listing.names.empty()) return;
  if (disk.Look(folder) == Entry::Nothing) {
    std::ignore = disk.MakeFolder(folder.substr(0, folder.size() - 1));
  }
  for (const std::string& name : listing.names) {
    if (disk.Look(folder + name) != Entry::Nothing) continue;
    // No listing gives dot files, so a copy that a crash cut short is never taken for a whole one.
    const std::string beside = folder + "." + name + ".new";
    if (disk.Look(beside) == Entry::PlainFile) std::ignore = disk.Delete(beside);
    DiskResult copied = disk.Copy(installed + name, beside);
    if (copied == DiskResult::Done) copied = disk.Rename(beside, folder + name);
    // It may still come; if not, the next start clears what is left and tries again.
    if (copied == DiskResult::OutOfReach) return;
    if (copied == DiskResult::Done) continue;
    if (disk.Look(beside) == Entry::PlainFile) std::ignore = disk.Delete(beside);
  }
}

}  // namespace

void AddMissingPrompts(Disk& disk, const std::string& installRoot, const std::string& shareFolder) {
  CopyMissing(disk, WorkFolders(disk, shareFolder).PromptsPath(),
              WorkFolders(disk, installRoot).PromptsPath());
}

void AddMissingFascia(Disk& disk, const std::string& installRoot, const std::string& shareFolder) {
  const std::string fascia = WorkFolders(disk, installRoot).FasciaPath();
  const Listing pictures = disk.ListPlainFiles(fascia);
  // A folder that stands and can not be read may hold pictures all the same.
  const bool unread = !pictures.finished && disk.Look(fascia) != Entry::Nothing;
  if (unread || !pictures.names.empty()) return;
  CopyMissing(disk, WorkFolders(disk, shareFolder).FasciaPath(), fascia);
}

}  // namespace tavlo::store
