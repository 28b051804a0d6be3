#include <gtest/gtest.h>
#include <stdlib.h>

#include <filesystem>
#include <string>
#include <vector>

#include "portal/portal_desk.h"
#include "support/silent_bus.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

/// A portal that goes, and a bus that does.
using PortalLost = PortalDesk;

TEST_F(PortalLost, LetsGoOfWhatIsHeldAndIsAskedAgainWhenItIsBack) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  portal->Die();
  EXPECT_EQ(NextEvent(), "-play-held");
  ASSERT_TRUE(Until([&] { return keys->Way() == KeyWay::PortalMissing; }));
  EXPECT_EQ(StateOf(AfarAction::PlayHeld), KeyState::Refused);
  EXPECT_FALSE(keys->CanConfigure());
  EXPECT_TRUE(Rests());
  portal->ComeBack();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
}

TEST_F(PortalLost, IsAskedAgainWhenItClosesTheSession) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  portal->CloseSession();
  EXPECT_EQ(NextEvent(), "-play-held");
  ASSERT_TRUE(UntilAsked(2));
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Sessions(), 1);
}

TEST_F(PortalLost, IsAskedAFewTimesAndThenNoMore) {
  StartPortal({.endsWhatItBinds = true});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(Until([&] { return Rests() && StateOf(AfarAction::PlayStop) == KeyState::Refused; }));
  EXPECT_EQ(portal->Count("BindShortcuts"), 1 + kImpatience.retries);
  portal->Change([](PortalManners& manners) { manners.endsWhatItBinds = false; });
  keys->TryAgain();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Count("BindShortcuts"), 2 + kImpatience.retries);
}

TEST_F(PortalLost, IsAskedAFewTimesWhenItDiesOfTheQuestion) {
  StartKeys();
  keys->Wish({kPlayStop});
  int deaths = 0;
  ASSERT_TRUE(Until([&] {
    if (!portal) StartPortal({.asksSomebody = true});
    if (portal->Windows() > 0) {
      ++deaths;
      portal.reset();
    }
    return StateOf(AfarAction::PlayStop) == KeyState::Refused && deaths == 1 + kImpatience.retries;
  }));
  portal.reset();
  StartPortal();
  keys->TryAgain();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Count("BindShortcuts"), 1);
}

TEST_F(PortalLost, BeginsANewRowOfTriesAfterAWhile) {
  StartPortal();
  platform::PortalPatience patience = kImpatience;
  patience.stood = 0s;
  StartKeys(patience);
  keys->Wish({kPlayStop});
  for (int losses = 0; losses < 3 * patience.retries; ++losses) {
    ASSERT_TRUE(UntilHeld()) << losses;
    portal->CloseSession();
    ASSERT_TRUE(UntilAll(KeyState::Asked)) << losses;
  }
  EXPECT_TRUE(UntilHeld());
}

TEST_F(PortalLost, IsNoPortalWhereThereNeverWasOne) {
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(Until([&] { return keys->Way() == KeyWay::PortalMissing; }));
  EXPECT_EQ(StateOf(AfarAction::PlayStop), KeyState::Refused);
  EXPECT_TRUE(Rests());
  keys->Wish({});
  EXPECT_EQ(keys->Way(), KeyWay::PortalMissing);
  keys->Wish({kSlower});
  StartPortal();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
}

TEST_F(PortalLost, LetsGoOfWhatIsHeldWhenTheBusDies) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  bus.Kill();
  EXPECT_EQ(NextEvent(), "-play-held");
  EXPECT_EQ(StateOf(AfarAction::PlayHeld), KeyState::Asked);
  EXPECT_FALSE(keys->CanConfigure());
}

TEST_F(PortalLost, IsAskedAgainWhenTheBusIsBack) {
  platform::PortalPatience patience = kImpatience;
  patience.bus = 5ms;
  StartPortal();
  StartKeys(patience);
  keys->Wish({kPlayHeld});
  ASSERT_TRUE(UntilHeld());
  bus.Kill();
  ASSERT_TRUE(Until([&] { return keys->Way() == KeyWay::PortalMissing; }));
  EXPECT_EQ(StateOf(AfarAction::PlayHeld), KeyState::Refused);
  portal.reset();
  bus.Restart();
  StartPortal();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
}

TEST_F(PortalLost, HoldsNobodyUpWhenTheBusHangs) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  bus.Freeze();
  keys->Wish({kPlayHeld, kSlower});
  EXPECT_EQ(NextEvent(), "-play-held");
  EXPECT_EQ(StateOf(AfarAction::Slower), KeyState::Asked);
  keys->Wish({});
  EXPECT_FALSE(connection.IsConnected());
  bus.Thaw();
  keys->Wish({kSlower});
  EXPECT_TRUE(UntilHeld());
}

/// A bus that is none.
struct PortalWithoutABus : PortalDesk {
  void Run(const std::string& address) {
    platform::BusConnection none(loop, loop, address);
    platform::PortalPatience patience = kImpatience;
    patience.bus = 5ms;
    platform::PortalKeys there(loop, none, patience);
    there.Tell(ear);
    there.Wish({kPlayStop});
    EXPECT_EQ(there.Way(), KeyWay::Portal);
    ASSERT_TRUE(Until([&] { return there.Way() == KeyWay::PortalMissing; }));
    EXPECT_EQ(there.Grants().front().state, KeyState::Refused);
    EXPECT_GT(ear.news, 0);
    there.TryAgain();
    there.Configure();
    there.Wish({});
  }
};

TEST_F(PortalWithoutABus, IsNoPortal) { Run(""); }

TEST_F(PortalWithoutABus, IsNoPortalWhereTheBusIsSilent) {
  const TemporaryFolder folder;
  const SilentBus silent(folder / "bus");
  Run("unix:path=" + folder / "bus");
}

/// What a bus is told of a portal, to start one when somebody wants it.
struct PortalService {
  PortalService() {
    std::filesystem::create_directories(folder / "dbus-1/services");
    ::setenv("XDG_DATA_HOME", folder.Path().c_str(), 1);
  }
  ~PortalService() { ::unsetenv("XDG_DATA_HOME"); }

  void StartsBy(const std::string& command) const {
    folder.Write("dbus-1/services/portal.service",
                 "[D-BUS Service]\nName=org.freedesktop.portal.Desktop\nExec=" + command + "\n");
  }

  TemporaryFolder folder;
};

struct PortalToBeStarted : PortalService, PortalDesk {};

TEST_F(PortalToBeStarted, IsStartedForTheFirstWish) {
  StartsBy("/usr/bin/touch " + folder / "started");
  StartKeys();
  keys->Wish({});
  EXPECT_TRUE(Rests());
  EXPECT_FALSE(std::filesystem::exists(folder / "started"));
  keys->Wish({kPlayStop});
  ASSERT_TRUE(Until([&] { return std::filesystem::exists(folder / "started"); }));
  EXPECT_EQ(StateOf(AfarAction::PlayStop), KeyState::Asked);
  StartPortal();
  EXPECT_TRUE(UntilHeld());
}

TEST_F(PortalToBeStarted, IsNoneWhereItCanNotBeStarted) {
  StartsBy("/bin/false");
  StartKeys();
  keys->Wish({kPlayStop});
  EXPECT_TRUE(Until([&] { return keys->Way() == KeyWay::PortalMissing; }));
  EXPECT_TRUE(Rests());
}

}  // namespace
}  // namespace tavlo::test
