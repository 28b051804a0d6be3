#include "intake/dropped_files.h"

#include <algorithm>
#include <string_view>
#include <tuple>

#include "intake/file_progress.h"
#include "intake/import_directories.h"
#include "intake/import_in_words.h"
#include "store/disk_words.h"

namespace tavlo::intake {
namespace {

using store::DiskResult;

std::string NameIn(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// The path without its "." and ".." and without doubled separators, so that no detour hides where
/// a file lies.
std::string Straightened(std::string_view path) {
  std::vector<std::string_view> parts;
  while (!path.empty()) {
    const auto end = std::min(path.find('/'), path.size());
    const std::string_view part = path.substr(0, end);
    path.remove_prefix(std::min(end + 1, path.size()));
    if (part == "..") {
      if (!parts.empty()) parts.pop_back();
    } else if (!part.empty() && part != ".") {
      parts.push_back(part);
    }
  }
  std::string straight;
  for (const std::string_view part : parts) straight += "/" + std::string(part);
  return straight;
}

}  // namespace

DroppedFiles::DroppedFiles(base::Loop& loop, window::MainWindow& window,
                           const store::DocumentFiles& files)
    : loop_(loop),
      form_(window.Form()),
      window_(window),
      disk_(files.disk),
      folders_(files.folders),
      moves_(files.moves) {
  form_.listViewImport.OnDropFiles = [this](const std::vector<std::string>& paths) {
    Take(paths, ImportDirectoryPath(folders_, form_.txtWavImportSubdirectory.Value),
         form_.cmdRefreshImportList);
  };
  form_.listViewInQueue.OnDropFiles = [this](const std::vector<std::string>& paths) {
    Take(paths, folders_.InQueuePath, form_.cmdUpdateFileList);
  };
}

void DroppedFiles::TakeIntoQueue(const std::vector<std::string>& paths) {
  // The view builds its list anew as it comes.
  Take(paths, folders_.InQueuePath,
       form_.frameInQueue.Visible ? form_.cmdUpdateFileList : form_.mnuViewQueue);
}

void DroppedFiles::CopyIntoQueue(const std::vector<std::string>& paths) {
  // The screen may be gone, so nothing is painted here; while there is one, the disk breathes.
  for (const std::string& path : paths) {
    if (WhyRefused(path).empty()) std::ignore = moves_.CopyInto(path, folders_.InQueuePath);
  }
}

void DroppedFiles::Take(const std::vector<std::string>& paths, const std::string& folder,
                        forms::Command& refresh) {
  if (!window_.guards.ListsMayChange()) {
    window_.Say("Not taken: the list is just being built. Drop the files again.");
    return;
  }
  if (CopyAll(paths, folder)) refresh.Press();
}

bool DroppedFiles::CopyAll(const std::vector<std::string>& paths, const std::string& folder) {
  const window::ListPause pause(window_.guards);
  const forms::Hourglass hourglass(form_.frmMain);
  std::vector<NotTaken> refused;
  bool came = false;
  FileProgress progress([this](const auto& text) { window_.SayHowFar(text); }, "Copying",
                        paths.size());
  for (const std::string& path : paths) {
    progress.Next();
    loop_.Breathe();
    std::string why = WhyRefused(path);
    if (why.empty()) {
      const DiskResult copied = moves_.CopyInto(path, folder).result;
      came |= copied == DiskResult::Done || copied == DiskResult::OutOfReach;
      if (copied != DiskResult::Done) why = store::WhyNot(copied);
      // It may show late all the same.
      if (copied == DiskResult::OutOfReach) why += ", and the next list shows what came";
    }
    if (!why.empty()) refused.push_back({NameIn(path), why});
  }
  window_.Say(NotTakenInWords(refused));
  return came;
}

std::string DroppedFiles::WhyRefused(const std::string& path) {
  if (!path.starts_with('/')) return "it is no file of this computer";
  if (LiesInOurFolders(path)) return "it lies in a folder of Tavlo Deck";
  if (NameIn(path).starts_with('.')) return "its name begins with a dot";
  switch (disk_.Look(path)) {
    case store::Entry::PlainFile:
      break;
    case store::Entry::Folder:
      return "it is a folder";
    case store::Entry::Other:
      return "it is no file";
    case store::Entry::Nothing:
      return std::string(store::WhyNot(DiskResult::NotFound));
    case store::Entry::OutOfReach:
      return std::string(store::WhyNot(DiskResult::OutOfReach));
  }
  // A look follows links, and the facts do not.
  if (!disk_.Facts(path)) {
    return disk_.OutOfReach(path) ? std::string(store::WhyNot(DiskResult::OutOfReach))
                                  : "it is a link";
  }
  const bool inUse = disk_.TestReadiness(path) == store::Readiness::InUse;
  return inUse ? "a program is still writing it" : "";
}

bool DroppedFiles::LiesInOurFolders(const std::string& path) const {
  const std::string straight = Straightened(path);
  // Of a drop folder that stands elsewhere the file comes by itself, and would come twice.
  const std::string ours[] = {folders_.InstallRoot, folders_.Ew2QueuePath, folders_.Ds2QueuePath,
                              folders_.WavQueuePath, folders_.Eu2QueuePath};
  return std::ranges::any_of(ours, [&straight](const std::string& folder) {
    const std::string place = Straightened(folder);
    return !place.empty() && straight.starts_with(place + "/");
  });
}

}  // namespace tavlo::intake
