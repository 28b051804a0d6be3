#include "support/mirror_mount.h"

#include <fcntl.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <tuple>

namespace tavlo::test {
namespace {

constexpr std::chrono::milliseconds kLook{10};
constexpr int kMostLooks = 3000;

/// Asked of the kernel's list, since a call on the mount may have no answer.
bool IsMounted(const std::string& path) {
  std::ostringstream mounts;
  mounts << std::ifstream("/proc/self/mountinfo").rdbuf();
  return mounts.str().find(" " + path + " ") != std::string::npos;
}

}  // namespace

MirrorMount::MirrorMount(const std::string& daemon) {
  std::filesystem::create_directory(Path());
  std::filesystem::create_directory(Behind());
  const std::string folder = Behind();
  const std::string mount = Path();
  daemon_ = ::fork();
  if (daemon_ == 0) {
    ::execl(daemon.c_str(), daemon.c_str(), folder.c_str(), mount.c_str(), nullptr);
    ::_exit(127);
  }
  stands_ = daemon_ > 0 && AwaitMount();
}

bool MirrorMount::AwaitMount() const {
  for (int look = 0; look < kMostLooks; ++look) {
    if (IsMounted(Path())) return true;
    siginfo_t ended{};
    ::waitid(P_PID, static_cast<id_t>(daemon_), &ended, WEXITED | WNOHANG | WNOWAIT);
    if (ended.si_pid == daemon_) return false;
    std::this_thread::sleep_for(kLook);
  }
  return false;
}

MirrorMount::~MirrorMount() {
  if (daemon_ > 0) Kill();
  if (!IsMounted(Path())) return;
  if (::umount2(Path().c_str(), MNT_DETACH) == 0) return;
  std::ignore = std::system(("fusermount3 -u -z " + Path()).c_str());
}

void MirrorMount::Stop() const {
  ::kill(daemon_, SIGSTOP);
  siginfo_t stopped{};
  ::waitid(P_PID, static_cast<id_t>(daemon_), &stopped, WSTOPPED);
}

void MirrorMount::GoOn() const { ::kill(daemon_, SIGCONT); }

void MirrorMount::Kill() {
  ::kill(daemon_, SIGKILL);
  ::waitpid(daemon_, nullptr, 0);
  daemon_ = -1;
}

}  // namespace tavlo::test
