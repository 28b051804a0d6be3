#pragma once

#include <memory>
#include <string>
#include <vector>

namespace tavlo::test {

/// The session manager of a desktop, which the next program of this process finds. Nothing goes on
/// in it but inside the calls.
class SessionManager {
 public:
  SessionManager();
  ~SessionManager();
  SessionManager(const SessionManager&) = delete;

  /// Lets the program register and asks it for its state alone, as a manager asks each newcomer;
  /// false when no answer comes.
  bool Welcome();
  /// Asks the program to save itself because the session ends.
  void BeginLogout();
  /// How the program has said it is to be started in the next session, word by word.
  std::vector<std::string> RestartCommand();

 private:
  class Desk;
  std::unique_ptr<Desk> desk_;
};

}  // namespace tavlo::test
