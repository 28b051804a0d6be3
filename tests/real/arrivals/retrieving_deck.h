#pragma once

#include <sys/types.h>

#include <atomic>
#include <optional>
#include <string>

#include "arrivals/shared_memory.h"
#include "support/home.h"

namespace tavlo::test {

/// The real program in a process of its own, whose Refresh is pressed again and again. Several may
/// stand on one desktop, so its button is pressed from within. Ended with this object, and with the
/// test.
class RetrievingDeck {
 public:
  struct Setup {
    /// The folder in which the process stands.
    std::string current = {};
    /// Whoever the program runs as; nobody else than the test's user where there is none.
    std::optional<uid_t> user = {};
    /// Its folders are those of a server, which on a busy machine gets its turn late: what the deck
    /// then says of a folder without an answer is read and closed, and the next refresh goes on.
    bool onAShare = false;
  };

  RetrievingDeck(const Home& home, Setup setup);
  ~RetrievingDeck();
  RetrievingDeck(const RetrievingDeck&) = delete;

  /// Its first list stands, or its process has ended.
  bool AwaitFirstList();
  int Refreshes() const { return common_->refreshes; }
  /// Lets it end behind the refresh that is under way; its exit status, nothing when it never ends.
  /// A box that came meanwhile is a failure.
  std::optional<int> End();

 private:
  struct Common {
    std::atomic<int> refreshes = 0;
    std::atomic<bool> over = false;
  };

  [[noreturn]] void Serve(const Home& home, const Setup& setup) const;

  const SharedMemory<Common> common_;
  pid_t process_;
};

}  // namespace tavlo::test
