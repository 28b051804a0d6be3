#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "mixer_page/sound_control.h"
#include "platform/sound/cubeb_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/plain_loop.h"
#include "support/sound_pump.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;

constexpr int kDocumentRate = 16000;

/// A server with a second output beside the one that is the default, and a document that plays.
struct DeviceChange : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.Start());
    second = PlugInOutput("Second");
    player = std::make_unique<platform::CubebPlayer>(loop);
    pump = std::make_unique<SoundPump>(*player, transform);
    pump->Load(Tone(440, 60, kDocumentRate));
  }

  /// The index of that device in the player's list.
  int IndexOf(const std::string& name) {
    int found = -1;
    const int before = player->CurrentDevice();
    for (int index = 1; index < player->DeviceCount(); ++index) {
      player->SelectDevice(index);
      if (player->DeviceName() == name) found = index;
    }
    player->SelectDevice(before);
    return found;
  }

  /// The output that the program's stream sounds on, "" for none.
  static std::string SoundsOn() {
    const std::string streams = Pactl("list short sink-inputs");
    const std::string sinks = Pactl("list short sinks");
    for (const char* name : {"deck", "Second", "Third"}) {
      const auto at = sinks.find(std::string("\t") + name);
      if (at == std::string::npos) continue;
      const auto line = sinks.rfind('\n', at) + 1;
      const std::string number = sinks.substr(line, at - line);
      const auto stream = streams.find('\t');
      if (stream != std::string::npos && streams.substr(stream + 1, number.size()) == number) {
        return name;
      }
    }
    return "";
  }

  bool PlaysOn(double seconds) {
    const auto from = player->PlayedSamples();
    return loop.WaitUntil(
        [&] {
          return static_cast<double>(player->PlayedSamples() - from) > seconds * kDocumentRate;
        },
        kPatience);
  }

  SoundServer server;
  PlainLoop loop;
  platform::SoundTouchTransform transform;
  std::unique_ptr<platform::CubebPlayer> player;
  std::unique_ptr<SoundPump> pump;
  std::string second;
};

TEST_F(DeviceChange, AnotherDeviceGoesOnWhereTheOneBeforeWas) {
  pump->Play();
  ASSERT_TRUE(PlaysOn(1));
  ASSERT_EQ(SoundsOn(), "deck");
  const int index = IndexOf("Second");
  const auto before = player->PlayedSamples();
  const auto begun = loop.Now();
  player->SelectDevice(index);
  const auto after = player->PlayedSamples();
  const std::chrono::duration<double> taken = loop.Now() - begun;
  EXPECT_EQ(SoundsOn(), "Second");
  EXPECT_GE(after, before);
  // It may play while it changes, and no faster than the clock.
  EXPECT_LT(static_cast<double>(after - before), (taken.count() + 0.1) * kDocumentRate);
  EXPECT_TRUE(PlaysOn(1));
  EXPECT_EQ(pump->Ends, 0);
  const double stopped = pump->Stop();
  EXPECT_NEAR(stopped, static_cast<double>(player->PlayedSamples()), 0.1 * kDocumentRate);
}

TEST_F(DeviceChange, DeviceThatIsPluggedInLaterIsFoundByItsName) {
  pump->Play();
  ASSERT_TRUE(PlaysOn(1));
  PlugInOutput("Third");
  player->AddDevices({"Second", "Third"});
  const int index = player->DeviceCount() - 1;
  ASSERT_EQ(player->DeviceNames().back(), "Third");
  player->SelectDevice(index);
  EXPECT_EQ(player->DeviceName(), "Third");
  EXPECT_EQ(SoundsOn(), "Third");
  EXPECT_TRUE(PlaysOn(1));
  EXPECT_EQ(pump->Ends, 0);
  pump->Stop();
}

TEST_F(DeviceChange, DeviceThatIsPulledOutWhilePlayingEndsNothingAndKeepsThePosition) {
  player->SelectDevice(IndexOf("Second"));
  pump->Play();
  ASSERT_TRUE(PlaysOn(1));
  ASSERT_EQ(SoundsOn(), "Second");
  const auto before = player->PlayedSamples();
  PullOut(second);
  const auto takesOver = [this] {
    loop.Wait(100ms);
    return SoundsOn() == "deck";
  };
  EXPECT_TRUE(loop.WaitUntil(takesOver, kPatience));
  EXPECT_TRUE(PlaysOn(1));
  EXPECT_GE(player->PlayedSamples(), before);
  EXPECT_EQ(pump->Ends, 0);
  pump->Stop();
}

TEST_F(DeviceChange, WithoutAnyDeviceLeftThePositionStandsUntilOneComesBack) {
  pump->Play();
  ASSERT_TRUE(PlaysOn(1));
  Pactl("unload-module module-null-sink");
  auto reached = player->PlayedSamples();
  EXPECT_TRUE(loop.WaitUntil(
      [&] {
        loop.Wait(500ms);
        return std::exchange(reached, player->PlayedSamples()) == player->PlayedSamples();
      },
      kPatience));
  loop.Wait(1s);
  EXPECT_EQ(player->PlayedSamples(), reached);
  EXPECT_EQ(pump->Ends, 0);
  PlugInOutput("deck");
  EXPECT_TRUE(PlaysOn(1));
  EXPECT_EQ(pump->Ends, 0);
  pump->Stop();
}

TEST(DeviceOfALateServer, IsListedBehindTheDefaultOneAndPlays) {
  SoundServer::HideServers();
  SoundServer server;
  PlainLoop loop;
  platform::CubebPlayer player(loop);
  ASSERT_TRUE(server.Start());
  PlugInOutput("Second");
  player.AddDevices({"Null Output", "Second"});
  const std::vector<std::string> names = player.DeviceNames();
  EXPECT_EQ(names.front(), "System default");
  EXPECT_EQ(names.back(), "Second");
  player.SelectDevice(player.DeviceCount() - 1);
  platform::SoundTouchTransform transform;
  SoundPump pump(player, transform);
  pump.Load(Tone(440, 20, kDocumentRate));
  pump.Play();
  EXPECT_TRUE(loop.WaitUntil([&] { return DeviceChange::SoundsOn() == "Second"; }, kPatience));
  EXPECT_TRUE(loop.WaitUntil([&] { return player.PlayedSamples() > kDocumentRate; }, kPatience));
  pump.Stop();
}

}  // namespace
}  // namespace tavlo::test
