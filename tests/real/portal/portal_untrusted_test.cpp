#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "base/text.h"
#include "platform/bus/key_presses.h"
#include "platform/bus/portal_messages.h"
#include "portal/portal_desk.h"

namespace tavlo::test {
namespace {

/// What nobody should believe.
using PortalUntrusted = PortalDesk;
using Words = std::function<void(sd_bus_message& message)>;

TEST_F(PortalUntrusted, SignalsOfStrangersAreNone) {
  Hold({kPlayStop, kPlayHeld});
  const std::string session = portal->SessionPath();
  const auto emit = [&](const char* member, const Words& words) {
    EmitAsStranger(bus.Address(), portal->Client(), {.member = member}, words);
  };
  emit("Activated", [&](sd_bus_message& signal) { AppendKey(signal, session, "play-stop"); });
  emit("ShortcutsChanged",
       [&](sd_bus_message& signal) { AppendShortcut(signal, session, "play-stop", "F1"); });
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  emit("Deactivated", [&](sd_bus_message& signal) { AppendKey(signal, session, "play-held"); });
  portal->Activate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-stop");
  EXPECT_EQ(GrantOf(AfarAction::PlayStop).given, "F4");
}

TEST_F(PortalUntrusted, AStrangerCanNotSayThatThePortalHasGone) {
  Hold({kPlayHeld, kSlower});
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  EmitAsStranger(bus.Address(), portal->Client(),
                 {.path = "/org/freedesktop/DBus",
                  .interface = "org.freedesktop.DBus",
                  .member = "NameOwnerChanged"},
                 [](sd_bus_message& signal) {
                   sd_bus_message_append(&signal, "sss", "org.freedesktop.portal.Desktop", ":1.1",
                                         "");
                 });
  portal->Activate("slower");
  EXPECT_EQ(NextEvent(), "+slower");
  EXPECT_EQ(portal->Sessions(), 1);
}

TEST_F(PortalUntrusted, SignalsOfOtherSessionsAreNone) {
  Hold({kPlayStop, kPlayHeld});
  const std::string other = portal->SessionPath() + "0";
  portal->Emit("Activated", [&](sd_bus_message& signal) { AppendKey(signal, other, "play-stop"); });
  portal->Emit("ShortcutsChanged",
               [&](sd_bus_message& signal) { AppendShortcut(signal, other, "play-stop", "F1"); });
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  EXPECT_EQ(GrantOf(AfarAction::PlayStop).given, "F4");
}

TEST_F(PortalUntrusted, KeysThatNobodyWishedForAreNone) {
  Hold({kPlayHeld});
  for (const char* const id : {"complete", "", "PLAY-HELD", "no action at all"}) {
    portal->Activate(id);
    portal->GiveAnother(id, "F1");
  }
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  EXPECT_EQ(keys->Grants().size(), 1u);
}

TEST_F(PortalUntrusted, SignalsOfAnotherFormAreNone) {
  Hold({kPlayHeld});
  const std::string session = portal->SessionPath();
  const std::vector<Words> forms{
      [](sd_bus_message&) {},
      [&](sd_bus_message& signal) {
        sd_bus_message_append(&signal, "ss", session.c_str(), "play-held");
      },
      [&](sd_bus_message& signal) {
        sd_bus_message_append(&signal, "ssta{sv}", session.c_str(), "play-held", std::uint64_t{1},
                              0);
      },
      [&](sd_bus_message& signal) { sd_bus_message_append(&signal, "oi", session.c_str(), 1); },
      [&](sd_bus_message& signal) {
        sd_bus_message_append(&signal, "oas", session.c_str(), 1, "play-held");
      }};
  for (const char* const member : {"Activated", "Deactivated", "ShortcutsChanged"}) {
    for (const Words& form : forms) portal->Emit(member, form);
  }
  portal->Activate("play-held");
  EXPECT_EQ(NextEvent(), "+play-held");
  EXPECT_EQ(GrantOf(AfarAction::PlayHeld).given, "CTRL+F5");
}

/// What a portal may say instead of an answer that creates a session.
TEST_F(PortalUntrusted, SessionsOfAnotherFormAreNone) {
  const std::vector<std::pair<const char*, Words>> lies{
      {"nothing", [](sd_bus_message&) {}},
      {"a text", [](sd_bus_message& response) { sd_bus_message_append(&response, "s", "yes"); }},
      {"no handle",
       [](sd_bus_message& response) { sd_bus_message_append(&response, "ua{sv}", 0u, 0); }},
      {"a number",
       [](sd_bus_message& response) {
         sd_bus_message_append(&response, "ua{sv}", 0u, 1, "session_handle", "u", 7u);
       }},
      {"no path",
       [](sd_bus_message& response) {
         sd_bus_message_append(&response, "ua{sv}", 0u, 1, "session_handle", "s", "//");
       }},
      {"a list of paths",
       [](sd_bus_message& response) {
         sd_bus_message_append(&response, "ua{sv}", 0u, 1, "session_handle", "ao", 1, "/a");
       }},
      {"a number that is no answer", [](sd_bus_message& response) {
         sd_bus_message_append(&response, "ua{sv}", ~0u, 1, "session_handle", "s", "/a");
       }}};
  for (const auto& [name, words] : lies) {
    StartPortal({.saysCreated = words});
    StartKeys();
    keys->Wish({kPlayStop});
    EXPECT_TRUE(UntilAll(KeyState::Refused)) << name;
    EXPECT_EQ(portal->Count("BindShortcuts"), 0) << name;
    EXPECT_TRUE(Rests()) << name;
    keys.reset();
    portal.reset();
  }
}

/// Puts a list of shortcuts, which `words` adds, into an answer that says yes.
Words Shortcuts(const char* type, const Words& words) {
  return [type, words](sd_bus_message& response) {
    sd_bus_message_append(&response, "u", 0u);
    sd_bus_message_open_container(&response, 'a', "{sv}");
    sd_bus_message_open_container(&response, 'e', "sv");
    sd_bus_message_append(&response, "s", "shortcuts");
    sd_bus_message_open_container(&response, 'v', type);
    words(response);
    for (int containers = 0; containers < 3; ++containers)
      sd_bus_message_close_container(&response);
  };
}

TEST_F(PortalUntrusted, AnswersOfAnotherFormGiveNothing) {
  const std::vector<std::pair<const char*, Words>> lies{
      {"nothing", [](sd_bus_message&) {}},
      {"no shortcuts",
       [](sd_bus_message& response) { sd_bus_message_append(&response, "ua{sv}", 0u, 0); }},
      {"a text",
       [](sd_bus_message& response) {
         sd_bus_message_append(&response, "ua{sv}", 0u, 1, "shortcuts", "s", "play-stop");
       }},
      {"names alone", Shortcuts("as",
                                [](sd_bus_message& response) {
                                  sd_bus_message_append(&response, "as", 1, "play-stop");
                                })},
      {"numbers", Shortcuts("a(ua{sv})",
                            [](sd_bus_message& response) {
                              sd_bus_message_append(&response, "a(ua{sv})", 1, 1u, 0);
                            })},
      {"none", Shortcuts("a(sa{sv})",
                         [](sd_bus_message& response) {
                           sd_bus_message_append(&response, "a(sa{sv})", 0);
                         })},
      {"others", Shortcuts("a(sa{sv})", [](sd_bus_message& response) {
         sd_bus_message_append(&response, "a(sa{sv})", 2, "complete", 0, "nobody's", 0);
       })}};
  for (const auto& [name, words] : lies) {
    StartPortal({.saysBound = words});
    StartKeys();
    keys->Wish({kPlayStop});
    EXPECT_TRUE(UntilAll(KeyState::Refused)) << name;
    EXPECT_EQ(keys->Grants().size(), 1u) << name;
    EXPECT_TRUE(Rests()) << name;
    keys.reset();
    portal.reset();
  }
}

TEST_F(PortalUntrusted, TriggersOfAnotherFormHaveNoName) {
  Hold({kPlayStop, kPlayHeld, kSlower},
       {.saysBound = Shortcuts("a(sa{sv})", [](sd_bus_message& response) {
          sd_bus_message_append(&response, "a(sa{sv})", 3,                             //
                                "play-stop", 1, "trigger_description", "u", 7u,        //
                                "play-held", 2, "trigger_description", "as", 1, "F5",  //
                                "unheard", "(iv)", 1, "s", "of",                       //
                                "slower", 0);
        })});
  for (const KeyGrant& grant : keys->Grants()) EXPECT_EQ(grant.given, "");
}

TEST_F(PortalUntrusted, NamesOfTriggersAreShortAndInOneLine) {
  std::string longName;
  for (int letters = 0; letters < 5000; ++letters) longName += "\xC3\xA4";
  Hold({kPlayStop, kSlower}, {.gives = [&](const WishedShortcut& wish) {
         return wish.id == "slower" ? longName : std::string("F4\n\x1B[2J\xE2\x80\xAE");
       }});
  EXPECT_EQ(GrantOf(AfarAction::PlayStop).given, "F4[2J");
  const std::string& given = GrantOf(AfarAction::Slower).given;
  EXPECT_EQ(base::CharacterCount(given), platform::kLongestTrigger);
  EXPECT_EQ(given, longName.substr(0, given.size()));
}

TEST_F(PortalUntrusted, ShortcutsWithoutAnEndAreNotReadToIt) {
  Hold({kPlayStop}, {.saysBound = Shortcuts("a(sa{sv})", [](sd_bus_message& response) {
                       sd_bus_message_open_container(&response, 'a', "(sa{sv})");
                       sd_bus_message_append(&response, "(sa{sv})", "play-stop", 1,
                                             "trigger_description", "s", "F4");
                       for (int more = 0; more < 100'000; ++more) {
                         sd_bus_message_append(&response, "(sa{sv})", "play-stop", 1,
                                               "trigger_description", "s",
                                               more < 1000 ? "F4" : "F9");
                       }
                       sd_bus_message_close_container(&response);
                     })});
  EXPECT_EQ(GrantOf(AfarAction::PlayStop).given, "F4");
}

TEST_F(PortalUntrusted, PathsOfAnotherFormEndTheQuestion) {
  StartPortal({.instead = [](sd_bus_message& call) {
    if (std::string(sd_bus_message_get_member(&call)) != "CreateSession") return false;
    return sd_bus_reply_method_return(&call, "s", "/a/path") >= 0;
  }});
  StartKeys();
  keys->Wish({kPlayStop});
  EXPECT_TRUE(UntilAll(KeyState::Refused));
  EXPECT_TRUE(Rests());
}

TEST_F(PortalUntrusted, VersionsOfAnotherFormAreNone) {
  StartPortal({.instead = [](sd_bus_message& call) {
    if (std::string(sd_bus_message_get_member(&call)) != "Get") return false;
    return sd_bus_reply_method_return(&call, "v", "s", "2") >= 0;
  }});
  StartKeys();
  keys->Wish({kPlayStop});
  EXPECT_TRUE(Until([&] { return keys->Way() == KeyWay::PortalMissing; }));
}

TEST_F(PortalUntrusted, PressesThatNobodyTakesAreDroppedWithTheirReleases) {
  Hold({kPlayStop, kPlayHeld});
  constexpr int kMany = 1000;
  for (int presses = 0; presses < kMany; ++presses) {
    portal->Activate("play-stop");
    portal->Deactivate("play-stop");
  }
  // It comes behind all of them.
  portal->GiveAnother("play-held", "F1");
  ASSERT_TRUE(Until([&] { return GrantOf(AfarAction::PlayHeld).given == "F1"; }));
  std::size_t events = 0;
  bool down = false;
  while (const auto event = keys->Next()) {
    ++events;
    EXPECT_NE(std::exchange(down, event->down), event->down);
  }
  EXPECT_FALSE(down);
  EXPECT_GE(events, platform::KeyPresses::kMost);
  EXPECT_LE(events, platform::KeyPresses::kMost + 1);
  portal->Activate("play-stop");
  EXPECT_EQ(NextEvent(), "+play-stop");
}

}  // namespace
}  // namespace tavlo::test
