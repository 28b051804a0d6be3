#include "store/missing_prompts.h"

#include <tuple>

#include "store/work_folders.h"

namespace tavlo::store {

void AddMissingPrompts(Disk& disk, const std::string& installRoot, const std::string& shareFolder) {
  const std::string installed = WorkFolders(disk, shareFolder).PromptsPath();
  const std::string prompts = WorkFolders(disk, installRoot).PromptsPath();
  const Listing listing = disk.ListPlainFiles(installed);
  if (listing.names.empty()) return;
  if (disk.Look(prompts) == Entry::Nothing) {
    std::ignore = disk.MakeFolder(prompts.substr(0, prompts.size() - 1));
  }
  for (const std::string& name : listing.names) {
    if (disk.Look(prompts + name) != Entry::Nothing) continue;
    // A dot file is no prompt to anybody, so a copy that a crash cut short is never played.
    const std::string beside = prompts + "." + name + ".new";
    if (disk.Look(beside) == Entry::PlainFile) std::ignore = disk.Delete(beside);
    const bool copied = disk.Copy(installed + name, beside) == DiskResult::Done;
    if (copied && disk.Rename(beside, prompts + name) == DiskResult::Done) continue;
    if (disk.Look(beside) == Entry::PlainFile) std::ignore = disk.Delete(beside);
  }
}

}  // namespace tavlo::store
