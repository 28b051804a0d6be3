#include "support/real_bus.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <cstdlib>

namespace tavlo::test {

RealBus::RealBus() { Start(); }

RealBus::~RealBus() { Kill(); }

void RealBus::Start() {
  address_.clear();
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) return;
  // A session of its own keeps the services together with the bus that starts them.
  daemon_.Start({"setsid", "dbus-daemon", "--session", "--nofork", "--nopidfile",
                 "--address=unix:path=" + folder_.Path() + "/bus", "--print-address"},
                ends[1]);
  ::close(ends[1]);
  char letter = 0;
  while (::read(ends[0], &letter, 1) == 1 && letter != '\n') address_ += letter;
  ::close(ends[0]);
}

void RealBus::Kill() {
  if (daemon_.Running()) ::kill(-daemon_.Process(), SIGKILL);
}

void RealBus::Restart() {
  Kill();
  daemon_.Kill();
  Start();
}

bool RealBus::StartService(const std::string& name, const std::string& path) const {
  const std::string command = "dbus-send --bus='" + address_ + "' --print-reply --dest=" + name +
                              " " + path + " org.freedesktop.DBus.Peer.Ping >/dev/null 2>&1";
  return std::system(command.c_str()) == 0;
}

void RealBus::Freeze() {
  ASSERT_TRUE(daemon_.Running()) << "there is no bus to freeze";
  ::kill(-daemon_.Process(), SIGSTOP);
}

void RealBus::Thaw() { ::kill(-daemon_.Process(), SIGCONT); }

}  // namespace tavlo::test
