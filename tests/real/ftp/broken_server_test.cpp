#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ftp/ftp_bench.h"

namespace tavlo::test {
namespace {

using Instead = std::function<bool(Conversation&, const Command&)>;

/// Sends as much of a file or a listing and then ends in one of the ways in which servers end.
Instead EndsIn(const std::string& verb, const std::string& bytes,
               std::function<void(Conversation&)> end) {
  return [verb, bytes, end](Conversation& guest, const Command& command) {
    if (command.verb != verb) return false;
    guest.Say("150 Here it comes.\r\n");
    if (guest.OpenData()) guest.PutData(bytes);
    end(guest);
    return true;
  };
}

void Die(Conversation& guest) { guest.Die(); }

void HangUpInOrder(Conversation& guest) {
  guest.CloseData();
  guest.HangUp();
}

/// As if that had been all.
void EndTheFile(Conversation& guest) {
  guest.CloseData();
  guest.Say("226 That was it.\r\n");
}

TEST(BrokenServer, NobodyListensAtItsPort) {
  const int port = PortOf(Listen());
  FtpBench bench;
  bench.WordsFor(bench.Connect("127.0.0.1:" + std::to_string(port), "typist", "slow-Ostrich7"));
}

TEST(BrokenServer, WhatIsNoAddressIsNotConnectedTo) {
  FtpBench bench;
  for (const std::string address : {"", "ftp.example.org/in", "http://127.0.0.1", "127.0.0.1:0"}) {
    bench.WordsFor(bench.Connect(address, "typist", "slow-Ostrich7"));
  }
}

TEST(BrokenServer, ServerThatRefusesGuestsIsNotLoggedInTo) {
  for (const std::string greeting : {"421 Too many guests.\r\n", "530 Not you.\r\n", "hello\r\n",
                                     "HTTP/1.1 400 Bad Request\r\n\r\n", "\r\n\r\n999 x\r\n"}) {
    SCOPED_TRACE(greeting);
    const ScriptedServer server({.greeting = greeting});
    FtpBench bench({.greeting = std::chrono::seconds(1)});
    bench.WordsFor(bench.Connect(server));
    EXPECT_EQ(server.CountHeard("PASS"), 0);
  }
}

TEST(BrokenServer, ServerThatDiesInTheGreetingIsNotLoggedInTo) {
  for (const auto& end : {Die, HangUpInOrder}) {
    const ScriptedServer server({.greet = [&](Conversation& guest) {
      guest.Say("220-Welc");
      end(guest);
    }});
    FtpBench bench;
    bench.WordsFor(bench.Connect(server));
  }
}

TEST(BrokenServer, ServerThatIsKilledInTheListingEndsTheConnection) {
  for (const auto& end : {Die, HangUpInOrder}) {
    const ScriptedServer server({.instead = EndsIn("NLST", "a.wav\r\nb.w", end)});
    FtpBench bench;
    ASSERT_EQ(bench.Connect(server), 0);
    EXPECT_TRUE(bench.List().empty());
    bench.WordsFor(bench.Result);
    bench.ExpectLost(server);
  }
}

TEST(BrokenServer, ServerThatIsKilledInATransferEndsTheConnectionAndWhatCameStays) {
  const std::string whole = std::string(50'000, 'a') + std::string(50'000, 'b');
  for (const auto& end : {Die, HangUpInOrder}) {
    const Gate came;
    const auto endOnceItCame = [&](Conversation& guest) {
      guest.Await(came);
      end(guest);
    };
    const ScriptedServer server({.instead = EndsIn("RETR", whole.substr(0, 60'000), endOnceItCame),
                                 .files = {{"a.wav", whole}}});
    FtpBench bench;
    ASSERT_EQ(bench.Connect(server), 0);
    ASSERT_GE(bench.Client().fceGetFile("a.wav", "a.wav"), 0);
    const auto moved = [&] { return bench.Client().fceGetInteger(ftp::FtpClient::kBytesMoved); };
    EXPECT_GT(bench.Drive([&] { return moved() == 60'000; }), 0);
    came.Open();
    bench.WordsFor(bench.Drive());
    EXPECT_TRUE(bench.Landed("a.wav") == whole.substr(0, 60'000));
    bench.ExpectLost(server);
  }
}

TEST(BrokenServer, ServerThatClosesAnIdleConnectionIsFoundGoneAtTheNextCommand) {
  const Gate tired;
  Manners manners{.files = {{"a.wav", "a"}, {"b.wav", "b"}}};
  manners.instead = [&](Conversation& guest, const Command& command) {
    if (command.verb != "RETR") return false;
    guest.Answer(command);
    guest.Await(tired);
    guest.Say("421 You have been idle for too long.\r\n");
    guest.HangUp();
    return true;
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  ASSERT_EQ(bench.Get("a.wav"), 0);
  tired.Open();
  ASSERT_TRUE(bench.Until([&] { return server.Gone() == 1; }));
  bench.WordsFor(bench.Get("b.wav"));
  bench.ExpectLost(server);
  EXPECT_EQ(bench.LandedNames(), std::vector<std::string>{"a.wav"});
  ASSERT_EQ(bench.Connect(server), 0) << "nobody can log in again by hand";
}

TEST(BrokenServer, FileThatEndsBeforeItsLengthIsNotDone) {
  const ScriptedServer server({.instead = EndsIn("RETR", std::string(600, 'a'), EndTheFile),
                               .files = {{"a.wav", std::string(1'000, 'a')}}});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.LengthOf("a.wav"), 1'000);
  bench.WordsFor(bench.Get("a.wav"));
  EXPECT_EQ(bench.Landed("a.wav"), std::string(600, 'a')) << "what came does not stay";
}

TEST(BrokenServer, FileThatItsServerCallsIncompleteIsNotDone) {
  const auto fail = [](Conversation& guest) {
    guest.CloseData();
    guest.Say("451 My disk has failed.\r\n");
  };
  Manners manners{.instead = EndsIn("RETR", "abc", fail), .files = {{"a.wav", "abc"}}};
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  bench.WordsFor(bench.Get("a.wav"));
}

TEST(BrokenServer, FileLargerThanTheDiskIsRefusedBeforeItComes) {
  Manners manners{.files = {{"a.wav", "a"}, {"b.wav", "b"}}};
  manners.instead = [](Conversation& guest, const Command& command) {
    if (command.verb != "SIZE" || command.argument != "a.wav") return false;
    return guest.Say("213 4611686018427387904\r\n");
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.LengthOf("a.wav"), 4'611'686'018'427'387'904);
  EXPECT_EQ(bench.Get("a.wav"), ftp::FtpClient::kNoRoom);
  bench.WordsFor(ftp::FtpClient::kNoRoom);
  EXPECT_EQ(server.CountHeard("RETR"), 0);
  EXPECT_TRUE(bench.LandedNames().empty());
  EXPECT_EQ(bench.Get("b.wav"), 0) << "a smaller one does not come behind it";
}

TEST(BrokenServer, AddressInAPassiveAnswerIsIgnored) {
  Manners manners{.files = {{"a.wav", "bytes"}}, .passiveHost = "127,0,0,2"};
  manners.instead = [](Conversation& guest, const Command& command) {
    return command.verb == "EPSV" && guest.Say("500 What?\r\n");
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.List(), std::vector<std::string>{"a.wav"});
  EXPECT_EQ(bench.Get("a.wav"), 0);
  EXPECT_EQ(bench.Landed("a.wav"), "bytes");
  EXPECT_GE(server.CountHeard("PASV"), 2);
  EXPECT_EQ(server.Strays(), 0) << "somebody came to the address that was named";
}

TEST(BrokenServer, DataPortThatIsNoneIsAFailureAndNoWait) {
  for (const std::string answer :
       {"227 Come (127,0,0,1,0,0)\r\n", "227 Come (1,2,3)\r\n", "227 Come (127,0,0,1,999,999)\r\n",
        "227\r\n", "500 What?\r\n", "229 Come (|||99999|)\r\n", "229 Come (|||)\r\n"}) {
    SCOPED_TRACE(answer);
    const ScriptedServer server({.instead = [&](Conversation& guest, const Command& command) {
      const bool passive = command.verb == "PASV" || command.verb == "EPSV";
      return passive && guest.Say(answer);
    }});
    FtpBench bench({.connection = std::chrono::seconds(1), .stall = std::chrono::seconds(1)});
    ASSERT_EQ(bench.Connect(server), 0);
    EXPECT_TRUE(bench.List().empty());
    bench.WordsFor(bench.Result);
  }
}

}  // namespace
}  // namespace tavlo::test
