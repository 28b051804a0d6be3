#pragma once

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "store/disk.h"

namespace tavlo::platform {

/// The real file system. Names are bytes. A fifo, a device or a link never blocks an operation.
///
/// Whether a file is still being written is asked of the kernel: it refuses a read lease while
/// anybody has the file open for writing. The lease is given back at once, for a held one would
/// stop the writer. Where leases are not to be had or not to be believed (somebody else's file, a
/// network or user-space file system) a file is in use until its size and stamp have stood still
/// for `kStandStill`; a stamp that is older than that counts as still.
///
/// Making the first PosixDisk of a process takes over SIGIO, the signal of a broken lease, unless
/// the program handles it already. Programs that we start get its default back.
class PosixDisk : public store::Disk {
 public:
  /// Nanoseconds since 1970.
  using Clock = std::function<std::int64_t()>;
  static std::int64_t SystemClock();
  static constexpr std::int64_t kStandStill = 2'000'000'000;

  /// Whether leases on a file system of that kind (its magic number) tell the truth.
  using LeaseTrust = std::function<bool(std::int64_t fileSystemKind)>;
  static bool TrustsLeasesOf(std::int64_t fileSystemKind);

  /// A copy calls `breathe` again and again, for a long recording can take long to copy.
  explicit PosixDisk(Clock clock = SystemClock, LeaseTrust leaseTrust = TrustsLeasesOf,
                     std::function<void()> breathe = {});

  /// What the last readiness test saw of its file.
  struct TestedFile {
    std::uint64_t inode;
    store::FileFacts facts;
  };
  /// For who is about to look at the file that was tested just now: spares a question to the disk.
  /// Nothing for any other file, and nothing once the test lies `kJustNow` back.
  std::optional<TestedFile> JustTested(const std::string& path) const;
  static constexpr std::int64_t kJustNow = 20'000'000;

  store::Listing ListPlainFiles(const std::string& folder) override;
  std::optional<store::FileFacts> Facts(const std::string& path) override;
  store::Entry Look(const std::string& path) override;
  store::Readiness TestReadiness(const std::string& path) override;
  store::DiskResult SetAttributesNormal(const std::string& path) override;
  store::DiskResult Copy(const std::string& from, const std::string& to) override;
  store::DiskResult Rename(const std::string& from, const std::string& to) override;
  store::DiskResult Delete(const std::string& path) override;
  store::DiskResult Append(const std::string& path, std::string_view text) override;
  store::DiskResult MakeLink(const std::string& target, const std::string& path) override;
  store::DiskResult MakeFolder(const std::string& path) override;
  store::DiskResult RemoveFolder(const std::string& path) override;
  store::DiskResult FlushFolder(const std::string& folder) override;

 private:
  struct Sighting {
    store::FileFacts facts;
    std::int64_t since;
  };
  struct TrustedDevice {
    dev_t device;
    bool trusted;
  };

  bool TrustsLeaseOn(int handle, dev_t device);
  /// True when the file has stood still for long enough.
  bool StandsStill(const std::string& path, const store::FileFacts& facts);

  Clock clock_;
  LeaseTrust leaseTrust_;
  std::function<void()> breathe_;
  /// The device of the last file tested, so that a scan asks once. Forgotten at each listing, since
  /// a device number may come to mean another file system.
  std::optional<TrustedDevice> lastDevice_;
  std::unordered_map<std::string, Sighting> sightings_;
  std::string testedPath_;
  TestedFile tested_{};
  std::int64_t testedAt_ = 0;
};

}  // namespace tavlo::platform
