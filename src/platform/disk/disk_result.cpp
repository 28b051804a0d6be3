#include "platform/disk/disk_result.h"

#include <cerrno>

namespace tavlo::platform {

using store::DiskResult;

DiskResult ResultOf(int error) {
  switch (error) {
    case 0:
      return DiskResult::Done;
    case ENOENT:
    case ENOTDIR:
      return DiskResult::NotFound;
    case EEXIST:
    case ENOTEMPTY:
      return DiskResult::AlreadyThere;
    case ENOSPC:
    case EDQUOT:
      return DiskResult::NoSpace;
    case EXDEV:
      return DiskResult::OtherFileSystem;
    case EACCES:
    case EPERM:
    case EROFS:
      return DiskResult::NoAccess;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
      return DiskResult::ProcessInTrouble;
    default:
      return DiskResult::Failed;
  }
}

DiskResult ResultOfCall(int returned) { return ResultOf(returned == 0 ? 0 : errno); }

bool IsOfTheProcess(int error) { return ResultOf(error) == DiskResult::ProcessInTrouble; }

}  // namespace tavlo::platform
