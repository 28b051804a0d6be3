#include "platform/disk/writer_watch.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/statfs.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <ctime>
#include <utility>

#include "platform/disk/disk_result.h"
#include "platform/disk/file_status.h"

namespace tavlo::platform {
namespace {

/// Files that are watched for standing still. Past this many the watch begins anew, which costs
/// each of them one more wait.
constexpr std::size_t kMostSightings = 65'536;

/// A handler that does nothing rather than SIG_IGN, which programs that we start would inherit.
void DoNothing(int) {}

void TakeOverLeaseSignal() {
  struct sigaction present;
  if (::sigaction(SIGIO, nullptr, &present) != 0 || present.sa_handler != SIG_DFL) return;
  struct sigaction ours = {};
  ours.sa_handler = DoNothing;
  ours.sa_flags = SA_RESTART;
  ::sigaction(SIGIO, &ours, nullptr);
}

/// Asks for a read lease and gives it back. 0 when it was granted, otherwise the errno.
int TryLease(int handle) {
  if (::fcntl(handle, F_SETLEASE, F_RDLCK) != 0) return errno;
  ::fcntl(handle, F_SETLEASE, F_UNLCK);
  return 0;
}

}  // namespace

std::int64_t WriterWatch::SystemClock() {
  timespec now;
  ::clock_gettime(CLOCK_REALTIME, &now);
  return now.tv_sec * std::int64_t{1'000'000'000} + now.tv_nsec;
}

WriterWatch::Trust WriterWatch::TrustInLeasesOf(std::int64_t fileSystemKind) {
  constexpr std::int64_t kCifs = 0xFF534D42;
  constexpr std::int64_t kVirtualBoxShare = 0x786F4256;
  // Without a delegation from the server these refuse each lease.
  constexpr std::array<std::int64_t, 4> kOfServers{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC,
                                                   SMB2_SUPER_MAGIC, kCifs};
  constexpr std::array<std::int64_t, 3> kBlind{FUSE_SUPER_MAGIC, V9FS_MAGIC, kVirtualBoxShare};
  if (std::ranges::find(kOfServers, fileSystemKind) != kOfServers.end()) return Trust::None;
  if (std::ranges::find(kBlind, fileSystemKind) != kBlind.end()) return Trust::InRefusals;
  return Trust::Whole;
}

WriterWatch::WriterWatch(Clock clock, LeaseTrust leaseTrust)
    : clock_(std::move(clock)), leaseTrust_(std::move(leaseTrust)) {
  TakeOverLeaseSignal();
}

store::Readiness WriterWatch::Look(int handle, const std::string& path, struct stat& status) {
  const int lease = TryLease(handle);
  const bool plain = ::fstat(handle, &status) == 0 && S_ISREG(status.st_mode);
  if (!plain) return store::Readiness::Unusable;
  if (IsOfTheProcess(lease)) return store::Readiness::ProcessInTrouble;
  const Trust trust = TrustInLeaseOn(handle, status.st_dev);
  if (lease == EAGAIN && trust != Trust::None) return store::Readiness::InUse;
  const bool believed = lease == 0 && trust == Trust::Whole;
  if (!believed && !StandsStill(path, FactsOf(status))) return store::Readiness::InUse;
  return IsWritable(status) ? store::Readiness::Free : store::Readiness::FreeReadOnly;
}

void WriterWatch::ForgetDevice() {
  const std::lock_guard lock(mutex_);
  lastDevice_.reset();
}

WriterWatch::Trust WriterWatch::TrustInLeaseOn(int handle, dev_t device) {
  const std::lock_guard lock(mutex_);
  if (!lastDevice_ || lastDevice_->device != device) {
    struct statfs fileSystem;
    const bool known = ::fstatfs(handle, &fileSystem) == 0;
    lastDevice_ = TrustedDevice{device, known ? leaseTrust_(fileSystem.f_type) : Trust::InRefusals};
  }
  return lastDevice_->trust;
}

bool WriterWatch::StandsStill(const std::string& path, const store::FileFacts& facts) {
  const std::int64_t now = clock_();
  const std::lock_guard lock(mutex_);
  const auto seen = sightings_.find(path);
  const bool sameAsSeen =
      seen != sightings_.end() && seen->second.facts == facts && seen->second.since <= now;
  if (now - facts.stamp >= kStandStill || (sameAsSeen && now - seen->second.since >= kStandStill)) {
    if (seen != sightings_.end()) sightings_.erase(seen);
    return true;
  }
  if (!sameAsSeen) {
    if (sightings_.size() >= kMostSightings) sightings_.clear();
    sightings_[path] = {facts, now};
  }
  return false;
}

}  // namespace tavlo::platform
