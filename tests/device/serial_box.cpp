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
#include <cstring>
#include <filesystem>

#include "support/screen.h"

namespace tavlo::test {
namespace {

constexpr const char* kPath = "/dev/ttyUSB4";
constexpr const char* kNodeName = "DEVNAME=ttyUSB4";

struct Port {
  SerialWires& wires;
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
      Give(request, argument, room, port.wires.closed.load() | port.wires.raised.load());
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
  Port port{.wires = wires};
  ::_exit(cuse_lowlevel_main(3, words, &device, &calls, &port));
}

}  // namespace

bool SerialBox::Plug() {
  Unplug();
  wires_.closed = 0;
  wires_.raised = 0;
  wires_.openings = 0;
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
