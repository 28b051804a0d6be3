// The real program with a document selected, whose pedals a foot presses from outside:
//
//     bench_pedal               through its pedal library
//     bench_pedal serial PIPE   through a serial port, whose lines are the last byte of the pipe
//
// prints "ready" once the foot may press, and runs until it is ended.
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "driven_program.h"
#include "pedals/serial_port.h"

namespace {

using namespace tavlo;
using base::operator""ms;

/// A serial port without a wire. Each byte that comes through the pipe is the pedals that are held
/// from then on: 1 left, 2 center, 4 right.
class PipedPort : public pedals::SerialPort {
 public:
  explicit PipedPort(std::string path) : path_(std::move(path)) {}
  ~PipedPort() override { Close(); }
  PipedPort(const PipedPort&) = delete;

  bool Open(int /*portNumber*/) override {
    Close();
    pipe_ = ::open(path_.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    return pipe_ >= 0;
  }
  void Close() override {
    if (pipe_ >= 0) ::close(std::exchange(pipe_, -1));
  }
  std::optional<pedals::SerialLines> ReadLines() override {
    if (pipe_ < 0) return {};
    std::array<unsigned char, 64> bytes{};
    const auto came = ::read(pipe_, bytes.data(), bytes.size());
    if (came > 0) held_ = bytes[static_cast<std::size_t>(came) - 1];
    return pedals::SerialLines{.CDHolding = (held_ & 1) != 0,
                               .DSRHolding = (held_ & 2) != 0,
                               .CTSHolding = (held_ & 4) != 0};
  }

  bool TellOnce(base::Listener&) override { return false; }

 private:
  const std::string path_;
  int pipe_ = -1;
  unsigned char held_ = 0;
};

}  // namespace

int main(int argc, char** argv) {
  const bool serial = argc == 3 && std::string_view(argv[1]) == "serial";
  if (argc != 1 && !serial) {
    std::fprintf(stderr, "usage: bench_pedal [serial PIPE]\n");
    return 2;
  }
  bench::DrivenProgram driven(argc, argv, serial ? std::make_unique<PipedPort>(argv[2]) : nullptr);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    shell::Windows& windows = driven.program.Deck().windows;
    if (serial) {
      windows.configuration.txtSerialFootPedalComPort.Value = "1";
      windows.configuration.txtUSBorSerialFootPedal.Value = "S";
    }
    windows.main.listViewInQueue.RowClick(0);
    loop.Wait(400ms);
    windows.main.cmdImportCompleteSnipetStop.Press(forms::By::Hand);
    loop.Wait(400ms);
    std::printf("ready\n");
    std::fflush(stdout);
  };
  return driven.program.Run();
}
