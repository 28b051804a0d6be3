#include "platform/disk/posix_disk.h"

#include <dirent.h>
#include <linux/magic.h>
#include <sys/statfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/disk/file_handle.h"
#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {
namespace {

using store::DiskResult;

constexpr std::int64_t kNanosecondsInASecond = 1'000'000'000;
/// Files that are watched for standing still. Past this many the watch begins anew, which costs
/// each of them one more wait.
constexpr std::size_t kMostSightings = 65'536;
constexpr std::size_t kCopyBlock = 256 * 1024;
/// A copy is flushed whenever it has grown by so much, so that its last flush does not take long.
constexpr std::size_t kFlushedAtOnce = 2 * 1024 * 1024;

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

/// Whether an errno tells of the process and not of a file: it has no handles or memory left.
bool IsOfTheProcess(int error) { return ResultOf(error) == DiskResult::ProcessInTrouble; }

/// The result of a call that gives 0 or -1 and errno.
DiskResult ResultOfCall(int returned) { return ResultOf(returned == 0 ? 0 : errno); }

const char* FolderPath(const std::string& folder) { return folder.empty() ? "." : folder.c_str(); }

store::FileFacts FactsOf(const struct stat& status) {
  return {.size = static_cast<std::uint64_t>(status.st_size),
          .stamp = status.st_mtim.tv_sec * kNanosecondsInASecond + status.st_mtim.tv_nsec};
}

FileHandle OpenForReading(const std::string& path) { return OpenPlainFile(path, Links::Refused); }

/// The status of an open plain file; nothing for anything else.
std::optional<struct stat> PlainStatus(const FileHandle& file) {
  struct stat status;
  if (!file || ::fstat(file.Get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return status;
}

bool IsWritable(const struct stat& status) { return (status.st_mode & S_IWUSR) != 0; }

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

/// A handler that does nothing rather than SIG_IGN, which programs that we start would inherit.
void DoNothing(int) {}

void TakeOverLeaseSignal() {
  struct sigaction present;
  if (::sigaction(SIGIO, nullptr, &present) != 0 || present.sa_handler != SIG_DFL) return;
  struct sigaction ours = {};
  ours.sa_handler = DoNothing;
  ours.sa_flags = SA_RESTART;
  ::sigaction(SIGIO, &ours, nullptr);
}

/// Asks for a read lease. 0 when it was granted, otherwise the errno. Closing the file gives it
/// back, which the caller must do at once.
int TryLease(int handle) { return ::fcntl(handle, F_SETLEASE, F_RDLCK) == 0 ? 0 : errno; }

struct CloseFolder {
  void operator()(DIR* folder) const { ::closedir(folder); }
};

bool IsPlainFile(DIR* folder, const dirent& entry) {
  if (entry.d_type != DT_UNKNOWN) return entry.d_type == DT_REG;
  struct stat status;
  return ::fstatat(::dirfd(folder), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISREG(status.st_mode);
}

}  // namespace

std::int64_t PosixDisk::SystemClock() {
  timespec now;
  ::clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec * kNanosecondsInASecond + now.tv_nsec;
}

bool PosixDisk::TrustsLeasesOf(std::int64_t fileSystemKind) {
  constexpr std::int64_t kCifs = 0xFF534D42;
  constexpr std::array<std::int64_t, 5> kOfOtherMachines{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC,
                                                         SMB2_SUPER_MAGIC, kCifs, FUSE_SUPER_MAGIC};
  return std::find(kOfOtherMachines.begin(), kOfOtherMachines.end(), fileSystemKind) ==
         kOfOtherMachines.end();
}

PosixDisk::PosixDisk(Clock clock, LeaseTrust leaseTrust, std::function<void()> breathe)
    : clock_(std::move(clock)), leaseTrust_(std::move(leaseTrust)), breathe_(std::move(breathe)) {
  TakeOverLeaseSignal();
}

store::Listing PosixDisk::ListPlainFiles(const std::string& folder) {
  lastDevice_.reset();
  const std::unique_ptr<DIR, CloseFolder> open(::opendir(FolderPath(folder)));
  if (!open) return {.processInTrouble = IsOfTheProcess(errno)};
  store::Listing listing{.started = true};
  errno = 0;
  while (const dirent* const entry = ::readdir(open.get())) {
    if (entry->d_name[0] != '.' && IsPlainFile(open.get(), *entry)) {
      listing.names.emplace_back(entry->d_name);
    }
    errno = 0;
  }
  listing.finished = errno == 0;
  listing.processInTrouble = IsOfTheProcess(errno);
  return listing;
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
  const FileHandle file = OpenForReading(path);
  if (!file && IsOfTheProcess(errno)) return store::Readiness::ProcessInTrouble;
  const auto status = PlainStatus(file);
  if (!status) return store::Readiness::Unusable;
  const int lease = TryLease(file.Get());
  if (lease == EAGAIN) return store::Readiness::InUse;
  if (IsOfTheProcess(lease)) return store::Readiness::ProcessInTrouble;
  const bool believed = lease == 0 && TrustsLeaseOn(file.Get(), status->st_dev);
  if (!believed && !StandsStill(path, FactsOf(*status))) return store::Readiness::InUse;
  testedPath_ = path;
  tested_ = {.inode = status->st_ino, .facts = FactsOf(*status)};
  testedAt_ = clock_();
  return IsWritable(*status) ? store::Readiness::Free : store::Readiness::FreeReadOnly;
}

std::optional<PosixDisk::TestedFile> PosixDisk::JustTested(const std::string& path) const {
  if (path != testedPath_) return {};
  const std::int64_t age = clock_() - testedAt_;
  if (age < 0 || age > kJustNow) return {};
  return tested_;
}

bool PosixDisk::TrustsLeaseOn(int handle, dev_t device) {
  if (!lastDevice_ || lastDevice_->device != device) {
    struct statfs fileSystem;
    const bool known = ::fstatfs(handle, &fileSystem) == 0;
    lastDevice_ = TrustedDevice{device, known && leaseTrust_(fileSystem.f_type)};
  }
  return lastDevice_->trusted;
}

bool PosixDisk::StandsStill(const std::string& path, const store::FileFacts& facts) {
  const std::int64_t now = clock_();
  const auto seen = sightings_.find(path);
  const bool sameAsSeen =
      seen != sightings_.end() && seen->second.facts == facts && seen->second.since <= now;
  if (now - facts.stamp >= kStandStill || (sameAsSeen && now - seen->second.since >= kStandStill)) {
    if (seen != sightings_.end()) sightings_.erase(seen);
    return true;
  }
  if (!sameAsSeen) {
    if (sightings_.size() >= kMostSightings) sightings_.clear();
    sightings_[path] = {facts, now};
  }
  return false;
}

DiskResult PosixDisk::SetAttributesNormal(const std::string& path) {
  const FileHandle file = OpenForReading(path);
  if (!file) return ResultOf(errno);
  const auto status = PlainStatus(file);
  if (!status) return DiskResult::Failed;
  if (IsWritable(*status)) return DiskResult::Done;
  return ResultOfCall(::fchmod(file.Get(), (status->st_mode & 07777) | S_IWUSR));
}

DiskResult PosixDisk::Copy(const std::string& from, const std::string& to) {
  const FileHandle source = OpenForReading(from);
  if (!source) return ResultOf(errno);
  const auto status = PlainStatus(source);
  if (!status) return DiskResult::Failed;
  FileHandle target(to.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0600);
  if (!target) return ResultOf(errno);
  const std::array<timespec, 2> times{timespec{.tv_nsec = UTIME_OMIT}, status->st_mtim};
  if (!CopyContents(source.Get(), target.Get(), breathe_)) return ResultOf(errno);
  KeepOwnerAndMode(target.Get(), *status);
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
  if (!PlainStatus(file)) return DiskResult::Failed;
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
