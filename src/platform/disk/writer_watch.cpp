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

bool WriterWatch::TrustsLeasesOf(std::int64_t fileSystemKind) {
  constexpr std::int64_t kCifs = 0xFF534D42;
  constexpr std::array<std::int64_t, 5> kOfOtherMachines{NFS_SUPER_MAGIC, SMB_SUPER_MAGIC,
                                                         SMB2_SUPER_MAGIC, kCifs, FUSE_SUPER_MAGIC};
  return std::find(kOfOtherMachines.begin(), kOfOtherMachines.end(), fileSystemKind) ==
         kOfOtherMachines.end();
}

WriterWatch::WriterWatch(Clock clock, LeaseTrust leaseTrust)
    : clock_(std::move(clock)), leaseTrust_(std::move(leaseTrust)) {
  TakeOverLeaseSignal();
}

store::Readiness WriterWatch::Look(int handle, const struct stat& status, const std::string& path) {
  const int lease = TryLease(handle);
  if (lease == EAGAIN) return store::Readiness::InUse;
  if (IsOfTheProcess(lease)) return store::Readiness::ProcessInTrouble;
  const bool believed = lease == 0 && TrustsLeaseOn(handle, status.st_dev);
  if (!believed && !StandsStill(path, FactsOf(status))) return store::Readiness::InUse;
  return IsWritable(status) ? store::Readiness::Free : store::Readiness::FreeReadOnly;
}

bool WriterWatch::TrustsLeaseOn(int handle, dev_t device) {
  if (!lastDevice_ || lastDevice_->device != device) {
    struct statfs fileSystem;
    const bool known = ::fstatfs(handle, &fileSystem) == 0;
    lastDevice_ = TrustedDevice{device, known && leaseTrust_(fileSystem.f_type)};
  }
  return lastDevice_->trusted;
}

bool WriterWatch::StandsStill(const std::string& path, const store::FileFacts& facts) {
  const std::int64_t now = clock_();
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
