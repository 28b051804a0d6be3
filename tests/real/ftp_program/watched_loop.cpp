#include "ftp_program/watched_loop.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <netdb.h>
#include <netinet/in.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <string>
#include <string_view>
#include <utility>

namespace {

using std::chrono::nanoseconds;

thread_local bool watched = false;
thread_local int callsThatMayStall = 0;
/// The longest wait for another thread that was asked for among those that end by themselves.
thread_local nanoseconds readyToWait{0};

/// The function that the one of this program stands in front of.
template <typename Function>
Function* Original(const char* name) {
  return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name));
}

void NoteIfItLeadsToAMachine(int handle) {
  if (!watched) return;
  int domain = 0;
  socklen_t size = sizeof domain;
  const bool known = ::getsockopt(handle, SOL_SOCKET, SO_DOMAIN, &domain, &size) == 0;
  if (known && (domain == AF_INET || domain == AF_INET6)) ++callsThatMayStall;
}

/// Settings are written where they stand when a hand changes them, which is no matter of a server.
void NoteSync(int handle) {
  if (!watched) return;
  char path[4096];
  const std::string link = "/proc/self/fd/" + std::to_string(handle);
  const ssize_t size = ::readlink(link.c_str(), path, sizeof path);
  const std::string_view name(path, static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
  if (name.find("/TavloDeck/Files/") != name.npos) ++callsThatMayStall;
}

void NoteWait(clockid_t clock, const timespec& end) {
  timespec now{};
  ::clock_gettime(clock, &now);
  const nanoseconds length =
      std::chrono::seconds(end.tv_sec - now.tv_sec) + nanoseconds(end.tv_nsec - now.tv_nsec);
  readyToWait = std::max(length, readyToWait);
}

}  // namespace

// They stand in front of the libraries' own, for whoever calls them in this process.
extern "C" {

int connect(int handle, const sockaddr* address, socklen_t size) {
  static const auto original = Original<int(int, const sockaddr*, socklen_t)>("connect");
  NoteIfItLeadsToAMachine(handle);
  return original(handle, address, size);
}

ssize_t send(int handle, const void* bytes, size_t size, int flags) {
  static const auto original = Original<ssize_t(int, const void*, size_t, int)>("send");
  NoteIfItLeadsToAMachine(handle);
  return original(handle, bytes, size, flags);
}

ssize_t recv(int handle, void* room, size_t size, int flags) {
  static const auto original = Original<ssize_t(int, void*, size_t, int)>("recv");
  NoteIfItLeadsToAMachine(handle);
  return original(handle, room, size, flags);
}

ssize_t write(int handle, const void* bytes, size_t size) {
  static const auto original = Original<ssize_t(int, const void*, size_t)>("write");
  NoteIfItLeadsToAMachine(handle);
  return original(handle, bytes, size);
}

ssize_t read(int handle, void* room, size_t size) {
  static const auto original = Original<ssize_t(int, void*, size_t)>("read");
  NoteIfItLeadsToAMachine(handle);
  return original(handle, room, size);
}

int getaddrinfo(const char* name, const char* service, const addrinfo* hints, addrinfo** found) {
  static const auto original =
      Original<int(const char*, const char*, const addrinfo*, addrinfo**)>("getaddrinfo");
  if (watched) ++callsThatMayStall;
  return original(name, service, hints, found);
}

int fsync(int handle) {
  static const auto original = Original<int(int)>("fsync");
  NoteSync(handle);
  return original(handle);
}

int fdatasync(int handle) {
  static const auto original = Original<int(int)>("fdatasync");
  NoteSync(handle);
  return original(handle);
}

int pthread_cond_clockwait(pthread_cond_t* condition, pthread_mutex_t* mutex, clockid_t clock,
                           const timespec* end) {
  static const auto original =
      Original<int(pthread_cond_t*, pthread_mutex_t*, clockid_t, const timespec*)>(
          "pthread_cond_clockwait");
  NoteWait(clock, *end);
  return original(condition, mutex, clock, end);
}

}  // extern "C"

namespace tavlo::test {
namespace {

constexpr base::Duration kInterval = std::chrono::milliseconds(10);
constexpr std::chrono::milliseconds kLongestHold{50};

}  // namespace

WatchedLoop::WatchedLoop(platform::qt::QtLoop& loop)
    : tick_(loop, "watched loop", kInterval, base::TimerKind::Feed),
      callsBefore_(callsThatMayStall) {
  watched = true;
  tick_.OnTick = [this] { Look(); };
  tick_.Start();
}

WatchedLoop::~WatchedLoop() { watched = false; }

void WatchedLoop::ExpectNothingHeldIt() const {
  EXPECT_LT(longestStretch_, kLongestHold);
  EXPECT_LT(longestReadiness_, kLongestHold);
  EXPECT_EQ(callsThatMayStall - callsBefore_, 0);
  testing::Test::RecordProperty("computed", std::to_string(longestStretch_.count()));
  testing::Test::RecordProperty("ready", std::to_string(longestReadiness_.count()));
}

void WatchedLoop::Look() {
  ++ticks_;
  const auto ready = std::chrono::duration_cast<std::chrono::milliseconds>(
      std::exchange(readyToWait, nanoseconds(0)));
  if (sinceLast_) {
    longestStretch_ = std::max(longestStretch_, sinceLast_->Computed());
    longestReadiness_ = std::max(longestReadiness_, ready);
  }
  sinceLast_.emplace();
}

}  // namespace tavlo::test
