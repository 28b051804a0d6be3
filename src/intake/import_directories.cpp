#include "intake/import_directories.h"

namespace tavlo::intake {
namespace {

constexpr const char* kRootDirectory = "0";

}  // namespace

std::string ImportDirectoryPath(const store::WorkFolders& folders, const std::string& directory) {
  if (directory == kRootDirectory) return folders.WavQueuePath;
  return folders.WavQueuePath + directory + "/";
}

base::MessageBox ImportPathFault(const store::WorkFolders& folders, const std::string& directory) {
  const std::string below = directory == kRootDirectory ? "" : directory;
  // The wording is kept as users know it, the carriage return and the capital letter included.
  return {.title = "Tavlo Deck - Network Fault",
          .text = "The import file's path " + folders.WavQueuePath + below +
                  " can not be found.\n\n\r"
                  "The network may be down.  Please try again later, or enter the Configuration "
                  "menu to check the settings for this path",
          .icon = base::Icon::Warning};
}

}  // namespace tavlo::intake
