#include "store/missing_libraries.h"

#include <tuple>

#include "store/work_folders.h"

namespace tavlo::store {
namespace {

void LinkMissing(Disk& disk, const std::string& installed, const std::string& path) {
  if (disk.Look(installed) != Entry::PlainFile) return;
  const Entry standing = disk.Look(path);
  if (standing != Entry::Nothing && standing != Entry::Other) return;
  if (standing == Entry::Other && disk.Delete(path) == DiskResult::OutOfReach) return;
  std::ignore = disk.MakeLink(installed, path);
}

}  // namespace

void AddMissingLibraries(Disk& disk, const std::string& installRoot,
                         const std::string& shareFolder) {
  const WorkFolders installed(disk, shareFolder);
  const WorkFolders root(disk, installRoot);
  LinkMissing(disk, installed.PedalWatchPath(), root.PedalWatchPath());
  LinkMissing(disk, installed.MuLawHeaderPath(), root.MuLawHeaderPath());
  const std::string codecs = root.DssCodecFolder();
  if (disk.Look(codecs) == Entry::Nothing) std::ignore = disk.MakeFolder(codecs);
  for (const std::string_view rate : kDssCodecRates) {
    LinkMissing(disk, installed.DssCodecPath(rate), root.DssCodecPath(rate));
  }
}

}  // namespace tavlo::store
