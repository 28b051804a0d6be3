#include "ftp/file_servers.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "support/patience.h"

namespace tavlo::test {
namespace {

std::string SchemeOf(Manner manner) {
  if (manner == Manner::Plain) return "";
  return manner == Manner::Implicit ? "ftps://" : "ftpes://";
}

/// Becomes a vsftpd whose guest is at the other end of the socket.
[[noreturn]] void BecomeVsftpd(const Socket& guest, const char* configuration) {
  ::prctl(PR_SET_PDEATHSIG, SIGKILL);
  ::setpgid(0, 0);
  for (int handle = 0; handle < 3; ++handle) ::dup2(guest.Handle(), handle);
  ::execl("/usr/sbin/vsftpd", "vsftpd", configuration, nullptr);
  ::_exit(127);
}

}  // namespace

void FileServer::OpenDoor(const std::string& scheme, std::function<Socket()> open) {
  door_ = std::make_unique<TappedDoor>(std::move(open));
  address_ = scheme + "127.0.0.1:" + std::to_string(door_->Port());
}

Vsftpd::Vsftpd(Manner manner, const std::string& paper) {
  User = "ftp";
  std::filesystem::create_directory(own_ / "empty");
  own_.Write("passwords", Password + "\n");
  own_.Write("vsftpd.conf", Configuration(manner, paper));
  OpenDoor(SchemeOf(manner), [this] { return Open(); });
}

std::string Vsftpd::Configuration(Manner manner, const std::string& paper) const {
  // The account of guests is used, which has no entry in any list of the machine; its passwords
  // are those of a file. Whoever runs the test serves, so nobody else needs to be there.
  std::string lines =
      "listen=NO\nlisten_ipv6=NO\nlocal_enable=NO\nanonymous_enable=YES\n"
      "run_as_launching_user=YES\nseccomp_sandbox=NO\nisolate=NO\nisolate_network=NO\n"
      "write_enable=YES\nanon_other_write_enable=YES\nanon_world_readable_only=NO\n"
      "hide_ids=NO\nsecure_email_list_enable=YES\ndelay_failed_login=0\n";
  lines += "ftp_username=" + std::string(::getpwuid(::getuid())->pw_name) + "\n";
  lines += "anon_root=" + Files.Path() + "\nsecure_chroot_dir=" + own_ / "empty" + "\n";
  lines += "email_password_file=" + own_ / "passwords" + "\n";
  if (manner == Manner::Plain) return lines;
  lines +=
      "ssl_enable=YES\nallow_anon_ssl=YES\nforce_anon_logins_ssl=YES\n"
      "force_anon_data_ssl=YES\nssl_ciphers=HIGH\nrsa_cert_file=" +
      paper + "\n";
  lines += std::string("implicit_ssl=") + (manner == Manner::Implicit ? "YES\n" : "NO\n");
  lines +=
      std::string("require_ssl_reuse=") + (manner == Manner::ExplicitWithReuse ? "YES\n" : "NO\n");
  return lines;
}

Socket Vsftpd::Open() {
  const Socket listening = Listen();
  Socket outside = ConnectTo("127.0.0.1", PortOf(listening));
  const Socket inside = Accept(listening);
  const std::string configuration = own_ / "vsftpd.conf";
  const pid_t process = ::fork();
  if (process == 0) BecomeVsftpd(inside, configuration.c_str());
  // Whoever of the two comes first makes the group, so it is there when somebody kills it.
  ::setpgid(process, process);
  const std::lock_guard lock(mutex_);
  processes_.push_back(process);
  return outside;
}

void Vsftpd::Kill() {
  FileServer::Kill();
  for (const pid_t process : processes_) {
    ::kill(-process, SIGKILL);
    ::waitpid(process, nullptr, 0);
  }
  processes_.clear();
}

Pyftpdlib::Pyftpdlib(const std::vector<std::string>& words) {
  User = "typist";
  std::vector<std::string> command{"/usr/bin/python3", TAVLO_FILE_SERVER, Files.Path(), User,
                                   Password};
  command.insert(command.end(), words.begin(), words.end());
  int ends[2];
  if (::pipe2(ends, O_CLOEXEC) != 0) std::abort();
  process_.Start(command, ends[1]);
  ::close(ends[1]);
  const int port = AwaitPort(ends[0]);
  ::close(ends[0]);
  EXPECT_GT(port, 0) << "the server does not come up";
  const bool protects = std::ranges::find(words, "--paper") != words.end();
  OpenDoor(protects ? "ftpes://" : "", [port] { return ConnectTo("127.0.0.1", port); });
}

int Pyftpdlib::AwaitPort(int readEnd) const {
  std::string line;
  char character = 0;
  pollfd news{.fd = readEnd, .events = POLLIN, .revents = 0};
  const auto limit = std::chrono::duration_cast<std::chrono::milliseconds>(kPatience);
  while (::poll(&news, 1, static_cast<int>(limit.count())) > 0 &&
         ::read(readEnd, &character, 1) == 1 && character != '\n') {
    line += character;
  }
  return std::atoi(line.c_str());
}

void Pyftpdlib::Kill() {
  process_.Kill();
  FileServer::Kill();
}

}  // namespace tavlo::test
