#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <unordered_map>

#include "store/disk.h"

namespace tavlo::platform {

/// Tells whether a program is still writing a file. It is asked of the kernel, which refuses a read
/// lease while anybody has the file open for writing. The lease is given back at once, for a held
/// one would stop the writer. Where leases are not to be had or not to be believed (somebody else's
/// file, another machine's or a program's file system) a file is in use until its size and stamp
/// have stood still for `kStandStill`; a stamp that is older than that counts as still.
///
/// Making the first one of a process takes over SIGIO, the signal of a broken lease, unless the
/// program handles it already. Programs that we start get its default back.
class WriterWatch {
 public:
  /// Nanoseconds since 1970.
  using Clock = std::function<std::int64_t()>;
  static std::int64_t SystemClock();
  static constexpr std::int64_t kStandStill = 2'000'000'000;

  /// What to believe of an answer to a lease: all of it, the refusals alone, since a writer may be
  /// out of the kernel's sight, or nothing, where files that nobody has open are refused, too.
  enum class Trust { Whole, InRefusals, None };
  /// Says it of a kind of file system (its magic number).
  using LeaseTrust = std::function<Trust(std::int64_t fileSystemKind)>;
  static Trust TrustInLeasesOf(std::int64_t fileSystemKind);

  WriterWatch(Clock clock, LeaseTrust leaseTrust);

  /// Of a file that is open for reading and has this path. `status` is what it is behind the look,
  /// for its writer may put down its last bytes before. What is no plain file is unusable. By any
  /// thread.
  store::Readiness Look(int handle, const std::string& path, struct stat& status);
  /// A device number may come to mean another file system: whoever begins with a folder says so.
  void ForgetDevice();

 private:
  struct Sighting {
    store::FileFacts facts;
    std::int64_t since;
  };
  struct TrustedDevice {
    dev_t device;
    Trust trust;
  };

  Trust TrustInLeaseOn(int handle, dev_t device);
  /// True when the file has stood still for long enough.
  bool StandsStill(const std::string& path, const store::FileFacts& facts);

  const Clock clock_;
  const LeaseTrust leaseTrust_;
  std::mutex mutex_;
  // Under the lock.
  /// The device of the file that was looked at last, so that a scan asks once.
  std::optional<TrustedDevice> lastDevice_;
  std::unordered_map<std::string, Sighting> sightings_;
};

}  // namespace tavlo::platform
