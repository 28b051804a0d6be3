#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace tavlo::platform {

/// An open file or folder, closed when it goes out of scope. Below 0 when opening failed; errno
/// then tells why. Handles are not passed on to programs that we start.
class FileHandle {
 public:
  /// None.
  FileHandle() = default;
  FileHandle(const char* path, int flags, unsigned mode = 0)
      : handle_(::open(path, flags | O_CLOEXEC | O_NOCTTY, mode)) {}
  /// A name in a folder that is open.
  FileHandle(int folder, const char* name, int flags)
      : handle_(::openat(folder, name, flags | O_CLOEXEC | O_NOCTTY)) {}
  FileHandle(FileHandle&& other) noexcept : handle_(std::exchange(other.handle_, -1)) {}
  FileHandle& operator=(FileHandle&&) = delete;
  ~FileHandle() {
    if (handle_ >= 0) ::close(handle_);
  }

  explicit operator bool() const { return handle_ >= 0; }
  int Get() const { return handle_; }

  /// Hands the handle over to somebody who closes it.
  [[nodiscard]] int Release() { return std::exchange(handle_, -1); }

  /// Closes now. False when what was written could not be kept.
  [[nodiscard]] bool Close() { return ::close(std::exchange(handle_, -1)) == 0; }

 private:
  int handle_ = -1;
};

}  // namespace tavlo::platform
