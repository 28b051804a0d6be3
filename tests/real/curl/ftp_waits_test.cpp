#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "ftp/ftp_bench.h"
#include "ftp/gate.h"
#include "ftp/scripted_server.h"
#include "platform/curl/curl_ftp_client.h"

namespace tavlo::test {
namespace {

using ftp::FtpClient;

/// A server that stands still at a command until its guest is gone.
Manners StandStillAt(const std::string& verb) {
  Manners manners{.files = {{"a.wav", "a"}}};
  manners.instead = [verb](Conversation& guest, const Command& command) {
    if (command.verb != verb) return false;
    guest.AwaitHangUp();
    return true;
  };
  return manners;
}

/// Does something inside the wait of a command, once the server has heard that.
void InsideTheWait(FtpBench& bench, const ScriptedServer& server, const std::string& verb,
                   std::function<void()> call) {
  bench.loop.Post([&bench, &server, verb, call = std::move(call)]() mutable {
    if (server.CountHeard(verb) > 0) return call();
    InsideTheWait(bench, server, verb, std::move(call));
  });
}

TEST(FtpWaits, ReleaseEndsTheWaitOfWhateverWaits) {
  const ScriptedServer server(StandStillAt("PASS"));
  FtpBench bench;
  InsideTheWait(bench, server, "PASS", [&] { bench.Client().fceRelease(); });
  bench.WordsFor(bench.Connect(server));
  EXPECT_TRUE(bench.Until([&] { return server.Gone() == 1; }));
}

TEST(FtpWaits, CloseEndsTheWaitOfWhateverWaits) {
  const ScriptedServer server(StandStillAt("NLST"));
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  InsideTheWait(bench, server, "NLST", [&] { bench.Client().fceClose(); });
  EXPECT_TRUE(bench.List().empty());
  bench.WordsFor(bench.Result);
  EXPECT_TRUE(bench.Until([&] { return server.Gone() == 1; }));
}

TEST(FtpWaits, WhatIsAskedInsideAWaitIsRefusedAndTheWaitGoesOn) {
  const Gate goesOn;
  Manners manners{.files = {{"a.wav", "a"}}};
  manners.instead = [&](Conversation& guest, const Command& command) {
    if (command.verb == "NLST") guest.Await(goesOn);
    return false;
  };
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  int inside = 0;
  InsideTheWait(bench, server, "NLST", [&] {
    inside = bench.Client().fceGetFile("a.wav", "a.wav");
    goesOn.Open();
  });
  EXPECT_EQ(bench.List(), std::vector<std::string>{"a.wav"});
  bench.WordsFor(inside);
  EXPECT_TRUE(bench.LandedNames().empty());
}

TEST(FtpWaits, ClientThatWasReleasedAndAttachedAgainConnects) {
  const ScriptedServer server({.files = {{"a.wav", "a"}}});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  bench.Client().fceRelease();
  bench.WordsFor(bench.Connect(server));
  ASSERT_EQ(bench.Client().fceAttach(1), 0);
  EXPECT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.Get("a.wav"), 0);
}

TEST(FtpWaits, ListingThatDribblesEndsAtItsLimit) {
  Manners manners;
  manners.instead = [](Conversation& guest, const Command& command) {
    if (command.verb != "NLST") return false;
    guest.Say("150 Here it comes.\r\n");
    bool taken = guest.OpenData();
    while (taken) taken = guest.PutData("a");
    return true;
  };
  const ScriptedServer server(manners);
  PlainLoop loop;
  platform::CurlFtpClient client(loop, loop, {}, {.listing = std::chrono::milliseconds(100)});
  ASSERT_EQ(client.fceAttach(1), 0);
  ASSERT_EQ(client.fceConnect(server.Address(), "typist", "secret"), 0);
  ASSERT_EQ(client.fceSetInteger(FtpClient::kPassive, 1), 0);
  std::string names;
  EXPECT_LT(client.fceGetList(FtpClient::kNames, names, kListing), 0);
  EXPECT_LT(client.fceSetServerDir("/"), 0) << "the log-in goes on without its data";
}

}  // namespace
}  // namespace tavlo::test
