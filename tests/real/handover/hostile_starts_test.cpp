#include <sys/wait.h>
#include <unistd.h>

#include <memory>

#include "handover/handover_bench.h"
#include "support/effort.h"
#include "support/few_handles.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
using platform::SocketHandle;
using platform::desktop::kMostBytesOfMessage;
using platform::desktop::ListenUnder;
using platform::desktop::MessageOf;

/// Processes that come to the door of a deck and are no starts, or bad ones.
struct HostileStarts : HandoverBench {
  /// The deck works as ever.
  void ExpectThatItTakesFiles() {
    EXPECT_TRUE(HandOver({"/good"}));
    EXPECT_TRUE(Comes([this] { return !came.empty(); }));
    EXPECT_EQ(came, std::vector<Paths>{{"/good"}});
  }
  /// Somebody else does it in a process of his own; false when it went wrong. The loop turns.
  bool AnotherUserDoes(const std::function<bool()>& call) {
    constexpr uid_t kSomebodyElse = 12'345;
    const pid_t process = ::fork();
    if (process == 0) ::_exit(::setuid(kSomebodyElse) == 0 && call() ? 0 : 1);
    int status = -1;
    EXPECT_TRUE(Comes([&] { return ::waitpid(process, &status, WNOHANG) == process; }));
    return status == 0;
  }
  /// In a process that has no loop.
  static bool Until(const std::function<bool()>& condition) {
    for (int looks = 0; looks < 60'000; ++looks) {
      if (condition()) return true;
      ::usleep(2000);
    }
    return false;
  }
};

TEST_F(HostileStarts, NonsenseIsAnsweredByNothing) {
  Listen();
  const std::string good = MessageOf({"/a"});
  for (const std::string& bytes :
       {std::string(), std::string("\0\0\0\0", 4), std::string("GET / HTTP/1.1\r\n\r\n"),
        std::string(100'000, '\xFF'), good.substr(0, good.size() - 1), "x" + good,
        good + std::string(1, '\0')}) {
    const RawStart start(name);
    ASSERT_TRUE(start.Connected());
    EXPECT_EQ(start.Send(bytes), static_cast<ssize_t>(bytes.size()));
    start.EndSending();
    EXPECT_TRUE(Comes([&] { return !start.Answer().empty(); }));
    EXPECT_EQ(start.Answer(), "end");
  }
  ExpectThatItTakesFiles();
}

TEST_F(HostileStarts, MessageWithoutAnEndIsCutOffAtItsLimit) {
  Listen();
  const RawStart start(name);
  const std::string piece(100'000, 'x');
  std::size_t sent = 0;
  EXPECT_TRUE(Comes([&] {
    ssize_t taken = 0;
    while ((taken = start.Send(piece)) > 0) sent += static_cast<std::size_t>(taken);
    return errno == EPIPE;
  }));
  EXPECT_GT(sent, kMostBytesOfMessage - piece.size());
  EXPECT_LT(sent, kMostBytesOfMessage + 2'000'000);
  ExpectThatItTakesFiles();
}

TEST_F(HostileStarts, ThoseThatKeepSilentAreSentAwayAndOthersWaitUntilThen) {
  patienceOfDeck = 10ms;
  Listen();
  std::vector<std::unique_ptr<RawStart>> silent;
  for (int i = 0; i < 10; ++i) silent.push_back(std::make_unique<RawStart>(name));
  ExpectThatItTakesFiles();
  EXPECT_TRUE(Comes([&] { return silent.front()->Answer() == "end"; }));
}

TEST_F(HostileStarts, OneThatGoesAwayAtOnceIsForgotten) {
  Listen();
  for (int i = 0; i < 30; ++i) {
    RawStart{name};
    loop.Wait(0ms);
  }
  ExpectThatItTakesFiles();
}

TEST_F(HostileStarts, OneThatHearsNoAnswerHasHandedOverNothing) {
  Listen();
  {
    const RawStart start(name);
    start.Send(MessageOf({"/bad"}));
    start.EndSending();
  }
  ExpectThatItTakesFiles();
}

TEST_F(HostileStarts, DeckWithoutADescriptorLeftRestsAndLetsThemInLater) {
  Listen();
  const RawStart start(name);
  start.Send(MessageOf({"/good"}));
  start.EndSending();
  {
    const FewHandles none(0);
    const Effort effort;
    loop.Wait(3s);
    EXPECT_EQ(start.Answer(), "");
    EXPECT_LT(effort.Computed(), 1s) << "who stands before the door does not keep it awake";
  }
  EXPECT_TRUE(Comes([&] { return start.Answer() == "+"; }));
  EXPECT_TRUE(Comes([this] { return !came.empty(); }));
}

TEST_F(HostileStarts, AnotherUserIsNotListenedTo) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be somebody else";
  Listen();
  EXPECT_TRUE(AnotherUserDoes([this] {
    const RawStart start(name);
    start.Send(MessageOf({"/bad"}));
    start.EndSending();
    return Until([&] { return !start.Answer().empty(); }) && start.Answer() == "end";
  }));
  ExpectThatItTakesFiles();
}

TEST_F(HostileStarts, AnotherUserWhoHasTheNameOfADeckIsToldNothing) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can be somebody else";
  bool handedOver = true;
  base::Timer start(loop, "start", 10ms);
  start.OnTick = [&] {
    start.Stop();
    handedOver = HandOver({"/secret"});
  };
  start.Start();
  EXPECT_TRUE(AnotherUserDoes([this] {
    const SocketHandle door = ListenUnder(name);
    SocketHandle guest;
    const auto accept = [&] { return SocketHandle(::accept(door.Get(), nullptr, nullptr)); };
    if (!door || !Until([&] { return static_cast<bool>(guest = accept()); })) return false;
    char byte = 0;
    return ::recv(guest.Get(), &byte, 1, 0) == 0;
  }));
  EXPECT_FALSE(handedOver);
}

}  // namespace
}  // namespace tavlo::test
