#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "portal/portal_desk.h"

namespace tavlo::test {
namespace {

/// What portals, and who sits at them, answer.
using PortalAnswers = PortalDesk;

constexpr unsigned kDenied = 1;
constexpr unsigned kCancelled = 2;

TEST_F(PortalAnswers, ThatDenyStayUntilSomebodyTriesAgain) {
  StartPortal({.toBind = kDenied});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  EXPECT_TRUE(Rests());
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
  EXPECT_FALSE(keys->CanConfigure());
  EXPECT_TRUE(Until([&] { return portal->Sessions() == 0; }));
  keys->Wish({kPlayStop});
  EXPECT_TRUE(Rests());
  EXPECT_EQ(portal->Count("BindShortcuts"), 1);

  portal->Change([](PortalManners& manners) { manners.toBind = 0; });
  keys->TryAgain();
  EXPECT_EQ(StateOf(AfarAction::PlayStop), KeyState::Asked);
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Count("BindShortcuts"), 2);
}

TEST_F(PortalAnswers, ThatDenyStayWhenThePortalIsAnother) {
  StartPortal({.toBind = kDenied});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  portal->Die();
  portal->ComeBack();
  EXPECT_TRUE(Rests());
  keys->TryAgain();
  ASSERT_TRUE(UntilAsked(2));
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  EXPECT_EQ(portal->Count("CreateSession"), 2);
}

TEST_F(PortalAnswers, ThatDenyAreAskedForAgainByAnotherWish) {
  StartPortal({.toBind = kCancelled});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  keys->Wish({kSlower});
  EXPECT_EQ(StateOf(AfarAction::Slower), KeyState::Asked);
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  EXPECT_EQ(portal->Count("BindShortcuts"), 2);
  EXPECT_TRUE(Rests());
}

TEST_F(PortalAnswers, ThatDenyASessionEndThere) {
  StartPortal({.toCreate = kCancelled});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  EXPECT_EQ(portal->Count("BindShortcuts"), 0);
  EXPECT_TRUE(Rests());
}

TEST_F(PortalAnswers, ThatGiveAllAreNotAskedForAgain) {
  Hold({kPlayStop});
  keys->TryAgain();
  EXPECT_TRUE(Rests());
  EXPECT_EQ(portal->Count("BindShortcuts"), 1);
}

TEST_F(PortalAnswers, ThatGiveSomeAreAskedForAgainAsAWhole) {
  StartPortal({.gives = [](const WishedShortcut& wish) -> std::optional<std::string> {
    if (wish.id == "slower") return std::nullopt;
    return wish.trigger;
  }});
  StartKeys();
  keys->Wish({kPlayHeld, kSlower});
  ASSERT_TRUE(Until([&] { return StateOf(AfarAction::PlayHeld) == KeyState::Held; }));
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  portal->Change([](PortalManners& manners) {
    manners.gives = [](const WishedShortcut& wish) { return wish.trigger; };
  });
  keys->TryAgain();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(Events(), "-play-held ");
  EXPECT_EQ(portal->Sessions(), 1);
}

TEST_F(PortalAnswers, ThatComeLateHoldNoOtherWish) {
  StartPortal({.asksSomebody = true});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(Until([&] { return portal->Windows() == 1; }));
  keys->Wish({kSlower});
  ASSERT_TRUE(UntilAsked(2));
  EXPECT_EQ(portal->MostWindows(), 1);
  // Of the window that asked, and of its session.
  EXPECT_EQ(portal->Count("Close"), 2);
  portal->Answer();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Wished().front().id, "slower");
}

TEST_F(PortalAnswers, AreFoundOnOtherPathsThanTheyShouldBeOn) {
  Hold({kPlayStop}, {.usesOtherPaths = true});
}

TEST_F(PortalAnswers, AreTakenBeforeTheQuestionIsConfirmed) {
  Hold({kPlayStop}, {.answersTooEarly = true});
  keys->Wish({kSlower});
  ASSERT_TRUE(UntilHeld());
}

TEST_F(PortalAnswers, AreTakenBeforeTheirPathIsKnown) {
  Hold({kPlayStop}, {.usesOtherPaths = true, .answersTooEarly = true});
}

TEST_F(PortalAnswers, ThatKnowNoSuchKeysMeanThatThereIsNoPortal) {
  StartPortal({.version = 0});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(Until([&] { return keys->Way() == KeyWay::PortalMissing; }));
  EXPECT_EQ(StateOf(AfarAction::PlayStop), KeyState::Refused);
  EXPECT_EQ(portal->Count("CreateSession"), 0);
  EXPECT_TRUE(Rests());
  // As after an upgrade of the desktop.
  portal->Die();
  portal->Change([](PortalManners& manners) { manners.version = 1; });
  portal->ComeBack();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
}

TEST_F(PortalAnswers, ThatAreRefusalsEndThere) {
  for (const char* const refused : {"CreateSession", "BindShortcuts"}) {
    StartPortal({.instead = [refused](sd_bus_message& call) {
      if (std::string(sd_bus_message_get_member(&call)) != refused) return false;
      return sd_bus_reply_method_errorf(&call, SD_BUS_ERROR_ACCESS_DENIED, "No.") >= 0;
    }});
    StartKeys();
    keys->Wish({kPlayStop});
    ASSERT_TRUE(UntilAll(KeyState::Refused)) << refused;
    EXPECT_EQ(keys->Way(), KeyWay::Portal) << refused;
    EXPECT_EQ(portal->Count(refused), 1);
    EXPECT_TRUE(Rests()) << refused;
    keys.reset();
    portal.reset();
  }
}

TEST_F(PortalAnswers, ThatNeverComeLeaveAKeyAsked) {
  StartPortal();
  StartKeys();
  portal->Hang();
  keys->Wish({kPlayStop});
  for (const KeyWish& wish : {kPlayHeld, kPlayStop, kPlayHeld, kSlower}) {
    ASSERT_TRUE(Until([&] { return connection.IsConnected() && Rests(); }));
    keys->Wish({wish});
    keys->TryAgain();
  }
  ASSERT_TRUE(Until([&] { return Rests(); }));
  EXPECT_EQ(StateOf(AfarAction::Slower), KeyState::Asked);
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
  portal->GoOn();
  ASSERT_TRUE(UntilHeld());
  // What was wished for meanwhile is asked for once, and nothing else is.
  EXPECT_LE(portal->Count("Register"), 2);
  EXPECT_EQ(portal->Count("BindShortcuts"), 1);
  EXPECT_EQ(portal->Wished().front().id, "slower");
}

TEST_F(PortalAnswers, ThatNeverComeHoldNobodyUp) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  portal->Hang();
  keys->Wish({kPlayHeld, kSlower});
  // The session with the key that is held is closed, for the portal as well.
  EXPECT_EQ(NextEvent(), "-play-held");
  keys->Wish({});
  EXPECT_TRUE(Rests());
  EXPECT_FALSE(connection.IsConnected());
}

}  // namespace
}  // namespace tavlo::test
