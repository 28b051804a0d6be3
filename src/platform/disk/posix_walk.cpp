#include "platform/disk/posix_walk.h"

#include <cerrno>
#include <utility>

#include "platform/disk/disk_result.h"
#include "platform/disk/file_status.h"
#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {

using store::DiskResult;
using store::Readiness;

PosixWalk::PosixWalk(std::shared_ptr<const ListedFolder> folder, WriterWatch& writers)
    : folder_(std::move(folder)), writers_(writers) {
  writers_.ForgetDevice();
}

bool PosixWalk::Next() {
  file_.reset();
  if (next_ == folder_->listing.names.size()) return false;
  ++next_;
  return true;
}

void PosixWalk::MoveTo(std::size_t index) {
  file_.reset();
  next_ = index + 1;
}

const store::HeldFile& PosixWalk::Open() {
  if (file_) return held_;
  OpenFile();
  if (*file_) TakeStatus(::fstat(file_->Get(), &status_) == 0);
  return held_;
}

Readiness PosixWalk::TestReadiness() {
  if (!file_) OpenFile();
  if (held_.opened == DiskResult::ProcessInTrouble) return Readiness::ProcessInTrouble;
  if (held_.opened != DiskResult::Done) return Readiness::Unusable;
  // What the file is need not be asked before: the look tells what it is behind it.
  const Readiness readiness = writers_.Look(held_.handle, held_.path, status_);
  TakeStatus(readiness != Readiness::Unusable);
  return readiness;
}

void PosixWalk::OpenFile() {
  held_.path.assign(folder_->path).append(Name());
  file_.emplace(OpenAnyIn(::dirfd(folder_->open.get()), Name()));
  held_.opened = *file_ ? DiskResult::Done : ResultOf(errno);
  held_.handle = file_->Get();
  held_.inode = 0;
  held_.facts = {};
}

void PosixWalk::TakeStatus(bool known) {
  if (known && S_ISREG(status_.st_mode)) {
    held_.inode = status_.st_ino;
    held_.facts = FactsOf(status_);
    return;
  }
  file_.emplace();
  held_.opened = DiskResult::Failed;
  held_.handle = -1;
}

DiskResult PosixWalk::SetAttributesNormal() {
  const store::HeldFile& held = Open();
  return held.opened == DiskResult::Done ? MakeWritable(held.handle, status_) : held.opened;
}

DiskResult PosixWalk::SetAttributesNormalOf(const std::string& name, std::uint64_t inode) const {
  struct stat status;
  const FileHandle file = OpenPlainFileIn(::dirfd(folder_->open.get()), name, status);
  if (!file) return ResultOf(errno);
  return status.st_ino == inode ? MakeWritable(file.Get(), status) : DiskResult::NotFound;
}

}  // namespace tavlo::platform
