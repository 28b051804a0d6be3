#include "simulation/landing.h"

#include <algorithm>

#include "simulation/desk.h"
#include "simulation/ledger.h"
#include "simulation/places.h"
#include "simulation/trace.h"

namespace tavlo::simulation {
namespace {

std::string FolderOfFile(const std::string& path) { return path.substr(0, path.rfind('/') + 1); }

bool IsControl(char character) {
  return static_cast<unsigned char>(character) < 0x20 || character == 0x7f;
}

}  // namespace

void Landing::Begun(const std::string& path) {
  if (!desk_.Rooms()) return;
  const std::string& folder = desk_.Rooms()->folders.FtpQueuePath;
  const std::string name = path.substr(std::min(path.size(), folder.size()));
  const bool isBare = path.starts_with(folder) && !name.empty() && !name.starts_with('.') &&
                      name.find_first_of("/\\") == name.npos && name.size() <= kMostBytesOfAName &&
                      std::ranges::none_of(name, &IsControl);
  if (!isBare) Fault("A server's file lands at " + Readable(path));
}

void Landing::Gone(const std::string& from, const std::string& to) {
  if (!desk_.Rooms() || desk_.neighbourIsAtWork) return;
  if (from == desk_.ftp.LandingPath()) {
    return Fault("What is being received is taken: " + Readable(from) + " becomes " + Readable(to));
  }
  if (FolderOfFile(from) != desk_.Rooms()->folders.FtpQueuePath || to.empty()) return;
  if (!IsFolderOfTheDeck(FolderOfFile(to))) {
    Fault("What has landed goes from " + Readable(from) + " to " + Readable(to));
  }
}

bool Landing::IsFolderOfTheDeck(const std::string& folder) const {
  const store::WorkFolders& folders = desk_.Rooms()->folders;
  for (const std::string& known : {folders.FtpQueuePath, folders.Ew2QueuePath, folders.Ds2QueuePath,
                                   folders.Eu2QueuePath, Desk::Path(kRescued)}) {
    if (folder == known) return true;
  }
  const std::string imports = folders.DefaultQueuePath(store::QueuePath::Wav) + "/";
  return folder.starts_with(imports) &&
         folder.find_first_not_of("0123456789/", imports.size()) == folder.npos;
}

void Landing::Deleted(const std::string& contents) {
  const auto places = Ledger::FilesOf(desk_.disk, contents);
  const bool isSafe = std::ranges::any_of(places, [](const std::string& path) {
    return !Ledger::IsHalfCopy(path.substr(path.rfind('/') + 1));
  });
  if (!isSafe) Fault("Deleted on the server and nowhere else: " + contents);
}

void Landing::Fault(const std::string& what) {
  if (fault_.empty()) fault_ = what;
}

}  // namespace tavlo::simulation
