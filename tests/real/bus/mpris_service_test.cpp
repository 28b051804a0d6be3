#include "platform/bus/mpris_service.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "bus/bus_caller.h"
#include "bus/offered_player.h"
#include "support/real_bus.h"

namespace tavlo::test {
namespace {

using remote::MediaCommand;
using remote::PlaybackStatus;
using What = MediaCommand::What;

constexpr const char* kRoot = "org.mpris.MediaPlayer2";
constexpr const char* kPlayer = "org.mpris.MediaPlayer2.Player";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";

/// A player on a bus of its own, and somebody who calls it.
struct MprisServiceTest : testing::Test {
  void SetUp() override {
    ASSERT_NE(bus.Address(), "");
    ASSERT_TRUE(deck.Offer());
  }

  /// What somebody who listens hears of a change.
  Texts HeardOf(const std::function<void(StandInPlayer&)>& change) {
    caller.Listen();
    change(deck.source);
    deck.service.TellChanges();
    // The bus keeps the order, so the answer comes behind all signals.
    caller.GetOfPlayer("Position");
    return caller.heard;
  }
  MediaCommand LastTaken() {
    return deck.source.taken.empty() ? MediaCommand{.what = What::Quit} : deck.source.taken.back();
  }

  RealBus bus;
  OfferedPlayer deck{bus.Address()};
  BusCaller caller{bus.Address(), deck.loop, [this](const std::function<bool()>& condition) {
                     return deck.Until(condition);
                   }};
};

TEST_F(MprisServiceTest, HasTheNameThatPlayersAreLookedForUnder) {
  EXPECT_EQ(caller.Players(), Texts({"org.mpris.MediaPlayer2.tavlodeck"}));
  EXPECT_EQ(deck.news, 1);
}

TEST_F(MprisServiceTest, SaysWhatItIs) {
  EXPECT_EQ(caller.Get(kRoot, "Identity"), "s \"Tavlo Deck\"");
  EXPECT_EQ(caller.Get(kRoot, "DesktopEntry"), "s \"tavlodeck\"");
  EXPECT_EQ(caller.Get(kRoot, "CanQuit"), "b true");
  EXPECT_EQ(caller.Get(kRoot, "CanRaise"), "b true");
  EXPECT_EQ(caller.Get(kRoot, "HasTrackList"), "b false");
  EXPECT_EQ(caller.Get(kRoot, "SupportedUriSchemes"), "as []");
  EXPECT_EQ(caller.Get(kRoot, "SupportedMimeTypes"), "as []");
}

TEST_F(MprisServiceTest, SaysHowItStands) {
  deck.source.state = {.status = PlaybackStatus::Paused,
                       .track = 7,
                       .title = "Letter, 31",
                       .artist = "Brown",
                       .length = 61'000'000,
                       .rate = 1.25,
                       .volume = 0.5,
                       .canPlay = true,
                       .canSeek = true};
  deck.source.position = 1'500'000;
  deck.service.TellChanges();
  EXPECT_EQ(caller.Call(kProperties, "GetAll", "s", kPlayer),
            "{\"PlaybackStatus\": s \"Paused\", \"Rate\": d 1.25, \"Metadata\": a{sv} "
            "{\"mpris:trackid\": o /invalid/tavlodeck/dictation/7, \"mpris:length\": x 61000000, "
            "\"xesam:title\": s \"Letter, 31\", \"xesam:artist\": as [\"Brown\"]}, "
            "\"Volume\": d 0.5, \"Position\": x 1500000, \"MinimumRate\": d 0.5, "
            "\"MaximumRate\": d 1.5, \"CanGoNext\": b false, \"CanGoPrevious\": b false, "
            "\"CanPlay\": b true, \"CanPause\": b false, \"CanSeek\": b true, "
            "\"CanControl\": b true}");
}

TEST_F(MprisServiceTest, SaysOfADocumentOnlyWhatIsKnown) {
  EXPECT_EQ(caller.GetOfPlayer("Metadata"),
            "a{sv} {\"mpris:trackid\": o /org/mpris/MediaPlayer2/TrackList/NoTrack}");
  EXPECT_EQ(caller.GetOfPlayer("PlaybackStatus"), "s \"Stopped\"");
}

TEST_F(MprisServiceTest, ShowsBytesOfNamesAsTheWindowsDo) {
  deck.source.state.track = 1;
  deck.source.state.title =
      std::string("a\0b\xFF\x1B[31m\xEF\xBF\xBF", 12) + "\xED\xA0\x80 \xC3\xA9";
  deck.source.state.artist = "\xFF";
  deck.service.TellChanges();
  EXPECT_EQ(caller.GetOfPlayer("Metadata"),
            "a{sv} {\"mpris:trackid\": o /invalid/tavlodeck/dictation/1, \"xesam:title\": s "
            "\"a\u2400b\uFFFD\u241B[31m\uFFFD\uFFFD\uFFFD\uFFFD \u00E9\", "
            "\"xesam:artist\": as [\"\uFFFD\"]}");
}

TEST_F(MprisServiceTest, TellsWhatItOffersToWhoeverLooksIntoIt) {
  const std::string shown = caller.Call("org.freedesktop.DBus.Introspectable", "Introspect");
  for (const char* part :
       {"<interface name=\"org.mpris.MediaPlayer2\">",
        "<interface name=\"org.mpris.MediaPlayer2.Player\">", "<method name=\"PlayPause\">",
        "<signal name=\"Seeked\">", "<property name=\"Rate\" type=\"d\" access=\"readwrite\">",
        "<property name=\"Metadata\" type=\"a{sv}\" access=\"read\">"}) {
    EXPECT_TRUE(Has(shown, part)) << part;
  }
  EXPECT_TRUE(Has(shown,
                  "<property name=\"Position\" type=\"x\" access=\"read\">\n   "
                  "<annotation name=\"org.freedesktop.DBus.Property."
                  "EmitsChangedSignal\" value=\"false\"/>"));
  for (const char* part : {"LoopStatus", "Shuffle", "Fullscreen"}) {
    EXPECT_FALSE(Has(shown, part)) << part;
  }
}

TEST_F(MprisServiceTest, AnswersACommandAndHandsItOn) {
  struct {
    const char* interface;
    const char* method;
    What what;
  } const commands[] = {
      {kPlayer, "Play", What::Play},           {kPlayer, "Pause", What::Pause},
      {kPlayer, "PlayPause", What::PlayPause}, {kPlayer, "Stop", What::Stop},
      {kPlayer, "Next", What::Next},           {kPlayer, "Previous", What::Previous},
      {kRoot, "Raise", What::Raise},           {kRoot, "Quit", What::Quit}};
  for (const auto& [interface, method, what] : commands) {
    deck.source.taken.clear();
    EXPECT_EQ(caller.Call(interface, method), "") << method;
    ASSERT_EQ(deck.source.taken.size(), 1U) << method;
    EXPECT_EQ(LastTaken().what, what) << method;
  }
}

TEST_F(MprisServiceTest, HandsOnHowFarIsToBeSought) {
  for (const std::int64_t offset :
       {std::int64_t{-5'000'000}, std::int64_t{0}, std::numeric_limits<std::int64_t>::min(),
        std::numeric_limits<std::int64_t>::max()}) {
    EXPECT_EQ(caller.CallPlayer("Seek", "x", offset), "");
    EXPECT_EQ(LastTaken().what, What::Seek);
    EXPECT_EQ(LastTaken().time, offset);
  }
}

TEST_F(MprisServiceTest, HandsOnAPositionWithItsDocument) {
  const char* const track = "/invalid/tavlodeck/dictation/18446744073709551615";
  EXPECT_EQ(caller.CallPlayer("SetPosition", "ox", track, std::int64_t{-1}), "");
  EXPECT_EQ(LastTaken().what, What::SetPosition);
  EXPECT_EQ(LastTaken().time, -1);
  EXPECT_EQ(LastTaken().track, std::numeric_limits<std::uint64_t>::max());
}

TEST_F(MprisServiceTest, IgnoresAPositionInADocumentThatIsNotOurs) {
  for (const char* track :
       {"/", "/org/mpris/MediaPlayer2/TrackList/NoTrack", "/invalid/tavlodeck/dictation",
        "/invalid/tavlodeck/dictation/0", "/invalid/tavlodeck/dictation/07",
        "/invalid/tavlodeck/dictation/7/8", "/invalid/tavlodeck/dictation/7_",
        "/invalid/tavlodeck/dictation/18446744073709551616", "/com/example/dictation/7"}) {
    EXPECT_EQ(caller.CallPlayer("SetPosition", "ox", track, std::int64_t{5}), "") << track;
  }
  EXPECT_TRUE(deck.source.taken.empty());
}

TEST_F(MprisServiceTest, HandsOnEveryNumberAsItCame) {
  const double infinite = std::numeric_limits<double>::infinity();
  for (const double number : {0.75, -3.0, 1e300, -infinite, infinite}) {
    EXPECT_EQ(caller.Set("Rate", "d", number), "");
    EXPECT_EQ(LastTaken().what, What::SetRate);
    EXPECT_EQ(LastTaken().number, number);
    EXPECT_EQ(caller.Set("Volume", "d", number), "");
    EXPECT_EQ(LastTaken().what, What::SetVolume);
    EXPECT_EQ(LastTaken().number, number);
  }
  EXPECT_EQ(caller.Set("Rate", "d", std::nan("")), "");
  EXPECT_TRUE(std::isnan(LastTaken().number));
  EXPECT_EQ(LastTaken().what, What::SetRate);
}

TEST_F(MprisServiceTest, TakesNoSpeedAtAllForAPause) {
  caller.Set("Rate", "d", 0.0);
  EXPECT_EQ(LastTaken().what, What::Pause);
  caller.Set("Volume", "d", 0.0);
  EXPECT_EQ(LastTaken().what, What::SetVolume);
}

TEST_F(MprisServiceTest, RefusesWhatIsNotItsKind) {
  const std::string error = "org.freedesktop.DBus.Error.";
  EXPECT_EQ(caller.CallPlayer("OpenUri", "s", "file:///a.wav"), error + "NotSupported");
  EXPECT_EQ(caller.CallPlayer("Seek", "s", "far"), error + "InvalidArgs");
  EXPECT_EQ(caller.CallPlayer("Play", "x", std::int64_t{1}), error + "InvalidArgs");
  EXPECT_EQ(caller.CallPlayer("Rewind"), error + "UnknownMethod");
  EXPECT_EQ(caller.Call("org.mpris.MediaPlayer2.TrackList", "GoTo"), error + "UnknownMethod");
  EXPECT_EQ(caller.Set("Rate", "s", "fast"), error + "InvalidArgs");
  EXPECT_EQ(caller.Set("Position", "x", std::int64_t{5}), error + "PropertyReadOnly");
  EXPECT_EQ(caller.Set("Metadata", "s", "mine"), error + "PropertyReadOnly");
  EXPECT_EQ(caller.GetOfPlayer("Shuffle"), error + "UnknownProperty");
  EXPECT_TRUE(deck.source.taken.empty());
}

TEST_F(MprisServiceTest, TellsWhatChangedAndNothingElse) {
  EXPECT_EQ(HeardOf([](StandInPlayer& source) { source.state.rate = 1.5; }),
            Texts({"PropertiesChanged \"org.mpris.MediaPlayer2.Player\", "
                   "{\"Rate\": d 1.5}, []"}));
  EXPECT_EQ(
      HeardOf([](StandInPlayer& source) {
        source.state.status = PlaybackStatus::Playing;
        source.state.canPause = true;
        source.state.track = 2;
      }).back(),
      "PropertiesChanged \"org.mpris.MediaPlayer2.Player\", {\"PlaybackStatus\": s \"Playing\", "
      "\"Metadata\": a{sv} {\"mpris:trackid\": o /invalid/tavlodeck/dictation/2}, "
      "\"CanPause\": b true}, []");
}

TEST_F(MprisServiceTest, TellsEachPropertyThatOthersShow) {
  const std::vector<std::pair<std::function<void(remote::MediaState&)>, std::string>> changes{
      {[](auto& state) { state.title = "Memo"; }, "Metadata"},
      {[](auto& state) { state.artist = "Okafor"; }, "Metadata"},
      {[](auto& state) { state.length = 5; }, "Metadata"},
      {[](auto& state) { state.volume = 0.25; }, "Volume"},
      {[](auto& state) { state.canPlay = true; }, "CanPlay"},
      {[](auto& state) { state.canSeek = true; }, "CanSeek"},
      {[](auto& state) { state.canGoNext = true; }, "CanGoNext"},
      {[](auto& state) { state.canGoPrevious = true; }, "CanGoPrevious"}};
  for (const auto& each : changes) {
    const std::string& name = each.second;
    caller.heard.clear();
    const auto heard = HeardOf([&](StandInPlayer& source) { each.first(source.state); });
    ASSERT_EQ(heard.size(), 1U) << name;
    EXPECT_TRUE(Has(heard[0], "{\"" + name + "\": ")) << heard[0];
  }
}

TEST_F(MprisServiceTest, TellsOfAJumpButNotThatThePositionGoesOn) {
  EXPECT_EQ(HeardOf([](StandInPlayer& source) { source.position = 5'000'000; }), Texts({}));
  EXPECT_EQ(HeardOf([](StandInPlayer& source) {
              source.position = 9'000'000;
              source.jumped = true;
            }),
            Texts({"Seeked 9000000"}));
}

TEST_F(MprisServiceTest, DoesNothingAtRest) {
  caller.Listen();
  caller.GetOfPlayer("Position");
  const int before = deck.loop.Wakenings;
  deck.loop.Wait(std::chrono::milliseconds(300));
  // The one that ends the time.
  EXPECT_LE(deck.loop.Wakenings - before, 1);
  EXPECT_TRUE(caller.heard.empty());
}

TEST_F(MprisServiceTest, IsGoneOnceItIsWithdrawn) {
  deck.service.Withdraw();
  EXPECT_FALSE(deck.service.IsLive());
  EXPECT_TRUE(deck.Until([this] { return caller.Players().empty(); }));
  EXPECT_EQ(deck.news, 1) << "whoever withdraws knows it";
  deck.service.TellChanges();
  EXPECT_TRUE(deck.Offer());
  EXPECT_EQ(caller.Players(), Texts({"org.mpris.MediaPlayer2.tavlodeck"}));
}

}  // namespace
}  // namespace tavlo::test
