#define FUSE_USE_VERSION 31

#include "serial_box.h"

#include <asm/termbits.h>
#include <cuse_lowlevel.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <thread>
#include <vector>

#include "support/screen.h"

namespace tavlo::test {
namespace {

constexpr const char* kPath = "/dev/ttyUSB4";
constexpr const char* kNodeName = "DEVNAME=ttyUSB4";

/// The callers that wait for lines to change. Their answers are kept until then, or until a signal
/// ends the wait.
class WaitingCallers {
 public:
  explicit WaitingCallers(SerialWires& wires) : wires_(wires) {}

  /// Keeps the answer to a caller who waits for one of these lines.
  void Keep(fuse_req_t request, int lines) {
    // Where the signal came first this calls the handler, which finds nothing kept and does not
    // answer: the request is still in use here.
    fuse_req_interrupt_func(request, HandleInterruption, this);
    const std::lock_guard lock(mutex_);
    if (fuse_req_interrupted(request) != 0) {
      fuse_reply_err(request, EINTR);
      return;
    }
    kept_.push_back({request, lines, wires_.Closed()});
    Count();
  }
  /// Answers whoever waited for what has changed.
  void AnswerChanges() {
    const std::lock_guard lock(mutex_);
    const int closed = wires_.Closed();
    std::erase_if(kept_, [closed](const Kept& kept) {
      if (((kept.before ^ closed) & kept.lines) == 0) return false;
      fuse_reply_ioctl(kept.request, 0, nullptr, 0);
      return true;
    });
    Count();
  }

 private:
  struct Kept {
    fuse_req_t request;
    int lines;
    int before;
  };

  static void HandleInterruption(fuse_req_t request, void* self) {
    WaitingCallers& callers = *static_cast<WaitingCallers*>(self);
    const std::lock_guard lock(callers.mutex_);
    const std::size_t ended = std::erase_if(
        callers.kept_, [request](const Kept& kept) { return kept.request == request; });
    callers.Count();
    // Otherwise it has been answered, or is just being taken.
    if (ended == 1) fuse_reply_err(request, EINTR);
  }
  void Count() { wires_.waits = static_cast<int>(kept_.size()); }

  SerialWires& wires_;
  std::mutex mutex_;
  std::vector<Kept> kept_;
};

struct Port {
  explicit Port(SerialWires& ownWires) : wires(ownWires), callers(ownWires) {}

  SerialWires& wires;
  WaitingCallers callers;
  /// What was set last; who sets it reads it back to see whether it was taken.
  termios mode{};
};

Port& PortOf(fuse_req_t request) { return *static_cast<Port*>(fuse_req_userdata(request)); }

void Open(fuse_req_t request, fuse_file_info* file) {
  ++PortOf(request).wires.openings;
  fuse_reply_open(request, file);
}

void Release(fuse_req_t request, fuse_file_info*) {
  --PortOf(request).wires.openings;
  fuse_reply_err(request, 0);
}

/// Hands a value to the caller, once the kernel knows where it goes.
template <typename Value>
void Give(fuse_req_t request, void* target, std::size_t room, const Value& value) {
  if (room == 0) {
    const iovec place{target, sizeof value};
    fuse_reply_ioctl_retry(request, nullptr, 0, &place, 1);
    return;
  }
  fuse_reply_ioctl(request, 0, &value, sizeof value);
}

/// Takes a value from the caller, once the kernel has fetched it; true when it is there.
template <typename Value>
bool Take(fuse_req_t request, void* source, const void* bytes, std::size_t size, Value& value) {
  if (size < sizeof value) {
    const iovec place{source, sizeof value};
    fuse_reply_ioctl_retry(request, &place, 1, nullptr, 0);
    return false;
  }
  std::memcpy(&value, bytes, sizeof value);
  return true;
}

void Control(fuse_req_t request, int command, void* argument, fuse_file_info*, unsigned,
             const void* bytes, std::size_t size, std::size_t room) {
  Port& port = PortOf(request);
  int lines = 0;
  switch (static_cast<unsigned>(command)) {
    case TIOCMGET:
      if (room > 0) ++port.wires.reads;
      Give(request, argument, room, port.wires.Closed() | port.wires.raised.load());
      return;
    case TIOCMIWAIT:
      port.callers.Keep(request, static_cast<int>(reinterpret_cast<std::intptr_t>(argument)));
      return;
    case TIOCMBIS:
      if (!Take(request, argument, bytes, size, lines)) return;
      port.wires.raised |= lines;
      break;
    case TCGETS:
      Give(request, argument, room, port.mode);
      return;
    case TCSETS:
    case TCSETSW:
    case TCSETSF:
      if (!Take(request, argument, bytes, size, port.mode)) return;
      break;
    default:
      fuse_reply_err(request, ENOTTY);
      return;
  }
  fuse_reply_ioctl(request, 0, nullptr, 0);
}

[[noreturn]] void Serve(SerialWires& wires) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  const char* node[] = {kNodeName};
  cuse_info device{};
  device.dev_info_argc = 1;
  device.dev_info_argv = node;
  device.flags = CUSE_UNRESTRICTED_IOCTL;
  cuse_lowlevel_ops calls{};
  calls.open = Open;
  calls.release = Release;
  calls.ioctl = Control;
  char name[] = "serial-box";
  char inFront[] = "-f";
  char oneThread[] = "-s";
  char* words[] = {name, inFront, oneThread};
  Port port(wires);
  std::thread([&port] {
    for (;;) {
      port.wires.AwaitChange();
      port.callers.AnswerChanges();
    }
  }).detach();
  ::_exit(cuse_lowlevel_main(3, words, &device, &calls, &port));
}

}  // namespace

bool SerialBox::Plug() {
  Unplug();
  wires_.Part();
  process_ = ::fork();
  if (process_ == 0) Serve(wires_);
  return process_ > 0 && Until([] { return std::filesystem::exists(kPath); }) &&
         ::chmod(kPath, 0666) == 0;
}

void SerialBox::Unplug() {
  if (process_ <= 0) return;
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
  process_ = -1;
  Until([] { return !std::filesystem::exists(kPath); });
}

}  // namespace tavlo::test
