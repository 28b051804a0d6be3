#include "platform/desktop/file_handover.h"

#include <filesystem>

#include "handover/handover_bench.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;
using platform::SocketHandle;
using platform::desktop::ListenUnder;
using platform::desktop::SocketHandover;

struct FileHandoverTest : HandoverBench {};

TEST_F(FileHandoverTest, DeckThatRunsIsToldOfTheFilesByteForByte) {
  Listen();
  const Paths paths{"/media/memo.wav",  "/media/a\nb.wav", "/media/\xFF\xFE",
                    "/media/-platform", "/media/memo.wav", "no full path"};
  EXPECT_TRUE(HandOver(paths));
  EXPECT_TRUE(Comes([this] { return !came.empty(); }));
  EXPECT_EQ(came, std::vector<Paths>{paths});
}

TEST_F(FileHandoverTest, DeckThatOnlyBreathesTakesThemAndIsToldAfterTheBreath) {
  Listen();
  EXPECT_TRUE(HandOver({"/a"}));
  EXPECT_TRUE(came.empty()) << "no rule runs in a breath";
  EXPECT_TRUE(Comes([this] { return !came.empty(); }));
}

TEST_F(FileHandoverTest, ThreeStartsAreToldOneAfterTheOther) {
  Listen();
  for (const char* path : {"/a", "/b", "/c"}) EXPECT_TRUE(HandOver({path}));
  EXPECT_TRUE(Comes([this] { return came.size() == 3; }));
  EXPECT_EQ(came, (std::vector<Paths>{{"/a"}, {"/b"}, {"/c"}}));
}

TEST_F(FileHandoverTest, MoreThanASocketHoldsArriveWhole) {
  Listen();
  Paths many;
  for (int i = 0; i < 1001; ++i) many.push_back("/" + std::string(4000, 'x') + std::to_string(i));
  EXPECT_TRUE(HandOver(many));
  EXPECT_TRUE(Comes([this] { return !came.empty(); }));
  EXPECT_EQ(came, std::vector<Paths>{many});
}

TEST_F(FileHandoverTest, StartThatFindsNobodyIsToldSo) { EXPECT_FALSE(HandOver({"/a"}, 50ms)); }

TEST_F(FileHandoverTest, StartWaitsForADeckThatIsAboutToListen) {
  base::Timer later(loop, "later", 50ms, base::TimerKind::Feed);
  later.OnTick = [&] {
    later.Stop();
    Listen();
  };
  later.Start();
  EXPECT_TRUE(HandOver({"/a"}));
}

TEST_F(FileHandoverTest, DeckOnAnotherRootIsNotMet) {
  Listen();
  SocketHandover elsewhere(loop, loop, home / "other/TavloDeck", 50ms);
  EXPECT_FALSE(elsewhere.HandOver({"/a"}));
  EXPECT_TRUE(HandOver({"/b"}));
}

TEST_F(FileHandoverTest, DeckThatStandsStillGetsNothingWhenItGoesOn) {
  const SocketHandle door = ListenUnder(name);
  ASSERT_TRUE(door);
  EXPECT_FALSE(HandOver({"/a"}, 50ms));
  const SocketHandle guest(::accept4(door.Get(), nullptr, nullptr, SOCK_CLOEXEC));
  ASSERT_TRUE(guest);
  EXPECT_LT(::send(guest.Get(), "+", 1, MSG_NOSIGNAL), 0) << "nobody hears that it took them";
}

TEST_F(FileHandoverTest, DeckThatAnswersAnythingElseHasTakenNothing) {
  const SocketHandle door = ListenUnder(name);
  SocketHandle guest;
  const auto wait = loop.WaitInBreathsToo(door.Get(), "door", [&] {
    guest = SocketHandle(::accept4(door.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    EXPECT_EQ(::send(guest.Get(), "-", 1, MSG_NOSIGNAL), 1);
  });
  EXPECT_FALSE(HandOver({"/a"}));
}

TEST_F(FileHandoverTest, DeckThatSaysYesBeforeItHasHeardAllHasTakenNothing) {
  const SocketHandle door = ListenUnder(name);
  SocketHandle guest;
  const auto wait = loop.WaitInBreathsToo(door.Get(), "door", [&] {
    guest = SocketHandle(::accept4(door.Get(), nullptr, nullptr, SOCK_CLOEXEC));
    EXPECT_EQ(::send(guest.Get(), "+", 1, MSG_NOSIGNAL), 1);
  });
  EXPECT_FALSE(HandOver(Paths(2000, "/" + std::string(2000, 'x'))));
}

TEST_F(FileHandoverTest, DeckThatHasClosedItsDoorIsToldOfAllAndNobodyElseComesIn) {
  Listen();
  EXPECT_TRUE(HandOver({"/a"}));
  deck->Close();
  EXPECT_EQ(came, std::vector<Paths>{{"/a"}});
  EXPECT_FALSE(HandOver({"/b"}, 50ms));
}

TEST_F(FileHandoverTest, NextDeckMayListenOnceTheDoorIsClosed) {
  Listen();
  deck->Close();
  SocketHandover next(loop, loop, root);
  Paths got;
  next.Listen([&](const Paths& paths) { got = paths; });
  EXPECT_TRUE(HandOver({"/a"}));
  EXPECT_TRUE(Comes([&] { return !got.empty(); }));
}

TEST_F(FileHandoverTest, DoorThatSomebodyElseHasIsLeftToHim) {
  Listen();
  SocketHandover other(loop, loop, root);
  other.Listen([](const Paths&) { ADD_FAILURE() << "the name was taken"; });
  EXPECT_TRUE(HandOver({"/a"}));
  other.Close();
  EXPECT_TRUE(HandOver({"/b"}));
  EXPECT_TRUE(Comes([this] { return came.size() == 2; }));
}

TEST_F(FileHandoverTest, NothingIsLeftInTheFolders) {
  Listen();
  EXPECT_TRUE(HandOver({"/a"}));
  EXPECT_TRUE(std::filesystem::is_empty(home.Path()));
}

}  // namespace
}  // namespace tavlo::test
