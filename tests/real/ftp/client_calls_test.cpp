#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "ftp/ftp_bench.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

using ftp::FtpClient;

/// Texts that would be two commands, or half of one.
std::vector<std::string> TwoLines(const std::string& text) {
  return {text + "\r\nDELE b.wav", text + "\n", text + "\r", std::string("\0", 1) + text,
          text + std::string(1, '\0')};
}

TEST(ClientCalls, LogInWithALineBreakIsRefusedBeforeAnybodyHearsOfIt) {
  const ScriptedServer server;
  FtpBench bench;
  for (const std::string& text : TwoLines(server.Address())) {
    EXPECT_EQ(bench.Client().fceConnect(text, "typist", "slow"), FtpClient::kTextRefused);
  }
  for (const std::string& text : TwoLines("typist")) {
    EXPECT_EQ(bench.Client().fceConnect(server.Address(), text, "slow"), FtpClient::kTextRefused);
    EXPECT_EQ(bench.Client().fceConnect(server.Address(), "typist", text), FtpClient::kTextRefused);
  }
  bench.WordsFor(FtpClient::kTextRefused);
  EXPECT_EQ(server.Guests(), 0);
}

TEST(ClientCalls, NameWithALineBreakIsRefusedAndTheChannelGoesOn) {
  const ScriptedServer server({.files = {{"a.wav", "a"}, {"b.wav", "b"}}});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  const std::size_t before = server.Heard().size();
  for (const std::string& text : TwoLines("a.wav")) {
    EXPECT_EQ(bench.Client().fceSetServerDir(text), FtpClient::kTextRefused);
    EXPECT_EQ(bench.Client().fceGetFile(text, "a.wav"), FtpClient::kTextRefused);
    bench.Client().fceDelFile(text);
    std::string buffer = text;
    // In a buffer the NUL ends the name.
    if (text.find('\0') != text.npos) continue;
    EXPECT_EQ(bench.Client().fceGetList(FtpClient::kOneFile, buffer, kLine),
              FtpClient::kTextRefused);
  }
  EXPECT_EQ(server.Heard().size(), before);
  EXPECT_TRUE(bench.LandedNames().empty());
  EXPECT_EQ(bench.Get("a.wav"), 0);
  EXPECT_TRUE(server.Deleted().empty());
}

TEST(ClientCalls, WhoIsNotLoggedInGetsNothing) {
  FtpBench bench;
  for (int times = 0; times < 2; ++times) {
    EXPECT_TRUE(bench.List().empty());
    EXPECT_EQ(bench.Result, FtpClient::kNotConnected);
    EXPECT_EQ(bench.LengthOf("a.wav"), FtpClient::kNotConnected);
    EXPECT_EQ(bench.Client().fceGetFile("a.wav", "a.wav"), FtpClient::kNotConnected);
    EXPECT_EQ(bench.Client().fceSetServerDir("in"), FtpClient::kNotConnected);
    EXPECT_LT(bench.Client().fceDriver(), 0);
    bench.Client().fceDelFile("a.wav");
    bench.Client().fceClose();
  }
  bench.WordsFor(FtpClient::kNotConnected);
  EXPECT_EQ(bench.Client().fceErrorText(0), "");
  EXPECT_EQ(bench.Client().fceErrorText(5), "");
}

TEST(ClientCalls, WhatStandsAtTheLandingNameStays) {
  const ScriptedServer server({.files = {{"a.wav", "from the server"}}});
  FtpBench bench;
  bench.folder.Write("Landing/a.wav", "mine");
  fs::create_symlink(bench.folder / "outside", bench.Landing() + "/b.wav");
  fs::create_directory(bench.Landing() + "/c.wav");
  ::mkfifo((bench.Landing() + "/d.wav").c_str(), 0600);
  ASSERT_EQ(bench.Connect(server), 0);
  for (const std::string landing : {"a.wav", "b.wav", "c.wav", "d.wav"}) {
    EXPECT_EQ(bench.Get("a.wav", landing), FtpClient::kLandingTaken) << landing;
  }
  bench.WordsFor(FtpClient::kLandingTaken);
  EXPECT_EQ(bench.Landed("a.wav"), "mine");
  EXPECT_FALSE(fs::exists(bench.folder / "outside"));
  EXPECT_EQ(bench.Get("a.wav", "e.wav"), 0);
  EXPECT_EQ(bench.Landed("e.wav"), "from the server");
}

TEST(ClientCalls, WhatAppearsAtTheLandingNameWhileTheServerIsAskedStays) {
  FtpBench bench;
  Manners manners{.files = {{"a.wav", "from the server"}}};
  manners.instead = [landing = bench.Landing()](Conversation&, const Command& command) {
    if (command.verb == "RETR") std::ofstream(landing + "/a.wav") << "mine";
    return false;
  };
  const ScriptedServer server(manners);
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_EQ(bench.Get("a.wav"), FtpClient::kLandingTaken);
  EXPECT_EQ(bench.Landed("a.wav"), "mine");
}

TEST(ClientCalls, LandingNameThatLeadsElsewhereIsRefused) {
  const ScriptedServer server({.files = {{"a.wav", "from the server"}}});
  FtpBench bench;
  fs::create_directory(bench.Landing() + "/in");
  ASSERT_EQ(bench.Connect(server), 0);
  const std::vector<std::string> elsewhere{"../b.wav", "in/b.wav", "..",
                                           ".",        "",         bench.folder / "b.wav"};
  for (const std::string& landing : elsewhere) {
    EXPECT_LT(bench.Get("a.wav", landing), 0) << landing;
  }
  EXPECT_EQ(bench.LandedNames(), std::vector<std::string>{"in"});
  EXPECT_TRUE(fs::is_empty(bench.Landing() + "/in"));
  EXPECT_FALSE(fs::exists(bench.folder / "b.wav"));
  EXPECT_EQ(server.CountHeard("RETR"), 0);
  EXPECT_EQ(bench.Get("a.wav"), 0);
}

TEST(ClientCalls, FileLandsInTheLocalFolderAndForNobodyElse) {
  const ScriptedServer server({.files = {{"a.wav", "from the server"}}});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  EXPECT_LT(bench.Client().fceSetLocalDir(bench.folder / "not there"), 0);
  bench.WordsFor(bench.Client().fceSetLocalDir(bench.folder / "not there"));
  const std::string second = bench.folder / "second";
  fs::create_directory(second);
  ASSERT_EQ(bench.Client().fceSetLocalDir(second), 0);
  ASSERT_EQ(bench.Get("a.wav"), 0);
  EXPECT_TRUE(bench.LandedNames().empty());
  EXPECT_EQ(bench.folder.Read("second/a.wav"), "from the server");
}

TEST(ClientCalls, SecondLogInClosesTheFirst) {
  const ScriptedServer first({.files = {{"a.wav", "a"}}});
  const ScriptedServer second({.files = {{"b.wav", "b"}}});
  FtpBench bench;
  ASSERT_EQ(bench.Connect(first), 0);
  ASSERT_EQ(bench.Connect(second), 0);
  EXPECT_TRUE(bench.Until([&] { return first.Gone() == 1; }));
  EXPECT_EQ(bench.List(), std::vector<std::string>{"b.wav"});
  EXPECT_EQ(second.Guests(), 1);
}

TEST(ClientCalls, OneLogInServesForAllThatFollows) {
  Manners manners;
  for (int i = 0; i < 20; ++i) manners.files["doc" + std::to_string(i)] = std::to_string(i);
  const ScriptedServer server(manners);
  FtpBench bench;
  ASSERT_EQ(bench.Connect(server), 0);
  for (const std::string& name : bench.List()) {
    EXPECT_GT(bench.LengthOf(name), 0);
    EXPECT_EQ(bench.Get(name), 0);
    bench.Client().fceDelFile(name);
  }
  bench.Client().fceClose();
  EXPECT_TRUE(bench.Until([&] { return server.Gone() == 1; }));
  EXPECT_EQ(server.Guests(), 1);
  EXPECT_EQ(server.CountHeard("PASS"), 1);
  EXPECT_EQ(server.Deleted().size(), 20U);
}

TEST(ClientCalls, NoDescriptorIsLeftBehind) {
  const auto open = [] {
    const fs::directory_iterator descriptors("/proc/self/fd");
    return std::distance(begin(descriptors), end(descriptors));
  };
  const ScriptedServer server({.files = {{"a.wav", "a"}}});
  FtpBench bench;
  const auto session = [&](int number) {
    ASSERT_EQ(bench.Connect(server), 0);
    ASSERT_EQ(bench.List().size(), 1U);
    ASSERT_EQ(bench.Get("a.wav", "a" + std::to_string(number)), 0);
    bench.Client().fceClose();
    ASSERT_TRUE(bench.Until([&] { return server.Gone() == number; }));
  };
  session(1);
  const auto before = open();
  for (int number = 2; number <= 20; ++number) session(number);
  EXPECT_TRUE(bench.Until([&] { return open() <= before; })) << open() << " of " << before;
}

}  // namespace
}  // namespace tavlo::test
