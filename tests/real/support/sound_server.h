#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tavlo::test {

/// A program that runs beside the test and ends with it.
class ChildProcess {
 public:
  ChildProcess() = default;
  ~ChildProcess() { Kill(); }
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  /// Starts the program of that name from the path; its standard output goes to `outputTo` when
  /// that is a file descriptor.
  bool Start(const std::vector<std::string>& command, int outputTo = -1);
  /// Ends it at once, without a farewell.
  void Kill();
  bool Running() const { return process_ > 0; }
  pid_t Process() const { return process_; }

 private:
  pid_t process_ = -1;
};

/// A PulseAudio server of our own with one silent device, "deck", whose monitor can be recorded.
/// This process and its children reach it, and no other server, while it lives and after.
class SoundServer {
 public:
  SoundServer();
  ~SoundServer();

  /// False when the server does not come up.
  bool Start();
  /// The same for sound that is recorded, which must not stutter because other programs are busy:
  /// where the machine allows it, this thread and all that it starts go before them from here on.
  /// No test may do so that does not listen, for whoever goes before others can also starve them.
  bool StartWithPrecedence();
  /// Kills it under whoever plays.
  void Kill() { server_.Kill(); }

  /// Points the sound libraries at a server that does not exist.
  static void HideServers();

 private:
  std::filesystem::path folder_;
  ChildProcess server_;
};

/// While it lives, a stream that is opened is rendered so far ahead that a machine which is busy
/// elsewhere makes no gap. For tests of what is heard; how soon it is heard is not true meanwhile.
class AmpleSupply {
 public:
  AmpleSupply();
  ~AmpleSupply();
  AmpleSupply(const AmpleSupply&) = delete;
};

}  // namespace tavlo::test
