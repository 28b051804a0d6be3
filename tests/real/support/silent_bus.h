#pragma once

#include <string>
#include <vector>

namespace tavlo::test {

/// A message bus that hangs: its socket takes connections and never answers, until told to.
class SilentBus {
 public:
  /// The name is a path, or abstract with a zero byte in front. `waiting` connections at most stand
  /// before the door at a time, and one more.
  explicit SilentBus(const std::string& name, int waiting = 16);
  ~SilentBus();
  SilentBus(const SilentBus&) = delete;

  /// Connects a socket to it, without waiting; false when it is not taken.
  bool Connect(int socket) const;

  /// Waits for somebody's greeting, and answers with that. The connection stays open until
  /// `HangUp`.
  void Answer(const std::string& words);
  /// Waits for what the guest says next, and answers with that.
  void GoOn(const std::string& bytes);
  void HangUp();

 private:
  std::string name_;
  int door_;
  std::vector<int> guests_;
};

}  // namespace tavlo::test
