#include "platform/access/reader/own_limits.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tavlo::platform {
namespace {

constexpr rlim_t kSeconds = 3;
constexpr rlim_t kMemory = rlim_t{512} * 1024 * 1024;

template <typename Resource>
void Limit(Resource resource, rlim_t most) {
  const rlimit limit{.rlim_cur = most, .rlim_max = most};
  ::setrlimit(resource, &limit);
}

}  // namespace

void LimitOwnProcess() {
  Limit(RLIMIT_CPU, kSeconds);
  Limit(RLIMIT_AS, kMemory);
  Limit(RLIMIT_FSIZE, 0);
  Limit(RLIMIT_CORE, 0);
  Limit(RLIMIT_NPROC, 0);
  ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
}

}  // namespace tavlo::platform
