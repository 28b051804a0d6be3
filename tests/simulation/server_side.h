#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "simulation/chance.h"
#include "simulation/conditions.h"
#include "simulation/desk.h"
#include "simulation/ledger.h"
#include "simulation/trace.h"

namespace tavlo::simulation {

/// The server and the people who use it: their files come to it at any time, are dictated anew and
/// taken away, and it fails in all the ways of a server. The ledger hears of what comes from it.
class ServerSide {
 public:
  ServerSide(Desk& desk, Ledger& ledger, const Conditions& conditions, Chance chance, Trace& trace);

  /// What the next dictation is like.
  std::function<std::string()> NewContents;

  /// One thing happens there.
  void Act();
  /// It does again all that a server should, and its names can be asked for.
  void Mend();
  /// The program has just fetched all that the server has, and deleted it there if `deletes`. The
  /// empty text, or the first file of which that is not true.
  std::string LeftThere(bool deletes) const;

 private:
  struct Event {
    const char* name;
    int weight;
    bool Conditions::*needs;
    void (ServerSide::*happen)();
  };
  static const std::vector<Event>& Events();

  void PutFile();
  void PutMany();
  void PutAnew();
  void TakeAway();
  void Fail();
  void Break();
  void MendServer();
  /// A file has gone out whole.
  void Sent(const std::string& name, const std::string& contents);
  std::string SomeFile();
  void Note(const std::string& what) { trace_.Note("  server: " + what); }

  Desk& desk_;
  Ledger& ledger_;
  Chance chance_;
  Trace& trace_;
  /// Bytes of a second that a file takes to the program on this day.
  std::size_t line_;
  std::vector<Event> possible_;
  /// How often a file has gone out, by its contents.
  std::map<std::string, int> sent_;
};

}  // namespace tavlo::simulation
