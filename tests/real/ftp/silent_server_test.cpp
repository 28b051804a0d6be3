#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>

#include "ftp/ftp_bench.h"
#include "support/quick.h"

namespace tavlo::test {
namespace {

using std::chrono_literals::operator""s;

/// Long enough for a server that has something to say, on a busy machine.
constexpr ClientLimits kShort{.connection = 1s, .greeting = 1s, .stall = 1s};
/// Whoever waits for a server with these waits longer than any test.
constexpr ClientLimits kEndless{.connection = std::chrono::hours(1),
                                .greeting = std::chrono::hours(1),
                                .stall = std::chrono::hours(1)};

/// Says nothing any more from that command on.
std::function<bool(Conversation&, const Command&)> SilentFrom(const std::string& verb) {
  return [verb](Conversation& guest, const Command& command) {
    if (command.verb != verb) return false;
    guest.AwaitHangUp();
    return true;
  };
}

/// Sends as much of a file or a listing and then nothing any more.
std::function<bool(Conversation&, const Command&)> SilentIn(const std::string& verb,
                                                            const std::string& bytes) {
  return [verb, bytes](Conversation& guest, const Command& command) {
    if (command.verb != verb) return false;
    guest.Say("150 Here it comes.\r\n");
    if (guest.OpenData()) guest.PutData(bytes);
    guest.AwaitHangUp();
    return true;
  };
}

TEST(SilentServer, GreetingThatDoesNotComeEndsTheConnect) {
  const ScriptedServer server({.greet = [](Conversation& guest) { guest.AwaitHangUp(); }});
  FtpBench bench(kShort);
  bench.WordsFor(bench.Connect(server));
  EXPECT_TRUE(server.Heard().empty());
  bench.ExpectLost(server);
}

TEST(SilentServer, AnswerToALogInThatDoesNotComeEndsTheConnect) {
  for (const std::string verb : {"USER", "PASS"}) {
    SCOPED_TRACE(verb);
    const ScriptedServer server({.instead = SilentFrom(verb)});
    FtpBench bench(kShort);
    bench.WordsFor(bench.Connect(server));
    bench.ExpectLost(server);
  }
}

TEST(SilentServer, ListingThatStopsInTheMiddleIsAFailure) {
  const ScriptedServer server({.instead = SilentIn("NLST", "a.wav\r\nb.w")});
  FtpBench bench(kShort);
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_TRUE(bench.List().empty());
  bench.WordsFor(bench.Result);
  bench.ExpectLost(server);
}

TEST(SilentServer, TransferThatStopsInTheMiddleIsAFailureAndWhatCameStays) {
  const std::string part(1'000, 'p');
  const ScriptedServer server(
      {.instead = SilentIn("RETR", part), .files = {{"a.wav", std::string(2'000, 'p')}}});
  FtpBench bench(kShort);
  ASSERT_EQ(bench.Connect(server), 0);
  bench.WordsFor(bench.Get("a.wav"));
  EXPECT_EQ(bench.Client().fceGetInteger(ftp::FtpClient::kBytesMoved), 1'000);
  EXPECT_EQ(bench.Landed("a.wav"), part);
  bench.ExpectLost(server);
  EXPECT_EQ(bench.LandedNames(), std::vector<std::string>{"a.wav"});
}

TEST(SilentServer, TransferThatNeverBeginsIsAFailure) {
  const ScriptedServer server({.instead = SilentFrom("RETR"), .files = {{"a.wav", "a"}}});
  FtpBench bench(kShort);
  ASSERT_EQ(bench.Connect(server), 0);
  bench.WordsFor(bench.Get("a.wav"));
  bench.ExpectLost(server);
}

/// A server that answers one command only once the client's loop has turned on for a while.
class Patient {
 public:
  explicit Patient(std::string verb) : verb_(std::move(verb)) {}

  Manners Behaviour() {
    Manners manners;
    manners.files = {{"a.wav", "bytes"}};
    manners.greet = [this](Conversation& guest) {
      if (verb_ == "greeting") Stand(guest);
      guest.Say("220 Ready.\r\n");
    };
    manners.instead = [this](Conversation& guest, const Command& command) {
      if (command.verb == verb_) Stand(guest);
      return false;
    };
    return manners;
  }
  /// Called on each tick of the loop.
  void Tick(const LoopWatch& watch) {
    if (!stands_) return;
    if (!waits_) waits_ = watch.WaitsElsewhere();
    if (++ticks_ < kTicks) return;
    if (ticks_ == kTicks) WaitsMeanwhile = watch.WaitsElsewhere() - *waits_;
    gate_.Open();
  }

  static constexpr int kTicks = 100;
  /// How often the thread waited outside of its loop while it waited for the server; below 0 where
  /// its loop did not even sleep. Nothing when it did not wait for the server.
  std::optional<long> WaitsMeanwhile;

 private:
  void Stand(Conversation& guest) {
    stands_ = true;
    guest.Await(gate_);
  }

  const std::string verb_;
  const Gate gate_;
  std::atomic<bool> stands_ = false;
  int ticks_ = 0;
  std::optional<long> waits_;
};

class WaitTest : public testing::TestWithParam<const char*> {};

TEST_P(WaitTest, TurnsTheLoopUntilTheServerAnswers) {
  Patient patient(GetParam());
  const ScriptedServer server(patient.Behaviour());
  FtpBench bench(kEndless);
  bench.watch.OnTick([&] { patient.Tick(bench.watch); });
  ASSERT_EQ(bench.Connect(server.Address(), "typist", "slow-Ostrich7", "in"), 0);
  EXPECT_EQ(bench.List(), std::vector<std::string>{"a.wav"});
  EXPECT_EQ(bench.LengthOf("a.wav"), 5);
  EXPECT_EQ(bench.Get("a.wav"), 0);
  EXPECT_EQ(bench.Landed("a.wav"), "bytes");
  ASSERT_TRUE(patient.WaitsMeanwhile) << "the server was not waited for";
  // Each tick has its one sleep, and whoever waits elsewhere does so on each.
  EXPECT_LT(*patient.WaitsMeanwhile, Patient::kTicks / 2);
}

INSTANTIATE_TEST_SUITE_P(SilentServer, WaitTest,
                         testing::Values("greeting", "USER", "PASS", "CWD", "NLST", "SIZE", "RETR"),
                         [](const auto& verb) { return std::string(verb.param); });

TEST(SilentServer, NobodyWaitsForTheAnswerToAFarewell) {
  EXPECT_TRUE(IsQuick(kLongestHold, [] {
    const ScriptedServer server({.instead = SilentFrom("QUIT")});
    FtpBench bench(kEndless);
    ASSERT_EQ(bench.Connect(server), 0);
    const int wakenings = bench.loop.Wakenings;
    bench.Client().fceClose();
    EXPECT_EQ(bench.loop.Wakenings, wakenings) << "the loop was turned";
  })) << "it waits for the server";
}

TEST(SilentServer, NobodyWaitsForAFileToBeDeleted) {
  const Gate answer;
  Manners manners{.files = {{"a.wav", "a"}, {"b.wav", "b"}}};
  manners.instead = [&](Conversation& guest, const Command& command) {
    if (command.verb == "DELE") guest.Await(answer);
    return false;
  };
  const ScriptedServer server(manners);
  FtpBench bench(kEndless);
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_EQ(bench.Get("a.wav"), 0);
  bench.Client().fceDelFile("a.wav");
  ASSERT_TRUE(bench.Until([&] { return server.CountHeard("DELE a.wav") == 1; }));
  EXPECT_TRUE(server.Deleted().empty());
  answer.Open();
  EXPECT_EQ(bench.Get("b.wav"), 0);
  EXPECT_EQ(server.Deleted(), std::set<std::string>{"a.wav"});
}

TEST(SilentServer, CloseInTheMiddleOfAFileWaitsForNobodyAndLeavesWhatCame) {
  const std::string part(1'000, 'p');
  const ScriptedServer server(
      {.instead = SilentIn("RETR", part), .files = {{"a.wav", std::string(2'000, 'p')}}});
  FtpBench bench(kEndless);
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_GE(bench.Client().fceGetFile("a.wav", "a.wav"), 0);
  const auto moved = [&] { return bench.Client().fceGetInteger(ftp::FtpClient::kBytesMoved); };
  bench.Drive([&] { return moved() == 1'000; });
  ASSERT_EQ(moved(), 1'000);
  bench.Client().fceClose();
  EXPECT_LT(bench.Client().fceDriver(), 0);
  bench.ExpectLost(server);
  EXPECT_EQ(bench.Landed("a.wav"), part);
}

TEST(SilentServer, ReleaseInTheMiddleOfAFileLetsGoOfTheServer) {
  const ScriptedServer server(
      {.instead = SilentIn("RETR", "part"), .files = {{"a.wav", "part and the rest"}}});
  FtpBench bench(kEndless);
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_GE(bench.Client().fceGetFile("a.wav", "a.wav"), 0);
  bench.Client().fceRelease();
  EXPECT_TRUE(bench.Until([&] { return server.Gone() == 1; }));
}

}  // namespace
}  // namespace tavlo::test
