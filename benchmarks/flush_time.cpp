#include "flush_time.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <chrono>

namespace tavlo::bench {
namespace {

using Clock = std::chrono::steady_clock;

std::atomic<Clock::duration::rep> waited{0};

int Counted(long call, int handle) {
  const Clock::time_point begin = Clock::now();
  const long result = ::syscall(call, handle);
  waited += (Clock::now() - begin).count();
  return static_cast<int>(result);
}

}  // namespace

double FlushSeconds() { return std::chrono::duration<double>(Clock::duration(waited)).count(); }

}  // namespace tavlo::bench

// They stand in for those of the C library.
extern "C" {
int fsync(int handle) { return tavlo::bench::Counted(SYS_fsync, handle); }
int fdatasync(int handle) { return tavlo::bench::Counted(SYS_fdatasync, handle); }
}
