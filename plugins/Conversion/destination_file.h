#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "conversion_code.h"
#include "platform/disk/file_handle.h"
#include "wave_sink.h"

namespace tavlo::conversion {

/// The file that a conversion makes. It grows beside the destination under a name with a dot and
/// takes the destination's name when it is whole, so nobody ever sees a part of it. A file or a
/// link that has that name by then is replaced. One that is never finished is removed.
class DestinationFile : public WaveSink {
 public:
  DestinationFile() = default;
  ~DestinationFile() override;
  DestinationFile(const DestinationFile&) = delete;

  /// Done, or why nothing can be made there. SameFile when the path names the source.
  ConversionCode Create(const std::string& path, const struct stat& source);

  ConversionCode Append(std::span<const std::uint8_t> bytes) override;
  ConversionCode ReplaceFront(std::span<const std::uint8_t> bytes) override;

  /// Flushes the file, gives it its name, and flushes the folder. Nothing is appended afterwards.
  ConversionCode Finish();

 private:
  /// The destination's folder, with its separator.
  std::string Folder() const;
  ConversionCode CreateUnfinished();
  ConversionCode WriteWaiting();

  std::optional<platform::FileHandle> file_;
  std::string path_;
  std::string unfinishedPath_;  ///< Empty while there is nothing to remove.
  std::vector<std::uint8_t> waiting_;
};

}  // namespace tavlo::conversion
