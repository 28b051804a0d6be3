#include "source_file.h"

#include <unistd.h>

#include <cerrno>

#include "platform/disk/open_plain_file.h"

namespace tavlo::conversion {
namespace {

ConversionCode CodeOfRefusal(int error) {
  switch (error) {
    case ENOENT:
    case ENOTDIR:
      return ConversionCode::NotFound;
    case EINVAL:
    case ELOOP:
    case ENXIO:
      return ConversionCode::NotPlainFile;
    case EACCES:
    case EPERM:
      return ConversionCode::NotPermitted;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
      return ConversionCode::NoMemory;
    default:
      return ConversionCode::ReadFailed;
  }
}

bool SameMoment(const timespec& a, const timespec& b) {
  return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

}  // namespace

ConversionCode SourceFile::Open(const std::string& path) {
  handle_.emplace(platform::OpenPlainFile(path, platform::Links::Refused, status_));
  return *handle_ ? ConversionCode::Done : CodeOfRefusal(errno);
}

ConversionCode SourceFile::Read(std::span<std::uint8_t> target, std::size_t& got) {
  got = 0;
  while (got < target.size()) {
    const ssize_t came = ::read(handle_->Get(), target.data() + got, target.size() - got);
    if (came < 0 && errno == EINTR) continue;
    if (came < 0) return ConversionCode::ReadFailed;
    if (came == 0) break;
    got += static_cast<std::size_t>(came);
    read_ += static_cast<std::uint64_t>(came);
    // Somebody who writes faster than this reads would never let it end.
    if (read_ > Size()) return ConversionCode::SourceChanged;
  }
  return ConversionCode::Done;
}

ConversionCode SourceFile::Rewind() {
  read_ = 0;
  return ::lseek(handle_->Get(), 0, SEEK_SET) == 0 ? ConversionCode::Done
                                                   : ConversionCode::ReadFailed;
}

ConversionCode SourceFile::CheckUnchanged() const {
  struct stat now;
  if (::fstat(handle_->Get(), &now) != 0) return ConversionCode::ReadFailed;
  const bool unchanged =
      read_ == Size() && now.st_size == status_.st_size && SameMoment(now.st_mtim, status_.st_mtim);
  return unchanged ? ConversionCode::Done : ConversionCode::SourceChanged;
}

}  // namespace tavlo::conversion
