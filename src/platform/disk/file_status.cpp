#include "platform/disk/file_status.h"

#include <algorithm>
#include <cstdint>

#include "platform/disk/disk_result.h"

namespace tavlo::platform {

std::int64_t NanosecondsOf(const timespec& moment) {
  return moment.tv_sec * std::int64_t{1'000'000'000} + moment.tv_nsec;
}

store::FileFacts FactsOf(const struct stat& status) {
  return {.size = static_cast<std::uint64_t>(status.st_size),
          .stamp = NanosecondsOf(status.st_mtim)};
}

std::int64_t ChangedAtOf(const struct stat& status) {
  return std::max(NanosecondsOf(status.st_mtim), NanosecondsOf(status.st_ctim));
}

bool IsWritable(const struct stat& status) { return (status.st_mode & S_IWUSR) != 0; }

store::DiskResult MakeWritable(int handle, const struct stat& status) {
  if (IsWritable(status)) return store::DiskResult::Done;
  return ResultOfCall(::fchmod(handle, (status.st_mode & 07777) | S_IWUSR));
}

}  // namespace tavlo::platform
