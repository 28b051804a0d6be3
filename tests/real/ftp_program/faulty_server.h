#pragma once

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "ftp/scripted_server.h"

namespace tavlo::test {

/// Where a server stands still until it is told to end.
struct Fault {
  /// The command at which it stands still; empty for the greeting.
  std::string verb;
  /// The file that the command must name; any, when this is empty.
  std::string argument = {};
  /// What it sends of a listing or a file before that.
  std::string sent = {};
  /// It has answered the command, is idle, and ends in order. Else it is killed.
  bool isIdle = false;
};

/// A server on loopback that serves these files and, once for each time that it is told to, stands
/// still at a certain moment and then ends that connection. Nobody else notices.
class FaultyServer {
 public:
  explicit FaultyServer(std::map<std::string, std::string> files);
  ~FaultyServer() { End(); }
  FaultyServer(const FaultyServer&) = delete;

  /// The next guest that comes to that moment meets it.
  void Prepare(const Fault& fault);
  /// From here on it lists its files only for whom it is to fail.
  void HideFiles() { hides_ = true; }
  /// Whether one has come there.
  bool StandsStill() const;
  void End();

  std::string Address() const { return server_.Address(); }
  const ScriptedServer& Served() const { return server_; }

 private:
  struct Moment {
    Fault fault;
    Gate end;
    std::atomic<bool> reached = false;
  };

  void Greet(Conversation& guest);
  bool Answer(Conversation& guest, const Command& command);
  bool IsPrepared() const;
  std::shared_ptr<Moment> Take(const std::string& verb, const std::string& argument);
  static void StandStill(Conversation& guest, Moment& moment);

  std::atomic<bool> hides_ = false;
  mutable std::mutex mutex_;
  std::shared_ptr<Moment> moment_;
  ScriptedServer server_;
};

}  // namespace tavlo::test
