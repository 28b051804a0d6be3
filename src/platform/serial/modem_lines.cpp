#include "platform/serial/modem_lines.h"

#include <sys/ioctl.h>
#include <termios.h>

#include <cerrno>

namespace tavlo::platform {

std::optional<int> KernelModemLines::Status(int port) {
  int bits = 0;
  if (::ioctl(port, TIOCMGET, &bits) != 0) return {};
  return bits;
}

ModemLines::Wait KernelModemLines::AwaitChange(int port) {
  if (::ioctl(port, TIOCMIWAIT, TIOCM_CD | TIOCM_DSR | TIOCM_CTS) == 0) return Wait::Changed;
  return errno == EINTR ? Wait::Interrupted : Wait::Impossible;
}

}  // namespace tavlo::platform
