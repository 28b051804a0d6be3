#include "platform/ffmpeg/plain_file.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <limits>
#include <utility>

namespace tavlo::platform {
namespace {

FileIdentity IdentityFrom(const struct stat& facts) {
  return {.inode = facts.st_ino,
          .size = static_cast<std::uint64_t>(facts.st_size),
          .stamp = std::int64_t{facts.st_mtim.tv_sec} * 1'000'000'000 + facts.st_mtim.tv_nsec};
}

}  // namespace

std::optional<FileIdentity> IdentityOf(const std::string& path) {
  struct stat facts;
  if (::lstat(path.c_str(), &facts) != 0 || !S_ISREG(facts.st_mode)) return std::nullopt;
  return IdentityFrom(facts);
}

PlainFile::PlainFile(PlainFile&& other) noexcept
    : handle_(std::exchange(other.handle_, -1)),
      borrowed_(other.borrowed_),
      identity_(other.identity_),
      hole_(other.hole_) {}

PlainFile& PlainFile::operator=(PlainFile&& other) noexcept {
  if (this == &other) return *this;
  Close();
  handle_ = std::exchange(other.handle_, -1);
  borrowed_ = other.borrowed_;
  identity_ = other.identity_;
  hole_ = other.hole_;
  return *this;
}

PlainFile::Trouble PlainFile::Open(const std::string& path, const Accepted& accepted) {
  Close();
  struct stat status;
  FileHandle file = OpenPlainFile(path, accepted.links, status);
  if (!file) {
    const bool process = errno == EMFILE || errno == ENFILE || errno == ENOMEM;
    return process ? Trouble::Process : Trouble::OutOfReach;
  }
  identity_ = IdentityFrom(status);
  if (identity_.size > accepted.mostBytes) return Trouble::OutOfReach;
  handle_ = file.Release();
  return Trouble::None;
}

PlainFile::Trouble PlainFile::Borrow(int handle, const FileIdentity& identity,
                                     const Accepted& accepted) {
  Close();
  if (identity.size > accepted.mostBytes) return Trouble::OutOfReach;
  handle_ = handle;
  borrowed_ = true;
  identity_ = identity;
  return Trouble::None;
}

void PlainFile::Close() {
  if (handle_ >= 0 && !borrowed_) ::close(handle_);
  handle_ = -1;
  borrowed_ = false;
  hole_.reset();
}

std::size_t PlainFile::ReadAt(std::uint64_t offset, std::span<std::uint8_t> target) const {
  if (offset > static_cast<std::uint64_t>(std::numeric_limits<off_t>::max())) return 0;
  std::size_t filled = 0;
  while (filled < target.size() && offset + filled < identity_.size) {
    const ssize_t got = ::pread(handle_, target.data() + filled, target.size() - filled,
                                static_cast<off_t>(offset + filled));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    filled += static_cast<std::size_t>(got);
  }
  const std::uint64_t end = offset + filled;
  if (filled < target.size() && end < identity_.size) {
    hole_ = end;
  } else if (hole_ && *hole_ >= offset && *hole_ < end) {
    hole_.reset();
  }
  if (OnRead) OnRead();
  return filled;
}

}  // namespace tavlo::platform
