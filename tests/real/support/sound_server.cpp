#include "support/sound_server.h"

#include <fcntl.h>
#include <sched.h>
#include <signal.h>
#include <stdlib.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstring>

#include "support/plain_loop.h"

namespace tavlo::test {
namespace {

using base::operator""ms;

constexpr int kStartTries = 2400;
/// The client's library takes its word over that of the program.
constexpr const char* kStreamLatency = "PULSE_LATENCY_MSEC";

bool Answers(const std::filesystem::path& socketPath) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, socketPath.c_str(), sizeof address.sun_path - 1);
  const int handle = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool connected =
      connect(handle, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
  close(handle);
  return connected;
}

void ReachServersAt(const std::filesystem::path& folder) {
  setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
  setenv("PULSE_RUNTIME_PATH", folder.c_str(), 1);
  setenv("PULSE_STATE_PATH", folder.c_str(), 1);
  setenv("PULSE_SERVER", ("unix:" + (folder / "native").string()).c_str(), 1);
}

}  // namespace

bool ChildProcess::Start(const std::vector<std::string>& command, int outputTo) {
  std::vector<char*> arguments;
  for (const std::string& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
  arguments.push_back(nullptr);
  process_ = fork();
  if (process_ != 0) return process_ > 0;
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int nowhere = open("/dev/null", O_RDWR);
  dup2(nowhere, STDIN_FILENO);
  dup2(outputTo >= 0 ? outputTo : nowhere, STDOUT_FILENO);
  dup2(nowhere, STDERR_FILENO);
  execvp(arguments[0], arguments.data());
  _exit(127);
}

void ChildProcess::Kill() {
  if (process_ <= 0) return;
  kill(process_, SIGKILL);
  waitpid(process_, nullptr, 0);
  process_ = -1;
}

SoundServer::SoundServer() {
  std::string name = (std::filesystem::temp_directory_path() / "deck-sound-XXXXXX").string();
  if (mkdtemp(name.data()) != nullptr) folder_ = name;
}

SoundServer::~SoundServer() {
  Kill();
  std::error_code ignored;
  std::filesystem::remove_all(folder_, ignored);
}

bool SoundServer::Start() {
  if (folder_.empty()) return false;
  ReachServersAt(folder_);
  const std::filesystem::path socketPath = folder_ / "native";
  std::filesystem::remove(socketPath);
  std::filesystem::remove(folder_ / "pid");
  // Without rewinds the silent device keeps pace from the start. With them it takes back what it
  // rendered ahead whenever a stream comes, and cuts the sound where it does.
  server_.Start({"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--realtime=no", "-L",
                 "module-null-sink sink_name=deck rate=48000 channels=2 norewinds=1", "-L",
                 "module-native-protocol-unix auth-anonymous=1 socket=" + socketPath.string()});
  for (int tries = 0; tries < kStartTries; ++tries) {
    if (Answers(socketPath)) return true;
    Sleep(50ms);
  }
  return false;
}

bool SoundServer::StartWithPrecedence() {
  const sched_param first{.sched_priority = 1};
  sched_setscheduler(0, SCHED_RR, &first);
  return Start();
}

void SoundServer::HideServers() { ReachServersAt("/nonexistent-deck-sound"); }

AmpleSupply::AmpleSupply() { setenv(kStreamLatency, "500", 1); }

AmpleSupply::~AmpleSupply() { unsetenv(kStreamLatency); }

}  // namespace tavlo::test
