#pragma once

#include <sys/types.h>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "ftp/certificates.h"
#include "ftp/tapped_door.h"
#include "support/sound_server.h"
#include "support/temporary_folder.h"

namespace tavlo::test {

/// A server that others wrote, on loopback, with a folder of files of its own. It ends with this
/// object, and with the test if that dies.
class FileServer {
 public:
  virtual ~FileServer() = default;

  /// What a profile would say of it, with the port.
  const std::string& Address() const { return address_; }
  /// Who may log in.
  std::string User;
  std::string Password = "slow-Ostrich7";
  const TemporaryFolder Files;

  /// Everything that guests have said to it for commands, as it went over the wire.
  std::string Heard() const { return door_->Heard(); }
  /// Kills it under whoever is its guest; nobody answers at its port any more.
  virtual void Kill() { door_->Shut(); }

 protected:
  void OpenDoor(const std::string& scheme, std::function<Socket()> open);

  std::unique_ptr<TappedDoor> door_;

 private:
  std::string address_;
};

/// How a server wants to be spoken to.
enum class Manner { Plain, Implicit, Explicit, ExplicitWithReuse };

/// A vsftpd for each guest. It is given one user by the name of "ftp" with a password of its own,
/// so nothing on the machine knows of him.
class Vsftpd : public FileServer {
 public:
  /// A paper is needed for any manner but the plain one.
  explicit Vsftpd(Manner manner, const std::string& paper = "");
  ~Vsftpd() override { Kill(); }
  void Kill() override;

 private:
  std::string Configuration(Manner manner, const std::string& paper) const;
  Socket Open();

  const TemporaryFolder own_;
  std::mutex mutex_;
  std::vector<pid_t> processes_;
};

/// A server on the Python library pyftpdlib.
class Pyftpdlib : public FileServer {
 public:
  /// The words are those behind the password in file_server.py.
  explicit Pyftpdlib(const std::vector<std::string>& words = {});
  ~Pyftpdlib() override { Kill(); }
  void Kill() override;

 private:
  int AwaitPort(int readEnd) const;

  ChildProcess process_;
};

}  // namespace tavlo::test
