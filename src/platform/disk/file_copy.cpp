#include "platform/disk/file_copy.h"

#include <array>
#include <cerrno>
#include <tuple>

#include "platform/disk/disk_result.h"
#include "platform/disk/open_plain_file.h"
#include "platform/disk/write_all.h"

namespace tavlo::platform {

using store::DiskResult;

namespace {

/// Gives a copy the owner and the mode of its source as far as this user, and the file system, let
/// it. The bits for a group that could not be kept would open the copy to another one, so of them
/// only those stay that everybody has.
void KeepOwnerAndMode(int copy, const struct stat& source) {
  const bool ownerKept = ::fchown(copy, source.st_uid, source.st_gid) == 0;
  const bool groupKept = ownerKept || ::fchown(copy, static_cast<uid_t>(-1), source.st_gid) == 0;
  mode_t mode = source.st_mode & 0777;
  if (!groupKept) mode &= 0707 | (mode & 07) << 3;
  std::ignore = ::fchmod(copy, mode);
}

}  // namespace

CopySource::CopySource(const std::string& path)
    : file_(OpenPlainFile(path, Links::Refused, status_)), opened_(ResultOf(file_ ? 0 : errno)) {}

DiskResult CopySource::Read(std::vector<char>& block) {
  block.resize(kBlock);
  ssize_t count = 0;
  do {
    count = ::read(file_.Get(), block.data(), block.size());
  } while (count < 0 && errno == EINTR);
  block.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
  return ResultOf(count < 0 ? errno : 0);
}

CopyTarget::CopyTarget(const std::string& path, std::size_t flushedAtOnce)
    : file_(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600),
      opened_(ResultOf(file_ ? 0 : errno)),
      flushedAtOnce_(flushedAtOnce) {}

DiskResult CopyTarget::Write(const std::vector<char>& block) {
  if (!WriteAll(file_.Get(), block.data(), block.size())) return ResultOf(errno);
  unflushed_ += block.size();
  if (unflushed_ < flushedAtOnce_) return DiskResult::Done;
  unflushed_ = 0;
  return ResultOfCall(::fdatasync(file_.Get()));
}

DiskResult CopyTarget::Finish(const struct stat& source) {
  KeepOwnerAndMode(file_.Get(), source);
  const std::array<timespec, 2> times{timespec{.tv_nsec = UTIME_OMIT}, source.st_mtim};
  const bool kept = ::futimens(file_.Get(), times.data()) == 0 && ::fsync(file_.Get()) == 0;
  return kept && file_.Close() ? DiskResult::Done : ResultOf(errno);
}

}  // namespace tavlo::platform
