#include "store/missing_libraries.h"

#include <tuple>

#include "store/work_folders.h"

namespace tavlo::store {
namespace {

/// More than roots are carried from one machine to another.
constexpr int kMostSetAside = 100;

/// Links the libraries of one root.
class Linker {
 public:
  Linker(Disk& disk, LibraryInspector& inspector) : disk_(disk), inspector_(inspector) {}

  void LinkMissing(const std::string& installed, const std::string& path) {
    if (disk_.Look(installed) != Entry::PlainFile || !ClearTheWay(path)) return;
    std::ignore = disk_.MakeLink(installed, path);
  }

 private:
  /// False when what stands at the path stays there.
  bool ClearTheWay(const std::string& path) {
    switch (disk_.Look(path)) {
      case Entry::Nothing:
        return true;
      case Entry::Other:
        return disk_.Delete(path) != DiskResult::OutOfReach;
      case Entry::PlainFile:
        // Only a link leads to a file and is none itself: somebody wants that library.
        return disk_.Facts(path) && inspector_.Inspect(path) == LibraryFit::Foreign &&
               SetAside(path);
      case Entry::Folder:
      case Entry::OutOfReach:
        break;
    }
    return false;
  }

  bool SetAside(const std::string& path) {
    DiskResult renamed = DiskResult::AlreadyThere;
    for (int number = 1; renamed == DiskResult::AlreadyThere && number <= kMostSetAside; ++number) {
      const std::string more = number == 1 ? "" : "-" + std::to_string(number);
      renamed = disk_.Rename(path, path + ".foreign" + more);
    }
    return renamed == DiskResult::Done;
  }

  Disk& disk_;
  LibraryInspector& inspector_;
};

}  // namespace

void AddMissingLibraries(Disk& disk, LibraryInspector& inspector, const std::string& installRoot,
                         const std::string& shareFolder) {
  const WorkFolders installed(disk, shareFolder);
  const WorkFolders root(disk, installRoot);
  Linker linker(disk, inspector);
  linker.LinkMissing(installed.PedalWatchPath(), root.PedalWatchPath());
  linker.LinkMissing(installed.MuLawHeaderPath(), root.MuLawHeaderPath());
  const std::string codecs = root.DssCodecFolder();
  if (disk.Look(codecs) == Entry::Nothing) std::ignore = disk.MakeFolder(codecs);
  for (const std::string_view rate : kDssCodecRates) {
    linker.LinkMissing(installed.DssCodecPath(rate), root.DssCodecPath(rate));
  }
}

}  // namespace tavlo::store
