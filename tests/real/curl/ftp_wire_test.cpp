#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "ftp/ftp_bench.h"
#include "ftp/scripted_server.h"
#include "ftp/sockets.h"

namespace tavlo::test {
namespace {

using ftp::FtpClient;
using Lines = std::vector<std::string>;

/// What a server heard behind the log-in.
Lines HeardBehindLogIn(const ScriptedServer& server) {
  Lines lines = server.Heard();
  return lines.size() > 2 ? Lines(lines.begin() + 2, lines.end()) : Lines();
}

/// Has a server know no such commands.
Manners Without(const std::vector<std::string>& verbs) {
  Manners manners{.files = {{"a.wav", std::string(4711, 'a')}, {"b.wav", "b"}}};
  manners.instead = [verbs](Conversation& guest, const Command& command) {
    for (const std::string& verb : verbs) {
      if (command.verb == verb) return guest.Say("502 I do not do that.\r\n");
    }
    return false;
  };
  return manners;
}

TEST(FtpWire, LogInIsUserAndPasswordAndNothingElse) {
  const ScriptedServer server;
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(server.Heard(), (Lines{"USER typist", "PASS slow-Ostrich7"}));
}

TEST(FtpWire, ServerThatWantsNoPasswordIsNotToldOne) {
  Manners manners;
  manners.instead = [](Conversation& guest, const Command& command) {
    return command.verb == "USER" && guest.Say("230 Come in.\r\n");
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(server.CountHeard("PASS"), 0);
}

TEST(FtpWire, NameTravelsByteForByte) {
  const Lines names = {"%41%20",   "a#b?c", ";type=a", "/abs", "~",  " blanks ", "\xff\xfe",
                       "a\tb\x1b", "-la",   "*",       "..",   "a/", "a\\b",     "\"q\""};
  Manners manners;
  for (const std::string& name : names) manners.files[name] = "bytes of " + name;
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  int landed = 0;
  for (const std::string& name : names) {
    const std::string landing = std::to_string(++landed);
    EXPECT_EQ(bench.Get(name, landing), 0) << name;
    EXPECT_EQ(bench.Landed(landing), "bytes of " + name);
    EXPECT_EQ(server.CountHeard("RETR " + name), 1) << name;
  }
}

TEST(FtpWire, FileIsAskedForItsLengthInBinaryAndThenForItsBytes) {
  const ScriptedServer server(Without({}));
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  bench.List();
  EXPECT_EQ(bench.LengthOf("a.wav"), 4711);
  EXPECT_EQ(bench.Get("a.wav"), 0);
  EXPECT_EQ(bench.LengthOf("b.wav"), 1);
  EXPECT_EQ(bench.Get("b.wav"), 0);
  EXPECT_EQ(HeardBehindLogIn(server),
            (Lines{"TYPE A", "PASV", "NLST", "TYPE I", "SIZE a.wav", "PASV", "RETR a.wav",
                   "SIZE b.wav", "PASV", "RETR b.wav"}));
}

TEST(FtpWire, ServerThatKnowsNoSizesIsAskedForFactsAndThenForAListing) {
  const ScriptedServer server(Without({"SIZE", "MLST"}));
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.LengthOf("a.wav"), 4711);
  EXPECT_EQ(bench.LengthOf("b.wav"), 1);
  EXPECT_EQ(HeardBehindLogIn(server), (Lines{"TYPE I", "SIZE a.wav", "MLST a.wav", "PASV",
                                             "LIST a.wav", "PASV", "LIST b.wav"}));
}

TEST(FtpWire, LengthStandsAmongTheFactsOfAServerThatKnowsNoSizes) {
  Manners manners = Without({"SIZE"});
  const auto without = manners.instead;
  manners.instead = [without](Conversation& guest, const Command& command) {
    if (command.verb != "MLST") return without(guest, command);
    return guest.Say("250-It\r\n type=file;size=4711; " + command.argument + "\r\n250 is.\r\n");
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.LengthOf("a.wav"), 4711);
  EXPECT_EQ(server.CountHeard("LIST"), 0);
}

TEST(FtpWire, NameThatAListingTakesForAPatternHasNoLength) {
  const ScriptedServer server(Without({"SIZE", "MLST"}));
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.LengthOf("a.wav"), 4711);
  for (const char* const name : {"-R", "*", "[a]", "?"}) EXPECT_EQ(bench.LengthOf(name), 0) << name;
  EXPECT_EQ(server.CountHeard("LIST"), 1);
}

TEST(FtpWire, ServerWithoutOnePassiveCommandIsAskedByTheOther) {
  const ScriptedServer server(Without({"PASV"}));
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.Get("a.wav"), 0);
  EXPECT_EQ(server.CountHeard("EPSV"), 1);
}

TEST(FtpWire, FileOfWhichTheServerSaysAtOnceThatItWasAllIsEmpty) {
  Manners manners{.files = {{"empty.wav", ""}, {"a.wav", "a"}}};
  manners.instead = [](Conversation& guest, const Command& command) {
    return command.verb == "RETR" && command.argument == "empty.wav" &&
           guest.Say("226 There is nothing in it.\r\n");
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_EQ(bench.LengthOf("empty.wav"), 0);
  EXPECT_EQ(bench.Get("empty.wav"), 0);
  EXPECT_EQ(bench.Landed("empty.wav"), "");
  EXPECT_EQ(bench.Get("a.wav"), 0) << "the log-in has ended with it";
}

TEST(FtpWire, RefusedFileLeavesNothingAndTheLogInGoesOn) {
  const ScriptedServer server(Without({}));
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  bench.WordsFor(bench.Get("none.wav"));
  EXPECT_TRUE(bench.LandedNames().empty());
  EXPECT_EQ(bench.Get("b.wav"), 0);
  EXPECT_EQ(server.Guests(), 1);
}

TEST(FtpWire, RefusedListIsAFailureAndAnEmptyOneIsNone) {
  for (const auto& [words, result] :
       {std::pair{"550 Permission denied.\r\n", -1}, std::pair{"450 There is nothing.\r\n", 0},
        std::pair{"550 No files found.\r\n", 0}}) {
    Manners manners{.files = {{"a.wav", "a"}}};
    manners.instead = [said = words](Conversation& guest, const Command& command) {
      return command.verb == "NLST" && guest.Say(said);
    };
    const ScriptedServer server(manners);
    FtpBench bench;
    ASSERT_EQ(bench.Connect(server), 0);
    EXPECT_TRUE(bench.List().empty());
    EXPECT_EQ(bench.Result < 0, result < 0) << words;
    EXPECT_EQ(bench.Get("a.wav"), 0) << "the log-in has ended with it";
  }
}

/// Connects from an address of loopback that is not the server's, and says something there.
void IntrudeInto(const std::string& portArgument) {
  int high = 0;
  int low = 0;
  ASSERT_EQ(std::sscanf(portArgument.c_str(), "127,0,0,1,%d,%d", &high, &low), 2);
  const Socket intruder(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
  sockaddr_in address{};
  address.sin_family = AF_INET;
  ::inet_pton(AF_INET, "127.0.0.2", &address.sin_addr);
  ASSERT_EQ(::bind(intruder.Handle(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  ::inet_pton(AF_INET, "127.0.0.1", &address.sin_addr);
  address.sin_port = htons(static_cast<std::uint16_t>(high * 256 + low));
  ASSERT_EQ(::connect(intruder.Handle(), reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
  SendAll(intruder, "not the server's");
}

TEST(FtpWire, StrangerAtADataPortOfOursIsSentAway) {
  Manners manners{.files = {{"a.wav", "the server's"}}};
  manners.instead = [port = std::string()](Conversation&, const Command& command) mutable {
    if (command.verb == "PORT") port = command.argument;
    if (command.verb == "RETR") IntrudeInto(port);
    return false;
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_EQ(bench.Client().fceSetInteger(FtpClient::kPassive, 0), 0);
  EXPECT_EQ(bench.Get("a.wav"), 0);
  EXPECT_EQ(bench.Landed("a.wav"), "the server's");
}

TEST(FtpWire, ServerThatOpensNoWayForDataIsTakenAtItsWord) {
  Manners manners{.files = {{"a.wav", "a"}}};
  manners.instead = [](Conversation& guest, const Command& command) {
    return command.verb == "RETR" && guest.Say("425 I can not reach you.\r\n");
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_NE(bench.WordsFor(bench.Get("a.wav")).find("data port"), std::string::npos);
  EXPECT_EQ(bench.List(), Lines{"a.wav"});
}

TEST(FtpWire, NothingInTheEnvironmentLeadsElsewhere) {
  for (const char* const name : {"all_proxy", "ALL_PROXY", "http_proxy", "ftp_proxy"}) {
    ::setenv(name, "http://127.0.0.1:1", 1);
  }
  const ScriptedServer server;
  FtpBench bench;
  EXPECT_EQ(bench.Connect(server), 0);
  for (const char* const name : {"all_proxy", "ALL_PROXY", "http_proxy", "ftp_proxy"}) {
    ::unsetenv(name);
  }
}

TEST(FtpWire, FilesAreDeletedThoughTheLogOutComesAtOnce) {
  const ScriptedServer server({.files = {{"a.wav", "a"}, {"b.wav", "b"}}});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  bench.Client().fceDelFile("a.wav");
  bench.Client().fceDelFile("b.wav");
  bench.Client().fceClose();
  ASSERT_TRUE(bench.Until([&] { return server.Gone() == 1; }));
  EXPECT_EQ(server.Deleted(), (std::set<std::string>{"a.wav", "b.wav"}));
  EXPECT_EQ(server.Heard().back(), "QUIT");
}

}  // namespace
}  // namespace tavlo::test
