#include "destination_file.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>

#include "platform/disk/write_all.h"

namespace tavlo::conversion {
namespace {

constexpr std::size_t kWrittenAtOnce = 256 * 1024;
/// Names that conversions which were killed may have left behind are passed over.
constexpr int kMostUnfinishedNames = 1000;

ConversionCode CodeOfFailure(ConversionCode otherwise) {
  switch (errno) {
    case ENOSPC:
    case EDQUOT:
      return ConversionCode::DiskFull;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
      return ConversionCode::NoMemory;
    default:
      return otherwise;
  }
}

/// Some file systems know no flush of a folder; there is nothing to fail then.
bool FlushFolder(const std::string& folder) {
  const platform::FileHandle handle(folder.c_str(), O_RDONLY | O_DIRECTORY);
  return !handle || ::fsync(handle.Get()) == 0 || errno == EINVAL || errno == ENOTSUP;
}

}  // namespace

DestinationFile::~DestinationFile() {
  if (!unfinishedPath_.empty()) ::unlink(unfinishedPath_.c_str());
}

std::string DestinationFile::Folder() const {
  const std::size_t slash = path_.rfind('/');
  return slash == path_.npos ? "./" : path_.substr(0, slash + 1);
}

ConversionCode DestinationFile::Create(const std::string& path, const struct stat& source) {
  if (path.empty() || path.back() == '/') return ConversionCode::BadCall;
  path_ = path;
  struct stat standing;
  if (::lstat(path.c_str(), &standing) == 0) {
    const bool same = standing.st_dev == source.st_dev && standing.st_ino == source.st_ino;
    if (same) return ConversionCode::SameFile;
    // A rename could not replace it; so it is told before an hour of work.
    if (S_ISDIR(standing.st_mode)) return ConversionCode::CannotCreate;
  }
  return CreateUnfinished();
}

ConversionCode DestinationFile::CreateUnfinished() {
  const std::string start = Folder() + ".TavloDeckWave-" + std::to_string(::getpid()) + "-";
  for (int number = 1; number <= kMostUnfinishedNames; ++number) {
    const std::string path = start + std::to_string(number);
    file_.emplace(path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666U);
    if (*file_) {
      unfinishedPath_ = path;
      return ConversionCode::Done;
    }
    if (errno != EEXIST) break;
  }
  return CodeOfFailure(ConversionCode::CannotCreate);
}

ConversionCode DestinationFile::Append(std::span<const std::uint8_t> bytes) {
  waiting_.insert(waiting_.end(), bytes.begin(), bytes.end());
  return waiting_.size() < kWrittenAtOnce ? ConversionCode::Done : WriteWaiting();
}

ConversionCode DestinationFile::WriteWaiting() {
  const auto* const bytes = reinterpret_cast<const char*>(waiting_.data());
  const bool written = platform::WriteAll(file_->Get(), bytes, waiting_.size());
  waiting_.clear();
  return written ? ConversionCode::Done : CodeOfFailure(ConversionCode::WriteFailed);
}

ConversionCode DestinationFile::ReplaceFront(std::span<const std::uint8_t> bytes) {
  const ConversionCode code = WriteWaiting();
  if (code != ConversionCode::Done) return code;
  if (::lseek(file_->Get(), 0, SEEK_SET) != 0) return ConversionCode::WriteFailed;
  waiting_.assign(bytes.begin(), bytes.end());
  return WriteWaiting();
}

ConversionCode DestinationFile::Finish() {
  const ConversionCode code = WriteWaiting();
  if (code != ConversionCode::Done) return code;
  const bool kept = ::fsync(file_->Get()) == 0;
  if (!kept || !file_->Close()) return CodeOfFailure(ConversionCode::WriteFailed);
  if (::rename(unfinishedPath_.c_str(), path_.c_str()) != 0) {
    return CodeOfFailure(ConversionCode::WriteFailed);
  }
  unfinishedPath_.clear();
  return FlushFolder(Folder()) ? ConversionCode::Done : ConversionCode::WriteFailed;
}

}  // namespace tavlo::conversion
