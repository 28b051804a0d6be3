#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "keys/keys_bench.h"

namespace tavlo::test {
namespace {

using remote::AfarAction;

/// The keys of a deck in a process of its own, which a shell may stop.
class OtherDeck {
 public:
  OtherDeck() : process_(::fork()) {
    if (process_ == 0) Run();
  }
  ~OtherDeck() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }
  OtherDeck(const OtherDeck&) = delete;

  /// As Ctrl+Z in its terminal does; returns when it stands still.
  bool Stop() {
    int status = 0;
    ::kill(process_, SIGTSTP);
    return ::waitpid(process_, &status, WUNTRACED) == process_ && WIFSTOPPED(status);
  }
  void GoOn() { ::kill(process_, SIGCONT); }

 private:
  [[noreturn]] static void Run() {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    // A job of its own, or there is nobody who could have it go on, and it is not stopped.
    ::setpgid(0, 0);
    PlainLoop loop;
    platform::GrabbedKeys keys(loop, std::getenv("DISPLAY"));
    keys.Wish({{AfarAction::PlayHeld, "F4"}});
    while (true) loop.Wait(std::chrono::hours(1));
  }

  const pid_t process_;
};

struct StoppedDeck : KeysBench {
  /// Presses the key; a look that grabs it would take it from a deck that is about to.
  bool DeckHasItsKey() {
    Type({keys::kF4});
    return OtherTook().empty();
  }
  bool OtherHasDecksKey() {
    Type({keys::kF4});
    return OtherTook() == "+F4 -F4";
  }
};

TEST_F(StoppedDeck, LeavesTheKeyboardToOthersAndHasItsKeysAgainWhenItGoesOn) {
  OtherDeck deck;
  for (int round = 0; round < 3; ++round) {
    ASSERT_TRUE(Until([&] { return DeckHasItsKey(); }));
    ASSERT_TRUE(deck.Stop());
    // The display may take a key for a deck's that has just gone.
    EXPECT_TRUE(Until([&] { return OtherHasDecksKey(); }));
    Type({'a'});
    EXPECT_EQ(OtherTook(), "+a -a");
    deck.GoOn();
  }
  EXPECT_TRUE(Until([&] { return DeckHasItsKey(); }));
}

TEST_F(StoppedDeck, LetsGoOfTheKeyboardThatItHasForAHeldKey) {
  OtherDeck deck;
  ASSERT_TRUE(Until([&] { return DeckHasItsKey(); }));
  Hold(keys::kF4);
  ASSERT_TRUE(Until([&] {
    const bool locked = other->Lock();
    if (locked) other->Unlock();
    return !locked;
  })) << "the deck has not taken the keyboard";
  ASSERT_TRUE(deck.Stop());
  EXPECT_TRUE(Until([&] { return other->Lock(); }));
  LetGo(keys::kF4);
  other->Unlock();
  Type({'b'});
  EXPECT_TRUE(OtherTook().ends_with("+b -b"));
}

}  // namespace
}  // namespace tavlo::test
