// The real program with a document selected, whose pedals a foot presses from outside:
//
//     bench_pedal               through its pedal library
//     bench_pedal serial PIPE   through a serial port, whose lines are the last byte of the pipe
//
// prints "ready" once the foot may press, and runs until it is ended.
#include <fcntl.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "driven_program.h"
#include "platform/serial/posix_serial_port.h"

namespace {

using namespace tavlo;

/// Modem lines without a wire. Each byte that comes through the pipe is the pedals that are held
/// from then on: 1 left, 2 center, 4 right.
class PipedLines : public platform::ModemLines {
 public:
  explicit PipedLines(const std::string& path) : pipe_(::open(path.c_str(), O_RDWR | O_CLOEXEC)) {}
  ~PipedLines() override { ::close(pipe_); }
  PipedLines(const PipedLines&) = delete;

  std::optional<int> Status(int /*port*/) override {
    const unsigned held = held_;
    return ((held & 1) != 0 ? TIOCM_CD : 0) | ((held & 2) != 0 ? TIOCM_DSR : 0) |
           ((held & 4) != 0 ? TIOCM_CTS : 0);
  }
  Wait AwaitChange(int /*port*/) override {
    std::array<unsigned char, 64> bytes{};
    const ssize_t came = ::read(pipe_, bytes.data(), bytes.size());
    if (came <= 0) return errno == EINTR ? Wait::Interrupted : Wait::Impossible;
    held_ = bytes[static_cast<std::size_t>(came) - 1];
    return Wait::Changed;
  }

 private:
  const int pipe_;
  std::atomic<unsigned> held_ = 0;
};

/// The program's own serial port on a terminal that has these lines. Nothing but the wire and the
/// kernel's driver is missing.
std::unique_ptr<pedals::SerialPort> PortWithLines(const std::string& pipe) {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (terminal < 0 || ::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0) return nullptr;
  const std::filesystem::path folder = pipe + ".ports";
  std::filesystem::remove_all(folder);
  std::filesystem::create_directory(folder);
  std::filesystem::create_symlink(::ptsname(terminal), folder / "ttyS0");
  return std::make_unique<platform::PosixSerialPort>(folder, std::make_unique<PipedLines>(pipe));
}

}  // namespace

int main(int argc, char** argv) {
  const bool serial = argc == 3 && std::string_view(argv[1]) == "serial";
  if (argc != 1 && !serial) {
    std::fprintf(stderr, "usage: bench_pedal [serial PIPE]\n");
    return 2;
  }
  bench::DrivenProgram driven(argc, argv, serial ? PortWithLines(argv[2]) : nullptr);
  driven.SkipSplash();
  driven.OnReady = [&] {
    forms::ConfigurationForm& config = driven.program.Deck().windows.configuration;
    if (serial) {
      config.txtSerialFootPedalComPort.Value = "1";
      config.txtUSBorSerialFootPedal.Value = "S";
    }
    driven.SelectFirstInSilence();
    std::printf("ready\n");
    std::fflush(stdout);
  };
  return driven.program.Run();
}
