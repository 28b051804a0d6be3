#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>

#include "platform/disk/file_handle.h"

namespace tavlo::platform {

/// The folder that files land in, kept open: whatever happens to its path, they land in it and
/// nowhere else.
class LandingFolder {
 public:
  explicit LandingFolder(const std::string& path);

  bool IsOpen() const { return static_cast<bool>(handle_); }
  bool HasRoomFor(std::int64_t bytes) const;
  /// Whether anything has the name already.
  bool Holds(const std::string& name) const;
  int Handle() const { return handle_.Get(); }

 private:
  FileHandle handle_;
};

/// Whether a file may land under this name: it is that of an entry of the folder itself.
bool IsLandingName(const std::string& name);

/// A file that is being received. What has come of it stays.
class ReceivedFile {
 public:
  ReceivedFile() = default;
  ~ReceivedFile();
  ReceivedFile(const ReceivedFile&) = delete;

  /// Makes it; nothing may have its name. False, with the reason in errno, when it can not be made.
  bool Create(const LandingFolder& folder, const std::string& name);
  /// False when not all could be written.
  bool Write(std::span<const char> bytes);
  /// Has the disk keep it, with its name, and closes it; `goesOn` is called now and then. False
  /// when the disk could not.
  bool Keep(const LandingFolder& folder, const std::function<void()>& goesOn);

 private:
  int handle_ = -1;
  std::int64_t written_ = 0;
};

}  // namespace tavlo::platform
