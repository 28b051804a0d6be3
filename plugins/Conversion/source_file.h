#pragma once

#include <sys/stat.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "byte_source.h"
#include "conversion_code.h"
#include "platform/disk/file_handle.h"

namespace tavlo::conversion {

/// The file that is converted.
class SourceFile : public ByteSource {
 public:
  /// Done, or why it can not be read. Links are refused, and nothing makes the call wait.
  ConversionCode Open(const std::string& path);

  /// Of the open file, as it was when it was opened.
  const struct stat& Status() const { return status_; }
  std::uint64_t Size() const override { return static_cast<std::uint64_t>(status_.st_size); }

  ConversionCode Read(std::span<std::uint8_t> target, std::size_t& got) override;
  /// It is read from its front once more.
  ConversionCode Rewind();
  ConversionCode CheckUnchanged() const override;

 private:
  std::optional<platform::FileHandle> handle_;
  struct stat status_ {};
  std::uint64_t read_ = 0;
};

}  // namespace tavlo::conversion
