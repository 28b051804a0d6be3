#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>

#include "platform/curl/control_connection.h"
#include "platform/curl/data_port.h"
#include "platform/curl/ftp_limits.h"
#include "platform/curl/link.h"
#include "platform/curl/listing_text.h"
#include "platform/curl/received_file.h"
#include "platform/curl/tether.h"
#include "platform/curl/transfer.h"

namespace tavlo::platform {

/// One log-in at a server, from its beginning to its end, on one thread, which waits for whatever
/// takes time. Results below 0 are failures; those of a command that the server refuses leave the
/// log-in as it is, all others end it. Texts have no line break in them.
class FtpSession {
 public:
  FtpSession(const FtpLimits& limits, std::shared_ptr<Tether> tether);

  int Connect(const ftp::ServerAddress& server, const TrustStore& trust, const std::string& user,
              const std::string& password);
  int SetLocalFolder(const std::string& path);
  int ChangeDirectory(const std::string& directory);
  /// The names in the directory, each with CR LF behind it, `most` bytes of them.
  int ListNames(bool passive, std::size_t most, std::string& names);
  /// A line about one file, without its end; empty when nothing is known.
  int Describe(bool passive, const std::string& name, std::string& line);
  /// Asks for a file, and makes it where it lands once the server sends it.
  int BeginFile(bool passive, const std::string& name, const std::string& landing);
  /// Receives what was begun, to its end or that of the tether.
  void ReceiveFile(Transfer& transfer);
  void Delete(const std::string& name);
  /// Says good-bye and waits a moment for the server to have read it.
  void LogOut();

 private:
  /// A file or a listing that the server has begun to send.
  struct Sending {
    Link link;
    ServerReply reply;
    bool over = false;      ///< The server has said already that it has sent everything.
    bool cutShort = false;  ///< It ended in a way that anybody could have ended it.
  };
  struct File {
    Sending sending;
    ReceivedFile file;
    std::int64_t length = -1;  ///< Below 0 while it is not known.
  };
  using Sink = std::function<int(std::span<const char>)>;

  int LogIn(const std::string& user, const std::string& password);
  int Protect();
  int SetType(char type);
  /// Has the server begin to send; `refused` for what it refuses, with its answer in `sending`.
  int Begin(bool passive, const std::string& command, int refused, Sending& sending);
  /// Receives all of it, and the server's word that it was all.
  int Receive(Sending& sending, Deadline end, const Sink& sink);
  int ReadAll(Sending& sending, Deadline end, const Sink& sink);
  int AwaitLastWord(const Sending& sending);
  /// Receives no more, and goes on with the log-in if the server does.
  void GiveUp(Sending& sending);
  int List(bool passive, const std::string& command, ListingText& listing);
  std::optional<std::int64_t> AskLength(const std::string& name);
  int Land(const std::string& landing, File& file) const;
  int Lose(int fault);

  const FtpLimits limits_;
  const std::shared_ptr<Tether> tether_;
  ControlConnection control_;
  std::shared_ptr<LandingFolder> folder_;
  std::unique_ptr<File> file_;
  std::string described_;  ///< The file whose length was asked for last.
  std::int64_t describedLength_ = -1;
  char type_ = 0;
  bool knowsSize_ = true;  ///< Until the server says that it knows no such command.
  bool knowsFacts_ = true;
};

}  // namespace tavlo::platform
