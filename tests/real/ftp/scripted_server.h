#pragma once

#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ftp/gate.h"
#include "ftp/sockets.h"

namespace tavlo::test {

class ScriptedServer;

/// One line of a guest.
struct Command {
  std::string verb;  ///< In capitals.
  std::string argument;
};

/// What a server does in one control connection, on a thread of its own.
class Conversation {
 public:
  Conversation(ScriptedServer& server, Socket control);

  /// Sends the bytes as they are; false when the guest is gone. So with all that follow.
  bool Say(std::string_view bytes);
  /// The next line of the guest; nothing when it is gone or the server ends.
  std::optional<Command> Hear();
  /// Stands still until the gate is open.
  bool Await(const Gate& gate);
  /// Stands still until the guest hangs up.
  void AwaitHangUp();

  /// The data connection that the guest has asked for last.
  bool OpenData();
  bool PutData(std::string_view bytes);
  void CloseData() { data_.Close(); }
  void BreakData() { data_.Break(); }
  /// A listing or a file from beginning to end, with the words before and behind it.
  void Transfer(std::string_view bytes);

  /// Ends the connections as a server does that is killed.
  void Die();
  /// Ends the control connection in order.
  void HangUp() { control_.Close(); }

  /// Answers one command as servers do.
  void Answer(const Command& command);

 private:
  /// False when the guest is gone or the server ends first.
  bool AwaitNews(int descriptor, short events);
  bool Send(const Socket& to, std::string_view bytes);
  void LookForStrays();
  void AnswerPassive(bool extended);
  void AnswerActive(const Command& command);
  void AnswerAboutFile(const Command& command);

  ScriptedServer& server_;
  Socket control_;
  Socket passive_;
  Socket elsewhere_;
  Socket data_;
  int activePort_ = 0;
  std::string unread_;
};

/// How a scripted server behaves; what is not said is as with any other.
struct Manners {
  std::string greeting = "220 Ready.\r\n";
  /// Instead of the greeting.
  std::function<void(Conversation&)> greet;
  /// Instead of the answer to the command; false leaves it to the server.
  std::function<bool(Conversation&, const Command&)> instead;
  std::map<std::string, std::string> files;
  /// What NLST sends; nothing stands for the names of the files.
  std::optional<std::string> listing;
  /// What a passive answer names as the address of the data port.
  std::string passiveHost = "127,0,0,1";
};

/// An FTP server on loopback that does what a test tells it, and keeps what it was told.
class ScriptedServer {
 public:
  explicit ScriptedServer(Manners manners = {});
  ~ScriptedServer();
  ScriptedServer(const ScriptedServer&) = delete;

  std::string Address() const { return "127.0.0.1:" + std::to_string(port_); }
  int Port() const { return port_; }

  /// The lines of all guests up to now, without their ends.
  std::vector<std::string> Heard() const;
  int CountHeard(std::string_view beginning) const;
  /// Names that were to be deleted.
  std::set<std::string> Deleted() const;
  int Guests() const;
  /// Who came to the address that a passive answer named, where that is not the server's.
  int Strays() const;
  /// Conversations that the guest or the server has ended.
  int Gone() const;

 private:
  friend class Conversation;

  void Run();
  void Converse(Conversation& conversation) const;
  void Keep(const std::string& line);

  const Manners manners_;
  Gate end_;
  mutable std::mutex mutex_;
  std::vector<std::string> heard_;
  std::set<std::string> deleted_;
  int guests_ = 0;
  int strays_ = 0;
  int gone_ = 0;
  Socket listening_ = Listen();
  const int port_ = PortOf(listening_);
  std::list<std::thread> conversations_;
  std::thread thread_;
};

}  // namespace tavlo::test
