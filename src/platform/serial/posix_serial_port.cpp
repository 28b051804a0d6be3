#include "platform/serial/posix_serial_port.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <system_error>
#include <utility>

namespace tavlo::platform {
namespace {

constexpr const char* kNames[] = {"ttyS", "ttyUSB", "ttyACM"};
/// A port that went is looked for again at each so many reads.
constexpr int kReadsBetweenLooks = 20;

constexpr int kPedals = TIOCM_CD | TIOCM_DSR | TIOCM_CTS;

/// Makes the port one that carries lines and no bytes. Without CLOCAL the kernel would hang it up
/// as soon as carrier detect drops, which is the left pedal coming up.
bool Prepare(int handle) {
  termios mode{};
  if (::tcgetattr(handle, &mode) != 0) return false;
  ::cfmakeraw(&mode);
  mode.c_cflag |= CLOCAL;
  mode.c_cflag &= ~static_cast<tcflag_t>(CRTSCTS | HUPCL);
  if (::tcsetattr(handle, TCSANOW, &mode) != 0) return false;
  // Switch boxes take the current for the pedals from these two. A port without them may have a
  // box that feeds itself.
  const int feed = TIOCM_DTR | TIOCM_RTS;
  ::ioctl(handle, TIOCMBIS, &feed);
  return true;
}

}  // namespace

PosixSerialPort::PosixSerialPort(std::string deviceFolder, std::unique_ptr<ModemLines> lines)
    : deviceFolder_(std::move(deviceFolder)), lines_(std::move(lines)) {}

PosixSerialPort::~PosixSerialPort() { Release(); }

bool PosixSerialPort::Open(int portNumber) {
  Close();
  if (portNumber < 1) return false;
  portNumber_ = portNumber;
  if (OpenAny()) return true;
  portNumber_ = 0;
  return false;
}

void PosixSerialPort::Close() {
  Release();
  portNumber_ = 0;
}

bool PosixSerialPort::LetGo() {
  if (!held_ || handle_ < 0) return false;
  const std::optional<int> bits = lines_->Status(handle_);
  letGo_ = !bits || (*bits & kPedals) == 0;
  held_ = !letGo_;
  return letGo_;
}

std::optional<pedals::SerialLines> PosixSerialPort::ReadLines() {
  if (portNumber_ == 0) return {};
  if (std::exchange(letGo_, false)) {
    // They may be held again by now, of which nobody would tell.
    untold_ = true;
    return pedals::SerialLines{};
  }
  if (handle_ < 0 && (++readsSinceLost_ % kReadsBetweenLooks != 0 || !OpenAny())) return {};
  // A change from here on is news again.
  const bool waited = news_ && news_->Forget();
  const bool changed = waiter_ && waiter_->Forget();
  untold_ = waited && changed;
  const std::optional<int> bits = lines_->Status(handle_);
  if (!bits) {
    Release();
    return {};
  }
  held_ = (*bits & kPedals) != 0;
  return pedals::SerialLines{.CDHolding = (*bits & TIOCM_CD) != 0,
                             .DSRHolding = (*bits & TIOCM_DSR) != 0,
                             .CTSHolding = (*bits & TIOCM_CTS) != 0};
}

bool PosixSerialPort::OpenAny() {
  for (const char* name : kNames) {
    if (OpenPath(deviceFolder_ + "/" + name + std::to_string(portNumber_ - 1))) return true;
  }
  return false;
}

bool PosixSerialPort::OpenPath(const std::string& path) {
  handle_ = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (handle_ < 0) return false;
  // The machine lists ports that no hardware stands behind; those have no lines to read.
  if (!Prepare(handle_) || !lines_->Status(handle_)) {
    Release();
    return false;
  }
  path_ = path;
  readsSinceLost_ = 0;
  BeginToWait();
  return true;
}

void PosixSerialPort::BeginToWait() {
  try {
    waiter_ = std::make_unique<LineWaiter>(*lines_, handle_);
    news_ = std::make_unique<ReadableOnce>(waiter_->NewsDescriptor());
  } catch (const std::system_error&) {
    // The machine has no thread left, or the process no descriptor.
  }
}

bool PosixSerialPort::TellOnce(base::Listener& listener) {
  if (!news_ || !waiter_->Waits() || untold_) return false;
  news_->Tell(listener);
  return true;
}

void PosixSerialPort::Release() {
  news_.reset();
  waiter_.reset();
  if (handle_ >= 0) ::close(handle_);
  handle_ = -1;
  held_ = false;
  letGo_ = false;
  path_.clear();
}

}  // namespace tavlo::platform
