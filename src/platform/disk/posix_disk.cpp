#include "platform/disk/posix_disk.h"

#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/disk/disk_result.h"
#include "platform/disk/file_handle.h"
#include "platform/disk/file_status.h"
#include "platform/disk/open_folder.h"
#include "platform/disk/open_plain_file.h"
#include "platform/disk/posix_walk.h"

namespace tavlo::platform {
namespace {

using store::DiskResult;

constexpr std::size_t kCopyBlock = 256 * 1024;
/// A copy is flushed whenever it has grown by so much, so that its last flush does not take long.
constexpr std::size_t kFlushedAtOnce = 2 * 1024 * 1024;

bool IsPlainFile(const FileHandle& file) {
  struct stat status;
  return ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
}

bool WriteAll(int handle, const char* bytes, std::size_t count) {
  while (count > 0) {
    const ssize_t written = ::write(handle, bytes, count);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return false;
    bytes += written;
    count -= static_cast<std::size_t>(written);
  }
  return true;
}

bool CopyContents(int from, int to, const std::function<void()>& breathe) {
  std::vector<char> block(kCopyBlock);
  std::size_t unflushed = 0;
  while (true) {
    const ssize_t count = ::read(from, block.data(), block.size());
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return count == 0;
    if (!WriteAll(to, block.data(), static_cast<std::size_t>(count))) return false;
    unflushed += static_cast<std::size_t>(count);
    if (unflushed >= kFlushedAtOnce) {
      if (::fdatasync(to) != 0) return false;
      unflushed = 0;
    }
    if (breathe) breathe();
  }
}

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

/// For file systems that cannot refuse to overwrite in a rename. A link refuses; where there are no
/// links either, a look before the rename has to do.
DiskResult RenameWithoutFlag(const std::string& from, const std::string& to) {
  if (::link(from.c_str(), to.c_str()) == 0) {
    if (::unlink(from.c_str()) == 0) return DiskResult::Done;
    const int error = errno;
    ::unlink(to.c_str());
    return ResultOf(error);
  }
  if (errno == EEXIST || errno == EXDEV || errno == ENOENT) return ResultOf(errno);
  struct stat status;
  if (::lstat(to.c_str(), &status) == 0) return DiskResult::AlreadyThere;
  return ResultOfCall(::rename(from.c_str(), to.c_str()));
}

}  // namespace

PosixDisk::PosixDisk(WriterWatch::Clock clock, WriterWatch::LeaseTrust leaseTrust,
                     std::function<void()> breathe)
    : writers_(std::move(clock), std::move(leaseTrust)), breathe_(std::move(breathe)) {}

store::Listing PosixDisk::ListPlainFiles(const std::string& folder) {
  return ReadPlainFiles(OpenFolder(::opendir(FolderPath(folder))));
}

std::unique_ptr<store::FolderWalk> PosixDisk::Walk(const std::string& folder) {
  return std::make_unique<PosixWalk>(folder, writers_);
}

std::optional<store::FileFacts> PosixDisk::Facts(const std::string& path) {
  struct stat status;
  if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return FactsOf(status);
}

store::Entry PosixDisk::Look(const std::string& path) {
  struct stat status;
  if (::stat(path.c_str(), &status) == 0) {
    if (S_ISREG(status.st_mode)) return store::Entry::PlainFile;
    return S_ISDIR(status.st_mode) ? store::Entry::Folder : store::Entry::Other;
  }
  const bool nothing = (errno == ENOENT || errno == ENOTDIR) && ::lstat(path.c_str(), &status) != 0;
  return nothing ? store::Entry::Nothing : store::Entry::Other;
}

store::Readiness PosixDisk::TestReadiness(const std::string& path) {
  struct stat status;
  const FileHandle file = OpenPlainFile(path, Links::Refused, status);
  if (!file) {
    return IsOfTheProcess(errno) ? store::Readiness::ProcessInTrouble : store::Readiness::Unusable;
  }
  writers_.ForgetDevice();
  return writers_.Look(file.Get(), status, path);
}

DiskResult PosixDisk::SetAttributesNormal(const std::string& path) {
  struct stat status;
  const FileHandle file = OpenPlainFile(path, Links::Refused, status);
  return file ? MakeWritable(file.Get(), status) : ResultOf(errno);
}

DiskResult PosixDisk::Copy(const std::string& from, const std::string& to) {
  struct stat status;
  const FileHandle source = OpenPlainFile(from, Links::Refused, status);
  if (!source) return ResultOf(errno);
  FileHandle target(to.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
  if (!target) return ResultOf(errno);
  const std::array<timespec, 2> times{timespec{.tv_nsec = UTIME_OMIT}, status.st_mtim};
  if (!CopyContents(source.Get(), target.Get(), breathe_)) return ResultOf(errno);
  KeepOwnerAndMode(target.Get(), status);
  const bool kept = ::futimens(target.Get(), times.data()) == 0 && ::fsync(target.Get()) == 0;
  if (!kept) return ResultOf(errno);
  return target.Close() ? DiskResult::Done : ResultOf(errno);
}

DiskResult PosixDisk::Rename(const std::string& from, const std::string& to) {
  if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
    return DiskResult::Done;
  }
  const bool flagUnknown = errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
  return flagUnknown ? RenameWithoutFlag(from, to) : ResultOf(errno);
}

DiskResult PosixDisk::Delete(const std::string& path) {
  return ResultOfCall(::unlink(path.c_str()));
}

DiskResult PosixDisk::Append(const std::string& path, std::string_view text) {
  FileHandle file(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_NOFOLLOW | O_NONBLOCK, 0666);
  if (!file) return ResultOf(errno);
  if (!IsPlainFile(file)) return DiskResult::Failed;
  const bool written =
      WriteAll(file.Get(), text.data(), text.size()) && ::fsync(file.Get()) == 0 && file.Close();
  return written ? DiskResult::Done : ResultOf(errno);
}

DiskResult PosixDisk::MakeLink(const std::string& target, const std::string& path) {
  return ResultOfCall(::symlink(target.c_str(), path.c_str()));
}

DiskResult PosixDisk::MakeFolder(const std::string& path) {
  return ResultOfCall(::mkdir(path.c_str(), 0777));
}

DiskResult PosixDisk::RemoveFolder(const std::string& path) {
  struct stat status;
  if (::lstat(path.c_str(), &status) != 0) return ResultOf(errno);
  if (!S_ISDIR(status.st_mode)) return DiskResult::Failed;
  std::error_code error;
  std::filesystem::remove_all(path, error);
  return ResultOf(error.value());
}

DiskResult PosixDisk::FlushFolder(const std::string& folder) {
  const FileHandle handle(FolderPath(folder), O_RDONLY | O_DIRECTORY);
  if (!handle) return ResultOf(errno);
  if (::fsync(handle.Get()) == 0) return DiskResult::Done;
  // Some network file systems have no flush for folders: their server sees to it.
  const bool noSuchFlush = errno == EINVAL || errno == ENOTSUP || errno == EBADF;
  return noSuchFlush ? DiskResult::Done : ResultOf(errno);
}

}  // namespace tavlo::platform
