#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

#include "ftp/ftp_bench.h"
#include "ftp/gate.h"
#include "ftp/scripted_server.h"
#include "support/stalling_mount.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

/// A landing folder on a share that may give no answer.
struct FtpStalledDisk : testing::Test {
  void SetUp() override {
    if (!mount.Fault().empty()) GTEST_SKIP() << mount.Fault();
  }
  static std::string Made(const std::string& folder) {
    std::filesystem::create_directory(folder);
    return folder;
  }

  const TemporaryFolder place;
  StallingMount mount{Made(place / "folder"), Made(place / "mount")};
};

constexpr ClientLimits kShort{.connection = std::chrono::milliseconds(300),
                              .greeting = std::chrono::milliseconds(300),
                              .stall = std::chrono::milliseconds(300)};

TEST_F(FtpStalledDisk, FolderThatGivesNoAnswerHoldsNobody) {
  const ScriptedServer server;
  FtpBench bench(kShort);
  ASSERT_EQ(bench.Connect(server), 0);
  mount.Hold();
  bench.WordsFor(bench.Client().fceSetLocalDir(mount.Path()));
  bench.WordsFor(bench.Client().fceSetLocalDir(bench.Landing()));
  EXPECT_EQ(bench.Connect(server), 0) << "nobody can log in any more";
  mount.GoOn();
}

TEST_F(FtpStalledDisk, FileThatCanNotBeWrittenOnIsAFailureAndHoldsNobody) {
  const Gate more;
  Manners manners;
  manners.instead = [&](Conversation& guest, const Command& command) {
    if (command.verb != "RETR") return false;
    guest.Say("150 Here it comes.\r\n");
    guest.OpenData();
    guest.PutData(std::string(1'000, 'a'));
    guest.Await(more);
    guest.PutData(std::string(1'000, 'a'));
    guest.AwaitHangUp();
    return true;
  };
  const ScriptedServer server(manners);
  auto bench = std::make_unique<FtpBench>(kShort);
  ASSERT_EQ(bench->Connect(server), 0);
  ASSERT_EQ(bench->Client().fceSetLocalDir(mount.Path()), 0);
  ASSERT_EQ(bench->Client().fceGetFile("a.wav", "a.wav"), 0);
  const auto moved = [&] {
    return bench->Client().fceGetInteger(ftp::FtpClient::kBytesMoved) == 1'000;
  };
  ASSERT_GT(bench->Drive(moved), 0);
  mount.Hold();
  more.Open();
  bench->WordsFor(bench->Drive());
  // Its end waits for nothing either, or this test would not end.
  bench.reset();
  mount.GoOn();
}

}  // namespace
}  // namespace tavlo::test
