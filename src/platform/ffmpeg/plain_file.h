#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <string>

#include "platform/disk/open_plain_file.h"

namespace tavlo::platform {

using Bytes = std::span<const std::uint8_t>;

/// What tells one state of a file from another.
struct FileIdentity {
  std::uint64_t inode = 0;
  std::uint64_t size = 0;
  std::int64_t stamp = 0;  ///< Last change of the contents, nanoseconds since 1970.
  bool operator==(const FileIdentity&) const = default;
};

/// The identity of the plain file at a path; nothing when there is none. Follows no link.
std::optional<FileIdentity> IdentityOf(const std::string& path);

/// A plain file, open for reading. Owns its handle, save one that it borrows.
class PlainFile {
 public:
  enum class Trouble {
    None,
    OutOfReach,  ///< Missing, not permitted, or no plain file.
    Process,     ///< The process has no handles or no memory left.
  };

  PlainFile() = default;
  ~PlainFile() { Close(); }
  PlainFile(PlainFile&& other) noexcept;
  PlainFile& operator=(PlainFile&& other) noexcept;

  /// Which files are opened.
  struct Accepted {
    Links links = Links::Refused;
    std::uint64_t mostBytes = std::numeric_limits<std::uint64_t>::max();
  };
  /// Opens the file, after closing what was open. A folder, a pipe, a device and what is not
  /// accepted are out of reach, and none of them can make the call wait.
  Trouble Open(const std::string& path, const Accepted& accepted);
  Trouble Open(const std::string& path) { return Open(path, Accepted{}); }
  /// Reads a file that somebody else has opened and will close, until Close. What is not accepted
  /// is out of reach.
  Trouble Borrow(int handle, const FileIdentity& identity, const Accepted& accepted);
  void Close();

  bool IsOpen() const { return handle_ >= 0; }
  /// As it was when the file was opened.
  const FileIdentity& Identity() const { return identity_; }
  std::uint64_t Size() const { return identity_.size; }

  /// Fills `target` from `offset` on and returns how many bytes came: fewer at the end of the file
  /// and when the disk fails.
  std::size_t ReadAt(std::uint64_t offset, std::span<std::uint8_t> target) const;

  /// Whether a read came back short though the file was longer when it was opened: the disk failed,
  /// or the file has been cut off since. True until the same place is read after all.
  bool HasHole() const { return hole_.has_value(); }
  void ForgetHole() { hole_.reset(); }

  /// Called after every read. Stays with this object, whatever is opened or moved into it.
  std::function<void()> OnRead;

 private:
  int handle_ = -1;
  bool borrowed_ = false;
  FileIdentity identity_;
  mutable std::optional<std::uint64_t> hole_;  ///< The first byte that could not be read.
};

}  // namespace tavlo::platform
