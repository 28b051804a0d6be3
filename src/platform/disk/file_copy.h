#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <string>
#include <vector>

#include "platform/disk/file_handle.h"
#include "store/disk.h"

namespace tavlo::platform {

/// Where a copy comes from. The two ends of one may stand on different file systems, so each is
/// used by itself, on any thread, one at a time. Each call, and the end of the source, waits for
/// the disk.
class CopySource {
 public:
  static constexpr std::size_t kBlock = 256 * 1024;

  explicit CopySource(const std::string& path);

  /// Done, or why there is nothing to read.
  store::DiskResult Opened() const { return opened_; }
  /// The next bytes, kBlock of them at most; none at the end.
  store::DiskResult Read(std::vector<char>& block);
  /// As it was when it was opened.
  const struct stat& Status() const { return status_; }

 private:
  struct stat status_ {};
  FileHandle file_;
  store::DiskResult opened_;
};

/// Where a copy goes: a new file, which is its owner's alone until it is whole. What was copied so
/// far stays behind when it fails. Used as a source is.
class CopyTarget {
 public:
  /// The copy is flushed whenever it has grown by `flushedAtOnce`, so that no flush takes long.
  CopyTarget(const std::string& path, std::size_t flushedAtOnce);

  /// Done, or why there is nothing to write to.
  store::DiskResult Opened() const { return opened_; }
  store::DiskResult Write(const std::vector<char>& block);
  /// Gives the copy the stamp, and the owner and the mode of its source as far as that may be,
  /// flushes it and closes it.
  store::DiskResult Finish(const struct stat& source);

 private:
  FileHandle file_;
  store::DiskResult opened_;
  const std::size_t flushedAtOnce_;
  std::size_t unflushed_ = 0;
};

}  // namespace tavlo::platform
