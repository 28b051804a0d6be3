#include <gtest/gtest.h>

#include <functional>
#include <ostream>
#include <string>

#include "ftp/ftp_bench.h"
#include "support/memory_peak.h"

namespace tavlo::test {
namespace {

using std::chrono_literals::operator""s;

/// What the client may take for any server, in megabytes.
constexpr long kMostMemory = 16;

/// Says the same again and again until the guest hangs up.
void SayWithoutEnd(Conversation& guest, const std::string& words) {
  std::string many;
  while (many.size() < 16'000) many += words;
  while (guest.Say(many)) {
  }
}

/// Sends a listing or a file of so many bytes, made of lines.
std::function<bool(Conversation&, const Command&)> Sends(const std::string& verb,
                                                         std::size_t bytes) {
  return [verb, bytes](Conversation& guest, const Command& command) {
    if (command.verb != verb) return false;
    std::string lines;
    while (lines.size() < 64'000) lines += "document of a long listing.wav\r\n";
    guest.Say("150 Here it comes.\r\n");
    bool taken = guest.OpenData();
    for (std::size_t sent = 0; sent < bytes && taken; sent += lines.size()) {
      taken = guest.PutData(lines);
    }
    guest.CloseData();
    guest.Say(taken ? "226 That was it.\r\n" : "426 Nobody took it.\r\n");
    return true;
  };
}

TEST(HostileServer, ListingOfFiftyMegabytesIsReadToItsMostWithoutGrowth) {
  const ScriptedServer server({.instead = Sends("NLST", 50'000'000)});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  ForgetPeak();
  const long before = PeakMegabytes();
  EXPECT_EQ(bench.List().size(), kListing / 32);
  EXPECT_LT(PeakMegabytes() - before, kMostMemory);
  EXPECT_EQ(bench.Result, static_cast<int>(kListing));
  EXPECT_EQ(bench.Listing.size(), kListing);
  EXPECT_EQ(bench.Client().fceSetServerDir("in"), 0) << "the channel does not go on behind it";
}

TEST(HostileServer, LineAboutOneFileIsReadToItsMostWithoutGrowth) {
  Manners manners;
  manners.instead = [sends = Sends("LIST", 5'000'000)](Conversation& guest,
                                                       const Command& command) {
    if (command.verb == "SIZE" || command.verb == "MLST") return guest.Say("500 What?\r\n");
    return sends(guest, command);
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  std::string buffer = "a.wav" + std::string(1, '\0');
  buffer.resize(kLine, ' ');
  ForgetPeak();
  const long before = PeakMegabytes();
  EXPECT_LE(bench.Client().fceGetList(ftp::FtpClient::kOneFile, buffer, kLine),
            static_cast<int>(kLine));
  EXPECT_LT(PeakMegabytes() - before, kMostMemory);
  EXPECT_LE(buffer.size(), kLine);
}

struct Endless {
  const char* name;
  const char* verb;
  const char* words;
};

std::ostream& operator<<(std::ostream& out, const Endless& endless) { return out << endless.name; }

class EndlessAnswerTest : public testing::TestWithParam<Endless> {};

TEST_P(EndlessAnswerTest, IsGivenUpWithoutGrowth) {
  const auto [name, verb, words] = GetParam();
  Manners manners;
  manners.files = {{"a.wav", "a"}};
  manners.instead = [verb = std::string(verb), words = std::string(words)](Conversation& guest,
                                                                           const Command& command) {
    if (command.verb != verb) return false;
    SayWithoutEnd(guest, words);
    return true;
  };
  if (std::string(verb) == "greeting") {
    manners.greet = [words = std::string(words)](Conversation& guest) {
      SayWithoutEnd(guest, words);
    };
  }
  const ScriptedServer server(manners);
  FtpBench bench({.greeting = 1s, .stall = 1s});
  ForgetPeak();
  const long before = PeakMegabytes();
  const int connected = bench.Connect(server);
  if (connected == 0) {
    EXPECT_TRUE(bench.List().empty() || bench.Get("a.wav") < 0);
  } else {
    bench.WordsFor(connected);
  }
  EXPECT_LT(PeakMegabytes() - before, kMostMemory);
  bench.Client().fceClose();
  EXPECT_TRUE(bench.Until([&] { return server.Gone() == server.Guests(); }));
}

INSTANTIATE_TEST_SUITE_P(HostileServer, EndlessAnswerTest,
                         testing::Values(Endless{"GreetingOfLines", "greeting", "220-Welcome\r\n"},
                                         Endless{"GreetingOfOneLine", "greeting",
                                                 "220 Welcome and welcome and "},
                                         Endless{"GreetingOfEmptyLines", "greeting", "\r\n"},
                                         Endless{"LogInOfLines", "PASS", "230-More\r\n"},
                                         Endless{"LogInOfOneLine", "PASS", "x"},
                                         Endless{"LogInOfHalfwayAnswers", "PASS", "100 Wait\r\n"},
                                         Endless{"PassiveOfLines", "PASV", "227-More\r\n"},
                                         Endless{"ListingOfOneLine", "NLST", "150 and "},
                                         Endless{"TransferOfLines", "RETR", "150-More\r\n"}),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(HostileServer, FileThatGoesOnBehindItsLengthIsNotReceivedWithoutEnd) {
  Manners manners;
  manners.files = {{"a.wav", std::string(1'000, 'a')}};
  manners.instead = [](Conversation& guest, const Command& command) {
    if (command.verb != "RETR") return false;
    guest.Say("150 Here it comes.\r\n");
    // Far more than a length is wrong by, and less than fills a disk.
    const std::string more(64'000, 'b');
    bool taken = guest.OpenData();
    for (int i = 0; i < 1'000 && taken; ++i) taken = guest.PutData(more);
    guest.AwaitHangUp();
    return true;
  };
  const ScriptedServer server(manners);
  FtpBench bench({.stall = 1s});
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_EQ(bench.LengthOf("a.wav"), 1'000);
  bench.WordsFor(bench.Get("a.wav"));
  EXPECT_LE(bench.Landed("a.wav").size(), 1'000U);
}

TEST(HostileServer, WordsForItsAnswersAreTheClientsOwn) {
  for (const std::string refusal : {"530 \x1b[2J\x07 slow-Ostrich7 is wrong\r\n",
                                    "530-slow-Ostrich7\r\n530 slow-Ostrich7\r\n"}) {
    const ScriptedServer server({.instead = [&](Conversation& guest, const Command& command) {
      return command.verb == "PASS" && guest.Say(refusal);
    }});
    FtpBench bench;
    bench.WordsFor(bench.Connect(server));
  }
  const std::string longWords = "530 " + std::string(3'000, 'w') + "\r\n";
  const ScriptedServer server({.instead = [&](Conversation& guest, const Command& command) {
    return command.verb == "USER" && guest.Say(longWords);
  }});
  FtpBench bench;
  bench.WordsFor(bench.Connect(server));
}

TEST(HostileServer, LengthThatIsNoneIsNoneAndTheFileComesAllTheSame) {
  for (const std::string answer :
       {"213 -5\r\n", "213 99999999999999999999\r\n", "213\r\n", "213 0x10\r\n", "550 No\r\n"}) {
    SCOPED_TRACE(answer);
    Manners manners{.files = {{"a.wav", "bytes"}}};
    manners.instead = [&](Conversation& guest, const Command& command) {
      if (command.verb == "LIST") return guest.Say("500 What?\r\n");
      return command.verb == "SIZE" && guest.Say(answer);
    };
    const ScriptedServer server(manners);
    FtpBench bench;
    ASSERT_EQ(bench.Connect(server), 0);
    EXPECT_LE(bench.LengthOf("a.wav"), 0);
    EXPECT_EQ(bench.Get("a.wav"), 0);
    EXPECT_EQ(bench.Landed("a.wav"), "bytes");
  }
}

}  // namespace
}  // namespace tavlo::test
