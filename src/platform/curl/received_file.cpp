#include "platform/curl/received_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <utility>

#include "platform/disk/write_all.h"

namespace tavlo::platform {
namespace {

/// A slow stick keeps so much within a second or two, so that a thread at work gives signs.
constexpr std::int64_t kKeptAtOnce = 8'000'000;

}  // namespace

LandingFolder::LandingFolder(const std::string& path)
    : handle_(path.c_str(), O_RDONLY | O_DIRECTORY) {}

bool LandingFolder::HasRoomFor(std::int64_t bytes) const {
  struct statvfs disk;
  // A disk that does not say how much room it has may have enough.
  if (::fstatvfs(handle_.Get(), &disk) != 0 || disk.f_frsize == 0) return true;
  return static_cast<std::uint64_t>(bytes) / disk.f_frsize < disk.f_bavail;
}

bool LandingFolder::Holds(const std::string& name) const {
  struct stat status;
  return ::fstatat(handle_.Get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
}

bool IsLandingName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == name.npos;
}

ReceivedFile::~ReceivedFile() {
  if (handle_ >= 0) ::close(handle_);
}

bool ReceivedFile::Create(const LandingFolder& folder, const std::string& name) {
  handle_ = ::openat(folder.Handle(), name.c_str(),
                     O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
  return handle_ >= 0;
}

bool ReceivedFile::Write(std::span<const char> bytes) {
  if (!WriteAll(handle_, bytes.data(), bytes.size())) return false;
  written_ += static_cast<std::int64_t>(bytes.size());
  return true;
}

bool ReceivedFile::Keep(const LandingFolder& folder, const std::function<void()>& goesOn) {
  // Piece by piece, where the disk can; the flush of the whole has little to do then.
  constexpr unsigned kUntilItIsThere =
      SYNC_FILE_RANGE_WAIT_BEFORE | SYNC_FILE_RANGE_WRITE | SYNC_FILE_RANGE_WAIT_AFTER;
  for (std::int64_t at = 0; at < written_; at += kKeptAtOnce) {
    ::sync_file_range(handle_, at, std::min(kKeptAtOnce, written_ - at), kUntilItIsThere);
    goesOn();
  }
  bool kept = ::fsync(handle_) == 0;
  kept = ::close(std::exchange(handle_, -1)) == 0 && kept;
  // Some file systems keep names by themselves and refuse this.
  ::fsync(folder.Handle());
  return kept;
}

}  // namespace tavlo::platform
