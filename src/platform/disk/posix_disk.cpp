#include "platform/disk/posix_disk.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <array>
#include <cerrno>
#include <ctime>
#include <utility>
#include <vector>

#include "platform/disk/disk_result.h"
#include "platform/disk/file_copy.h"
#include "platform/disk/file_handle.h"
#include "platform/disk/file_status.h"
#include "platform/disk/listed_folder.h"
#include "platform/disk/open_folder.h"
#include "platform/disk/open_plain_file.h"
#include "platform/disk/posix_walk.h"
#include "platform/disk/remove_tree.h"
#include "platform/disk/write_all.h"

namespace tavlo::platform {
namespace {

using store::DiskResult;

/// A copy is flushed whenever it has grown by so much, so that its last flush does not take long.
constexpr std::size_t kFlushedAtOnce = 2 * 1024 * 1024;

bool IsPlainFile(const FileHandle& file) {
  struct stat status;
  return ::fstat(file.Get(), &status) == 0 && S_ISREG(status.st_mode);
}

/// Longer than what a kernel stamps with one time, and than what its clock is set back by quietly.
constexpr std::int64_t kSettledAfter = 1'000'000'000;

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
  return ReadPlainFiles(OpenFolder(::opendir(FolderPath(folder))), breathe_);
}

store::Listing PosixDisk::ListDotFiles(const std::string& folder) {
  return ReadDotFiles(OpenFolder(::opendir(FolderPath(folder))), breathe_);
}

std::optional<store::FolderMark> PosixDisk::MarkOf(const std::string& folder) {
  struct stat status;
  timespec now{};
  ::clock_gettime(CLOCK_REALTIME, &now);
  if (::stat(FolderPath(folder), &status) != 0 || !S_ISDIR(status.st_mode)) return {};
  // Anybody may give a folder another time of its last writing, and nobody one of its last change.
  const std::int64_t changedAt = NanosecondsOf(status.st_ctim);
  if (NanosecondsOf(now) - changedAt < kSettledAfter) return {};
  return store::FolderMark{.device = status.st_dev, .inode = status.st_ino, .changedAt = changedAt};
}

std::unique_ptr<store::FolderWalk> PosixDisk::Walk(const std::string& folder) {
  return WalkOver(ListFolder(folder));
}

std::shared_ptr<const ListedFolder> PosixDisk::ListFolder(const std::string& folder) {
  return std::make_shared<const ListedFolder>(folder, breathe_);
}

std::unique_ptr<PosixWalk> PosixDisk::WalkOver(std::shared_ptr<const ListedFolder> folder) {
  return std::make_unique<PosixWalk>(std::move(folder), writers_);
}

std::optional<store::FileFacts> PosixDisk::Facts(const std::string& path) {
  struct stat status;
  if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return FactsOf(status);
}

std::optional<std::int64_t> PosixDisk::ChangedAt(const std::string& path) {
  struct stat status;
  if (::lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return ChangedAtOf(status);
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
  const FileHandle file = OpenPlainFile(path, Links::Refused);
  if (!file) {
    return IsOfTheProcess(errno) ? store::Readiness::ProcessInTrouble : store::Readiness::Unusable;
  }
  writers_.ForgetDevice();
  struct stat status;
  return writers_.Look(file.Get(), path, status);
}

DiskResult PosixDisk::SetAttributesNormal(const std::string& path) {
  struct stat status;
  const FileHandle file = OpenPlainFile(path, Links::Refused, status);
  return file ? MakeWritable(file.Get(), status) : ResultOf(errno);
}

DiskResult PosixDisk::Renew(const std::string& path) {
  // The moment of the last reading is set, and with it the kernel notes a change. Asked for by no
  // other moment than now, so that it is the clock of the file system that counts.
  const std::array<timespec, 2> times{timespec{.tv_nsec = UTIME_NOW},
                                      timespec{.tv_nsec = UTIME_OMIT}};
  return ResultOfCall(::utimensat(AT_FDCWD, path.c_str(), times.data(), AT_SYMLINK_NOFOLLOW));
}

DiskResult PosixDisk::Copy(const std::string& from, const std::string& to) {
  CopySource source(from);
  if (source.Opened() != DiskResult::Done) return source.Opened();
  CopyTarget target(to, kFlushedAtOnce);
  if (target.Opened() != DiskResult::Done) return target.Opened();
  std::vector<char> block;
  while (true) {
    const DiskResult read = source.Read(block);
    if (read != DiskResult::Done) return read;
    if (block.empty()) return target.Finish(source.Status());
    const DiskResult written = target.Write(block);
    if (written != DiskResult::Done) return written;
    breathe_();
  }
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
  return RemoveTree(path, breathe_);
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
