#include "platform/disk/posix_walk.h"

#include <cerrno>

#include "platform/disk/disk_result.h"
#include "platform/disk/file_status.h"
#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {

using store::DiskResult;
using store::Readiness;

PosixWalk::PosixWalk(const std::string& folder, WriterWatch& writers,
                     const std::function<void()>& goesOn)
    : path_(folder),
      folder_(::opendir(FolderPath(folder))),
      listing_(ReadPlainFiles(folder_, goesOn)),
      writers_(writers) {
  writers_.ForgetDevice();
}

bool PosixWalk::Next() {
  file_.reset();
  if (next_ == listing_.names.size()) return false;
  ++next_;
  return true;
}

store::WalkEnd PosixWalk::End() const {
  if (listing_.processInTrouble) return store::WalkEnd::ProcessInTrouble;
  return listing_.finished ? store::WalkEnd::Whole : store::WalkEnd::OutOfReach;
}

const store::HeldFile& PosixWalk::Open() {
  if (file_) return held_;
  held_.path.assign(path_).append(Name());
  file_.emplace(OpenPlainFileIn(::dirfd(folder_.get()), Name(), status_));
  held_.opened = *file_ ? DiskResult::Done : ResultOf(errno);
  held_.handle = file_->Get();
  held_.inode = *file_ ? status_.st_ino : 0;
  held_.facts = *file_ ? FactsOf(status_) : store::FileFacts{};
  return held_;
}

Readiness PosixWalk::TestReadiness() {
  const store::HeldFile& held = Open();
  if (held.opened == DiskResult::ProcessInTrouble) return Readiness::ProcessInTrouble;
  if (held.opened != DiskResult::Done) return Readiness::Unusable;
  const Readiness readiness = writers_.Look(held.handle, status_, held.path);
  // The writer may have put down its last bytes between the opening and the look.
  if (::fstat(held.handle, &status_) == 0) held_.facts = FactsOf(status_);
  return readiness;
}

DiskResult PosixWalk::SetAttributesNormal() {
  const store::HeldFile& held = Open();
  return held.opened == DiskResult::Done ? MakeWritable(held.handle, status_) : held.opened;
}

DiskResult PosixWalk::SetAttributesNormalOf(const std::string& name, std::uint64_t inode) const {
  struct stat status;
  const FileHandle file = OpenPlainFileIn(::dirfd(folder_.get()), name, status);
  if (!file) return ResultOf(errno);
  return status.st_ino == inode ? MakeWritable(file.Get(), status) : DiskResult::NotFound;
}

}  // namespace tavlo::platform
