#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace tavlo::test {

/// Leaves the process so many handles more than it has, for as long as it lives.
class FewHandles {
 public:
  explicit FewHandles(int more) {
    const int next = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    ::close(next);
    ::getrlimit(RLIMIT_NOFILE, &before_);
    rlimit few = before_;
    few.rlim_cur = static_cast<rlim_t>(next + more);
    ::setrlimit(RLIMIT_NOFILE, &few);
  }
  ~FewHandles() { ::setrlimit(RLIMIT_NOFILE, &before_); }
  FewHandles(const FewHandles&) = delete;

 private:
  rlimit before_{};
};

}  // namespace tavlo::test
