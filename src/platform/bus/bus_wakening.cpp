#include "platform/bus/bus_wakening.h"

#include <sys/epoll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <system_error>
#include <utility>

namespace tavlo::platform {
namespace {

using base::operator""ms;

constexpr const char* kName = "session bus";
/// More messages than a healthy bus ever leaves unread.
constexpr std::uint64_t kCongestion = 64;
/// In microseconds. Longer than an answer ever has, and short enough for every clock.
constexpr std::uint64_t kLongestWait = 3'600'000'000;
/// What the library says when it waits for no moment.
constexpr std::uint64_t kNever = UINT64_MAX;

int Epoll() {
  const int epoll = ::epoll_create1(EPOLL_CLOEXEC);
  if (epoll < 0) throw std::system_error(errno, std::generic_category(), "epoll_create1");
  return epoll;
}

/// On the library's clock.
std::uint64_t MicrosecondsNow() {
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000 +
         static_cast<std::uint64_t>(now.tv_nsec) / 1000;
}

}  // namespace

BusWakening::BusWakening(base::Loop& loop, DescriptorWaits& waits, std::function<void()> call)
    : epoll_(Epoll()), deadline_(loop, kName, 1ms), wait_(waits.WaitFor(epoll_, kName, call)) {
  deadline_.OnTick = [this, call = std::move(call)] {
    deadline_.Stop();
    call();
  };
}

BusWakening::~BusWakening() {
  wait_.reset();
  ::close(epoll_);
}

void BusWakening::Follow(sd_bus& bus) {
  const int wanted = std::max(sd_bus_get_events(&bus), 0);
  const bool congested = IsCongested(bus);
  WaitForSocket(sd_bus_get_fd(&bus), static_cast<unsigned>(congested ? int{EPOLLOUT} : wanted));
  if (congested) {
    deadline_.Stop();
  } else {
    WaitForDeadline(bus);
  }
}

void BusWakening::Rest() {
  if (socket_ >= 0) ::epoll_ctl(epoll_, EPOLL_CTL_DEL, std::exchange(socket_, -1), nullptr);
  deadline_.Stop();
}

bool BusWakening::IsCongested(sd_bus& bus) {
  std::uint64_t queued = 0;
  return sd_bus_get_n_queued_write(&bus, &queued) >= 0 && queued >= kCongestion;
}

/// The library counts events as poll does, and epoll has the same numbers.
void BusWakening::WaitForSocket(int socket, unsigned events) {
  epoll_event wanted{.events = events, .data = {}};
  if (socket == socket_ && ::epoll_ctl(epoll_, EPOLL_CTL_MOD, socket, &wanted) == 0) return;
  // Trying its next address the library has another socket, perhaps under the same number.
  if (socket != socket_ && socket_ >= 0) ::epoll_ctl(epoll_, EPOLL_CTL_DEL, socket_, nullptr);
  socket_ = socket;
  if (socket >= 0) ::epoll_ctl(epoll_, EPOLL_CTL_ADD, socket, &wanted);
}

void BusWakening::WaitForDeadline(sd_bus& bus) {
  std::uint64_t due = kNever;
  if (sd_bus_get_timeout(&bus, &due) < 0 || due == kNever) return deadline_.Stop();
  const std::uint64_t now = MicrosecondsNow();
  if (due <= now) return deadline_.StartDue();
  deadline_.SetInterval(base::Duration(std::min(due - now, kLongestWait)));
  deadline_.Start();
}

}  // namespace tavlo::platform
