#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/listener.h"
#include "platform/bus/bus_connection.h"
#include "platform/bus/portal_keys.h"
#include "remote/global_keys.h"
#include "support/mock_portal.h"
#include "support/patience.h"
#include "support/plain_loop.h"
#include "support/real_bus.h"

namespace tavlo::test {

using remote::AfarAction;
using remote::KeyEvent;
using remote::KeyGrant;
using remote::KeyState;
using remote::KeyWay;
using remote::KeyWish;

inline const KeyWish kPlayStop{.action = AfarAction::PlayStop, .trigger = "F4"};
inline const KeyWish kPlayHeld{.action = AfarAction::PlayHeld, .trigger = "CTRL+F5"};
inline const KeyWish kSlower{.action = AfarAction::Slower, .trigger = "CTRL+SHIFT+F6"};

/// The keys of a desktop with a portal, on a bus of the test's own.
struct PortalDesk : testing::Test {
  /// Nobody of these tests sits at a desktop. No row of losses ends because it took long.
  static constexpr platform::PortalPatience kImpatience{.still = std::chrono::milliseconds(20),
                                                        .firstRetry = std::chrono::milliseconds(5),
                                                        .retries = 3,
                                                        .stood = std::chrono::hours(24),
                                                        .bus = std::chrono::hours(24)};

  struct Ear : base::Listener {
    void HandleNews() override { ++news; }
    int news = 0;
  };

  void SetUp() override { ASSERT_NE(bus.Address(), ""); }

  void StartPortal(const PortalManners& manners = {}) {
    portal = std::make_unique<MockPortal>(bus.Address(), manners);
  }
  void StartKeys(const platform::PortalPatience& patience = kImpatience) {
    keys = std::make_unique<platform::PortalKeys>(loop, connection, patience);
    keys->Tell(ear);
  }
  /// With a portal that gives the keys of these wishes.
  void Hold(const std::vector<KeyWish>& wishes, const PortalManners& manners = {}) {
    StartPortal(manners);
    StartKeys();
    keys->Wish(wishes);
    ASSERT_TRUE(UntilHeld());
  }

  /// Turns the loop until it is so; false when it never is.
  bool Until(const std::function<bool()>& condition) {
    return Comes([&] {
      loop.Wait(std::chrono::milliseconds(1));
      return condition();
    });
  }
  bool UntilAll(KeyState state) {
    return Until([&] {
      for (const KeyGrant& grant : keys->Grants()) {
        if (grant.state != state) return false;
      }
      return true;
    });
  }
  bool UntilHeld() { return UntilAll(KeyState::Held); }
  bool UntilAsked(int windows) {
    return Until([&] { return portal->Count("BindShortcuts") == windows; });
  }
  KeyState StateOf(AfarAction action) { return GrantOf(action).state; }
  KeyGrant GrantOf(AfarAction action) {
    for (const KeyGrant& grant : keys->Grants()) {
      if (grant.action == action) return grant;
    }
    ADD_FAILURE() << "no grant";
    return {.action = action, .state = KeyState::NotOnKeyboard};
  }
  /// What comes next, in words: +id for a press, -id for a release.
  std::string NextEvent() {
    std::optional<KeyEvent> event;
    if (!Until([&] { return (event = keys->Next()).has_value(); })) return "nothing";
    return InWords(*event);
  }
  /// What waits now.
  std::string Events() {
    std::string events;
    while (const auto event = keys->Next()) events += InWords(*event) + " ";
    return events;
  }
  static std::string InWords(const KeyEvent& event) {
    return (event.down ? "+" : "-") +
           std::string(remote::kAfarActions[remote::IndexOf(event.action)].id);
  }
  /// No timer runs, so nothing more happens until somebody else does something.
  bool Rests() { return !loop.Timers().NextDue().has_value(); }

  RealBus bus;
  PlainLoop loop;
  platform::BusConnection connection{loop, loop, bus.Address()};
  Ear ear;
  std::unique_ptr<MockPortal> portal;
  std::unique_ptr<platform::PortalKeys> keys;
};

}  // namespace tavlo::test
