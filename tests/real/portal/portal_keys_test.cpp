#include "platform/bus/portal_keys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "portal/portal_desk.h"

namespace tavlo::test {
namespace {

using PortalKeys = PortalDesk;

const std::vector<std::string> kOneSession{"Register", "Get", "CreateSession", "BindShortcuts"};

TEST_F(PortalKeys, AreAskedOfNobodyWhileNoneIsWishedFor) {
  StartPortal();
  StartKeys();
  keys->Wish({});
  keys->TryAgain();
  EXPECT_TRUE(Rests());
  EXPECT_FALSE(connection.IsConnected());
  EXPECT_EQ(keys->Way(), KeyWay::Portal);
  EXPECT_EQ(keys->Grants(), std::vector<KeyGrant>());
  // The first call that the portal hears is of a wish that came later.
  keys->Wish({kPlayStop});
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Calls(), kOneSession);
}

TEST_F(PortalKeys, AreAskedForByNameAndWishedTrigger) {
  Hold({kPlayStop, kSlower});
  EXPECT_EQ(portal->Calls(), kOneSession);
  EXPECT_EQ(portal->Programs(), std::vector<std::string>{"tavlodeck"});
  EXPECT_EQ(portal->Wished(),
            (std::vector<WishedShortcut>{
                {.id = "play-stop", .description = "Play, and stop again", .trigger = "F4"},
                {.id = "slower", .description = "Slower", .trigger = "CTRL+SHIFT+F6"}}));
  EXPECT_TRUE(Rests());
}

TEST_F(PortalKeys, AreAskedForUntilTheDesktopHasAnswered) {
  StartPortal({.asksSomebody = true});
  StartKeys();
  keys->Wish({kPlayStop});
  EXPECT_EQ(StateOf(AfarAction::PlayStop), KeyState::Asked);
  ASSERT_TRUE(Until([&] { return portal->Windows() == 1; }));
  EXPECT_EQ(StateOf(AfarAction::PlayStop), KeyState::Asked);
  EXPECT_FALSE(keys->CanConfigure());
  const int before = ear.news;
  portal->Answer();
  ASSERT_TRUE(UntilHeld());
  EXPECT_GT(ear.news, before);
}

TEST_F(PortalKeys, AreCalledAsTheDesktopCallsThem) {
  StartPortal({.gives = [](const WishedShortcut& wish) -> std::optional<std::string> {
    if (wish.id == "slower") return std::nullopt;
    return wish.id == "play-stop" ? "Strg+F9" : "";
  }});
  StartKeys();
  keys->Wish({kSlower, kPlayHeld, kPlayStop});
  ASSERT_TRUE(Until([&] { return StateOf(AfarAction::PlayStop) == KeyState::Held; }));
  EXPECT_EQ(keys->Grants(),
            (std::vector<KeyGrant>{
                {.action = AfarAction::Slower, .state = KeyState::Refused},
                {.action = AfarAction::PlayHeld, .state = KeyState::Held},
                {.action = AfarAction::PlayStop, .state = KeyState::Held, .given = "Strg+F9"}}));
}

TEST_F(PortalKeys, GoDownAndUp) {
  Hold({kPlayStop, kPlayHeld});
  const int before = ear.news;
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  portal->Activate("play-stop");
  portal->Deactivate("play-held");
  portal->Deactivate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-stop");
  EXPECT_EQ(NextEvent(), "-play-held");
  EXPECT_EQ(NextEvent(), "-play-stop");
  EXPECT_EQ(ear.news, before + 4);
}

TEST_F(PortalKeys, ThatAreHeldAreSeenToBeLetGoWhileTheLoopOnlyBreathes) {
  Hold({kPlayStop, kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  EXPECT_FALSE(keys->LetGo());
  portal->Deactivate("play-held");
  EXPECT_TRUE(Comes([&] { return keys->LetGo(); }));
  EXPECT_FALSE(keys->LetGo()) << "it was seen";
  EXPECT_EQ(Events(), "-play-held ");
  EXPECT_FALSE(keys->LetGo());
}

TEST_F(PortalKeys, ThatNobodyHasHeardOfAreNotSeenToBeLetGo) {
  Hold({kPlayStop, kPlayHeld});
  portal->Activate("play-held");
  portal->Deactivate("play-held");
  portal->Activate("play-stop");
  const int before = ear.news;
  ASSERT_TRUE(Until([&] { return ear.news == before + 3; }));
  EXPECT_FALSE(keys->LetGo());
  EXPECT_EQ(Events(), "+play-held -play-held +play-stop ");
  portal->Deactivate("play-stop");
  ASSERT_TRUE(Until([&] { return ear.news == before + 4; }));
  EXPECT_FALSE(keys->LetGo()) << "it does nothing by being held";
}

TEST_F(PortalKeys, ThatAreGivenUpAreNotSeenToBeLetGo) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  keys->Wish({});
  EXPECT_FALSE(keys->LetGo());
}

TEST_F(PortalKeys, ThatTheKeyboardRepeatsArePressedOnce) {
  Hold({kPlayStop, kPlayHeld});
  for (int repeats = 0; repeats < 3; ++repeats) portal->Activate("play-held");
  portal->Deactivate("play-held");
  portal->Deactivate("play-held");
  portal->Activate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-held");
  EXPECT_EQ(NextEvent(), "-play-held");
  EXPECT_EQ(NextEvent(), "+play-stop");
}

TEST_F(PortalKeys, ComeFromAPortalThatTellsEverybody) {
  Hold({kPlayStop}, {.tellsEverybody = true});
  portal->Activate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-stop");
}

TEST_F(PortalKeys, ThatTheDesktopChangesAreLetGoOf) {
  Hold({kPlayHeld, kSlower});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  portal->GiveAnother("play-held", "F12");
  EXPECT_EQ(NextEvent(), "-play-held");
  EXPECT_EQ(GrantOf(AfarAction::PlayHeld).given, "F12");
  EXPECT_EQ(GrantOf(AfarAction::Slower).given, "CTRL+SHIFT+F6");
  portal->Deactivate("play-held");
  portal->Activate("slower");
  EXPECT_EQ(NextEvent(), "+slower");
}

TEST_F(PortalKeys, AreTheDecksOnceTheDesktopGivesWhatItRefused) {
  StartPortal({.gives = [](const WishedShortcut&) { return std::nullopt; }});
  StartKeys();
  keys->Wish({kPlayStop});
  ASSERT_TRUE(UntilAll(KeyState::Refused));
  portal->Activate("play-stop");
  portal->GiveAnother("play-stop", "F3");
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(Events(), "");
  portal->Activate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-stop");
}

TEST_F(PortalKeys, HaveAPageOfTheDesktopFromItsSecondVersionOn) {
  Hold({kPlayStop}, {.version = 2});
  ASSERT_TRUE(keys->CanConfigure());
  keys->Configure();
  EXPECT_TRUE(Until([&] { return portal->Count("ConfigureShortcuts") == 1; }));
  keys->Wish({});
  EXPECT_FALSE(keys->CanConfigure());
}

TEST_F(PortalKeys, HaveNoPageOfTheDesktopInItsFirstVersion) {
  Hold({kPlayStop}, {.version = 1});
  EXPECT_FALSE(keys->CanConfigure());
  keys->Configure();
  portal->Activate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-stop");
  EXPECT_EQ(portal->Calls(), kOneSession);
}

TEST_F(PortalKeys, AreGivenByAPortalThatWantsNoNames) {
  Hold({kPlayStop}, {.knowsPrograms = false});
  EXPECT_EQ(portal->Programs(), std::vector<std::string>());
}

TEST_F(PortalKeys, AreAskedForOnceWhenWishesFollowEachOther) {
  StartPortal({.asksSomebody = true});
  StartKeys();
  keys->Wish({});
  std::vector<KeyWish> wishes;
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    wishes.push_back({.action = name.action, .trigger = "F" + std::to_string(wishes.size() + 1)});
    keys->Wish(wishes);
  }
  ASSERT_TRUE(Until([&] { return portal->Windows() == 1; }));
  EXPECT_EQ(portal->Wished().size(), wishes.size());
  portal->Answer();
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Calls(), kOneSession);
  EXPECT_TRUE(Rests());
}

TEST_F(PortalKeys, AreAskedForInAnotherSessionWhenTheWishIsAnother) {
  Hold({kPlayStop, kPlayHeld});
  portal->Activate("play-stop");
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-stop");
  EXPECT_EQ(NextEvent(), "+play-held");
  const std::string before = portal->SessionPath();
  keys->Wish({kPlayHeld, kSlower});
  // A key that is wished for no more is given back at once.
  EXPECT_EQ(Events(), "-play-stop ");
  EXPECT_EQ(keys->Grants(),
            (std::vector<KeyGrant>{
                {.action = AfarAction::PlayHeld, .state = KeyState::Held, .given = "CTRL+F5"},
                {.action = AfarAction::Slower, .state = KeyState::Asked}}));
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(Events(), "-play-held ");
  EXPECT_NE(portal->SessionPath(), before);
  EXPECT_EQ(portal->Sessions(), 1);
  EXPECT_EQ(portal->Count("BindShortcuts"), 2);
}

TEST_F(PortalKeys, StayTheDecksWhenTheWishIsTheSame) {
  Hold({kPlayStop, kSlower});
  portal->Activate("slower");
  EXPECT_EQ(NextEvent(), "+slower");
  keys->Wish({kPlayStop, kSlower});
  EXPECT_TRUE(Rests());
  keys->Wish({kSlower});
  keys->Wish({kSlower, kPlayStop});
  ASSERT_TRUE(Until([&] { return Rests(); }));
  EXPECT_EQ(StateOf(AfarAction::Slower), KeyState::Held);
  portal->Deactivate("slower");
  EXPECT_EQ(NextEvent(), "-slower");
  EXPECT_EQ(portal->Calls(), kOneSession);
}

TEST_F(PortalKeys, DoNothingFromTheMomentTheyAreNotWishedFor) {
  Hold({kPlayStop, kSlower});
  keys->Wish({kSlower});
  portal->Activate("play-stop");
  portal->Activate("slower");
  EXPECT_EQ(NextEvent(), "+slower");
}

TEST_F(PortalKeys, AreGivenBackWithTheLastWish) {
  Hold({kPlayHeld});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  keys->Wish({});
  EXPECT_EQ(Events(), "-play-held ");
  EXPECT_FALSE(connection.IsConnected());
  EXPECT_TRUE(Rests());
  EXPECT_EQ(keys->Grants(), std::vector<KeyGrant>());
  // A desktop gives back what a program had that has gone from the bus.
  keys->Wish({kPlayHeld});
  ASSERT_TRUE(UntilHeld());
  EXPECT_EQ(portal->Count("BindShortcuts"), 2);
}

TEST_F(PortalKeys, OfAnotherUserOfTheBusAreGivenBackToo) {
  struct User : platform::BusUser {
    void Connected(sd_bus&) override {}
    void Lost() override {}
  } other;
  connection.Attach(other);
  Hold({kPlayStop});
  keys->Wish({});
  EXPECT_TRUE(Until([&] { return portal->Sessions() == 0; }));
  EXPECT_TRUE(connection.IsConnected());
  connection.Detach(other);
}

TEST_F(PortalKeys, EndWithTheirOwner) {
  Hold({kPlayStop});
  keys.reset();
  EXPECT_FALSE(connection.IsConnected());
  EXPECT_TRUE(Rests());
}

}  // namespace
}  // namespace tavlo::test
