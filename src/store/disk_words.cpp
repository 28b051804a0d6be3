#include "store/disk_words.h"

namespace tavlo::store {

std::string_view WhyNot(DiskResult result) {
  switch (result) {
    case DiskResult::NotFound:
      return "there is no such file or folder";
    case DiskResult::AlreadyThere:
      return "something of that name stands there already";
    case DiskResult::NoSpace:
      return "the disk is full";
    case DiskResult::OtherFileSystem:
      return "it lies on another disk";
    case DiskResult::NoAccess:
      return "access is denied";
    case DiskResult::ProcessInTrouble:
      return "the program has no file handles or memory left";
    case DiskResult::OutOfReach:
      return "the folder gives no answer";
    case DiskResult::Done:
    case DiskResult::Failed:
      break;
  }
  return "the disk reported an error";
}

}  // namespace tavlo::store
