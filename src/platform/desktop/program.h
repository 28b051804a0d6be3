#pragma once

#include <memory>
#include <string>
#include <vector>

#include "pedals/serial_port.h"
#include "platform/curl/trust_store.h"
#include "platform/qt/qt_loop.h"
#include "shell/deck.h"

namespace tavlo::platform::desktop {

/// The whole program on its real parts: the desktop's windows, the disk under the user's home, the
/// sound card. What main runs; whoever measures or drives the real program makes one too. One for
/// each process.
class Program {
 public:
  /// The arguments are the toolkit's. A serial port that is given takes the place of the machine's,
  /// and a trust store that of the system's. The files, full paths, are opened with the deck.
  Program(int& argc, char** argv, std::unique_ptr<pedals::SerialPort> serialPort = nullptr,
          const TrustStore& trust = {}, const std::vector<std::string>& files = {});
  ~Program();
  Program(const Program&) = delete;

  /// Starts the deck and turns the loop until it ends; returns the exit status.
  int Run();

  shell::Deck& Deck();
  qt::QtLoop& Loop();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace tavlo::platform::desktop
