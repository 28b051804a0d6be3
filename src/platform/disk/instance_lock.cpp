#include "platform/disk/instance_lock.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>

namespace tavlo::platform {
namespace {

FileHandle OpenParentOf(const std::string& installRoot) {
  const std::string parent = installRoot.substr(0, installRoot.rfind('/'));
  ::mkdir(parent.c_str(), 0777);
  return {parent.c_str(), O_RDONLY | O_DIRECTORY};
}

}  // namespace

InstanceLock::InstanceLock(const std::string& installRoot)
    : parent_(OpenParentOf(installRoot)),
      anotherCopyRuns_(parent_ && ::flock(parent_.Get(), LOCK_EX | LOCK_NB) != 0 &&
                       errno == EWOULDBLOCK) {}

void InstanceLock::GiveBack() {
  if (parent_) ::flock(parent_.Get(), LOCK_UN);
}

}  // namespace tavlo::platform
