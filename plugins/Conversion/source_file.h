#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "conversion_code.h"
#include "platform/disk/file_handle.h"

namespace tavlo::conversion {

/// The file that is converted, read from front to back. One thread at a time.
class SourceFile {
 public:
  /// Done, or why it can not be read. Links are refused, and nothing makes the call wait.
  ConversionCode Open(const std::string& path);

  /// Of the open file, as it was when it was opened.
  std::uint64_t Size() const { return static_cast<std::uint64_t>(status_.st_size); }
  const struct stat& Status() const { return status_; }

  /// Fills `target` and writes how many bytes came: fewer at the end alone.
  ConversionCode Read(std::span<std::uint8_t> target, std::size_t& got);

  /// SourceChanged when all that was read is not what the file held when it was opened, or it has
  /// been written to since.
  ConversionCode CheckUnchanged() const;

 private:
  std::optional<platform::FileHandle> handle_;
  struct stat status_ {};
  std::uint64_t read_ = 0;
};

}  // namespace tavlo::conversion
