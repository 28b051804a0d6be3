#include "platform/mixer/pulse_mixer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "mixer_page/sound_control.h"
#include "platform/sound/cubeb_player.h"
#include "platform/sound/soundtouch_transform.h"
#include "support/plain_loop.h"
#include "support/quick.h"
#include "support/sound_pump.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using Names = std::vector<std::string>;

constexpr int kRate = 16000;
constexpr int kFull = 65535;
/// A wait for the server would be one of many seconds.
constexpr base::Duration kAtOnce = 1s;

/// A mixer, and a page that looks at the device of `index` whenever something changes.
struct LookedAtMixer {
  explicit LookedAtMixer(PlainLoop& loop) : mixer(loop, loop) {
    mixer.OnChange = [this] {
      ++changes;
      Look();
    };
  }

  void Look() { mixer.SelectDevice(index, device); }

  Names Sources() {
    Names names;
    for (int source = 0; source < mixer.SourceCount(); ++source) {
      mixer.SelectSource(source);
      names.push_back(mixer.SourceName());
    }
    return names;
  }

  /// Selects the source of that name; false when it is not listed.
  bool Select(const std::string& name) {
    const Names names = Sources();
    const auto found = std::ranges::find(names, name);
    mixer.SelectSource(static_cast<int>(found - names.begin()));
    return found != names.end();
  }

  platform::PulseMixer mixer;
  int index = 0;
  std::string device;
  int changes = 0;
};

struct PulseMixerTest : testing::Test {
  static void SetUpTestSuite() {
    server = std::make_unique<SoundServer>();
    ready = server->Start();
    PlugInMicrophone();
  }
  static void TearDownTestSuite() { server.reset(); }

  void SetUp() override {
    ASSERT_TRUE(ready) << "the sound server did not start";
    for (const char* set : {"set-sink-mute deck 0", "set-sink-volume deck 100%",
                            "set-source-mute mic 0", "set-source-volume mic 100%"}) {
      Pactl(set);
    }
    page = std::make_unique<LookedAtMixer>(loop);
    ASSERT_TRUE(Until([&] { return page->Sources() == Names({"Output", "Microphone"}); }));
  }

  bool Until(const std::function<bool()>& done) { return loop.WaitUntil(done, kPatience); }
  platform::PulseMixer& Mixer() { return page->mixer; }

  static std::unique_ptr<SoundServer> server;
  static bool ready;
  PlainLoop loop;
  std::unique_ptr<LookedAtMixer> page;
};

std::unique_ptr<SoundServer> PulseMixerTest::server;
bool PulseMixerTest::ready = false;

TEST_F(PulseMixerTest, WhatIsSetReachesTheDeviceAndItsInput) {
  page->Select("Output");
  EXPECT_TRUE(Mixer().SourceHasVolume());
  Mixer().SetSourceVolume(kFull / 2);
  EXPECT_EQ(Mixer().SourceVolume(), kFull / 2);
  page->Select("Microphone");
  Mixer().SetSourceVolume(kFull / 4);
  Mixer().SetSourceMute(true);
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "deck") == "50% 50%"; }));
  EXPECT_TRUE(Until([] { return VolumeOf("source", "mic") == "25% 25%"; }));
  EXPECT_TRUE(Until([] { return IsMute("source", "mic"); }));
  EXPECT_FALSE(IsMute("sink", "deck"));
}

TEST_F(PulseMixerTest, WhatSomebodyElseSetsIsSeen) {
  Pactl("set-sink-volume deck 30%");
  Pactl("set-sink-mute deck 1");
  EXPECT_TRUE(Until([&] { return page->Select("Output") && Mixer().SourceMute(); }));
  EXPECT_NEAR(Mixer().SourceVolume(), kFull * 0.3, kFull * 0.005);
  Pactl("set-source-volume mic 40% 80%");
  EXPECT_TRUE(Until([&] { return page->Select("Microphone") && Mixer().SourceBalance() > 50; }));
  EXPECT_NEAR(Mixer().SourceVolume(), kFull * 0.8, kFull * 0.005);
  EXPECT_EQ(Mixer().SourceBalance(), 75);
}

TEST_F(PulseMixerTest, AmplifiedSourceTellsItsFullVolumeAndIsLeftAlone) {
  Pactl("set-sink-volume deck 140%");
  page->Select("Output");
  EXPECT_EQ(Mixer().SourceVolume(), kFull);
  loop.Wait(500ms);
  page->Select("Output");
  Mixer().SetSourceVolume(kFull);
  Mixer().SetSourceBalance(25);
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "deck") == "140% 70%"; }));
}

TEST_F(PulseMixerTest, BalanceMovesTheSidesAgainstEachOther) {
  page->Select("Output");
  ASSERT_TRUE(Mixer().SourceHasBalance());
  EXPECT_EQ(Mixer().SourceBalance(), 50);
  Mixer().SetSourceBalance(25);
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "deck") == "100% 50%"; }));
  page->Select("Output");
  Mixer().SetSourceBalance(100);
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "deck") == "0% 100%"; }));
}

TEST_F(PulseMixerTest, SilenceDoesNotForgetTheBalance) {
  page->Select("Output");
  Mixer().SetSourceBalance(75);
  Mixer().SetSourceVolume(0);
  ASSERT_TRUE(Until([] { return VolumeOf("sink", "deck") == "0% 0%"; }));
  loop.Wait(500ms);
  page->Select("Output");
  EXPECT_EQ(Mixer().SourceBalance(), 75);
  Mixer().SetSourceVolume(kFull);
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "deck") == "50% 100%"; }));
}

TEST_F(PulseMixerTest, QuickStepsEndWhereTheLastOneSaid) {
  for (int step = 0; step <= 50; ++step) {
    page->Select("Output");
    Mixer().SetSourceVolume(kFull * step / 100);
    loop.Wait(5ms);
    EXPECT_EQ(Mixer().SourceVolume(), kFull * step / 100);
  }
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "deck") == "50% 50%"; }));
  loop.Wait(500ms);
  page->Select("Output");
  EXPECT_EQ(Mixer().SourceVolume(), kFull / 2);
}

TEST_F(PulseMixerTest, LookingChangesNothing) {
  Pactl("set-sink-volume deck 71.3% 70.1%");
  ASSERT_TRUE(Until([&] { return page->Select("Output") && Mixer().SourceVolume() < kFull; }));
  const std::string before = Pactl("get-sink-volume deck");
  Mixer().SetSourceVolume(Mixer().SourceVolume());
  Mixer().SetSourceBalance(Mixer().SourceBalance());
  Mixer().SetSourceMute(Mixer().SourceMute());
  loop.Wait(500ms);
  EXPECT_EQ(Pactl("get-sink-volume deck"), before);
}

TEST_F(PulseMixerTest, ProgramsOwnStreamIsListedWhileItSoundsAndThoseOfOtherProgramsAreNot) {
  ChildProcess other;
  ASSERT_TRUE(other.Start({"pacat", "--raw", "--playback", "/dev/zero"}));
  ASSERT_TRUE(
      Until([] { return Pactl("list short sink-inputs").find('\n') != std::string::npos; }));
  loop.Wait(300ms);
  EXPECT_EQ(page->Sources(), Names({"Output", "Microphone"}));
  {
    // A stream that ran dry is opened anew, at its full volume where the sound server remembers no
    // other.
    const AmpleSupply supply;
    platform::CubebPlayer player(loop);
    platform::SoundTouchTransform transform;
    SoundPump pump(player, transform);
    pump.Load(Tone(440, 20, kRate));
    pump.Play();
    ASSERT_TRUE(Until([&] { return page->Select("Tavlo Deck"); }));
    EXPECT_EQ(page->Sources(), Names({"Output", "Tavlo Deck", "Microphone"}));
    page->Select("Tavlo Deck");
    Mixer().SetSourceVolume(kFull / 5);
    EXPECT_TRUE(Until([] { return Pactl("list sink-inputs").find(" 20% ") != std::string::npos; }));
    pump.Stop();
  }
  EXPECT_TRUE(Until([&] { return page->Sources() == Names({"Output", "Microphone"}); }));
}

TEST_F(PulseMixerTest, ChosenDeviceIsFoundByItsNameInThePlayersList) {
  const std::string second = PlugInOutput("Second");
  platform::CubebPlayer player(loop);
  int index = -1;
  for (int each = 0; each < player.DeviceCount(); ++each) {
    player.SelectDevice(each);
    if (player.DeviceName() == "Second") index = each;
  }
  ASSERT_GT(index, 0);
  page->index = index;
  page->device = "Second";
  Pactl("set-sink-volume Second 10%");
  EXPECT_TRUE(Until([&] { return page->Select("Output") && Mixer().SourceVolume() < kFull / 5; }));
  PullOut(second);
  EXPECT_TRUE(Until([&] { return page->Select("Output") && Mixer().SourceVolume() == kFull; }))
      << "a device that has gone is the default one";
}

TEST_F(PulseMixerTest, DevicesThatComeAndGoAreTold) {
  EXPECT_EQ(Mixer().DevicesNow(), Names{"Null Output"});
  const std::string second = PlugInOutput("Second");
  EXPECT_TRUE(Until([&] { return Mixer().DevicesNow() == Names({"Null Output", "Second"}); }));
  PullOut(second);
  EXPECT_TRUE(Until([&] { return Mixer().DevicesNow() == Names{"Null Output"}; }));
}

TEST_F(PulseMixerTest, IndexThatDoesNotExistSelectsNothing) {
  for (const int index : {-1, Mixer().SourceCount()}) {
    Mixer().SelectSource(index);
    EXPECT_EQ(Mixer().SourceName(), "");
    EXPECT_FALSE(Mixer().SourceHasVolume());
    EXPECT_FALSE(Mixer().SourceHasBalance());
    EXPECT_FALSE(Mixer().SourceHasMute());
    EXPECT_EQ(Mixer().SourceVolume(), 0);
    EXPECT_EQ(Mixer().SourceBalance(), 50);
    EXPECT_LT(Mixer().SourceHasAdvanced(), 0);
    Mixer().SetSourceVolume(5);
    Mixer().SetSourceBalance(5);
    Mixer().SetSourceMute(true);
  }
  loop.Wait(300ms);
  EXPECT_EQ(VolumeOf("sink", "deck"), "100% 100%");
}

TEST_F(PulseMixerTest, SourceThatHasGoneTakesNoHarm) {
  const std::string second = PlugInOutput("Second");
  Pactl("set-sink-volume Second 10%");
  page->index = 1;
  page->device = "Second";
  ASSERT_TRUE(Until([&] { return page->Select("Output") && Mixer().SourceVolume() < kFull / 5; }));
  Mixer().OnChange = nullptr;
  PullOut(second);
  Mixer().SetSourceVolume(100);
  loop.Wait(500ms);
  EXPECT_EQ(VolumeOf("sink", "deck"), "100% 100%");
  page->Look();
  page->Select("Output");
  EXPECT_EQ(Mixer().SourceVolume(), kFull);
}

TEST_F(PulseMixerTest, ServerThatDoesNotAnswerDelaysNoCall) {
  const FrozenServer frozen;
  EXPECT_TRUE(IsQuick(200ms + kAtOnce, [&] {
    page->Select("Output");
    Mixer().SetSourceVolume(7);
    loop.Wait(200ms);
    page->Look();
    EXPECT_EQ(Mixer().SourceCount(), 2);
  }));
  EXPECT_TRUE(IsQuick(200ms + kAtOnce, [&] {
    page.reset();
    page = std::make_unique<LookedAtMixer>(loop);
    loop.Wait(200ms);
    EXPECT_EQ(Mixer().SourceCount(), 0);
  }));
}

TEST_F(PulseMixerTest, ServerThatTellsNothingDoesNotWakeTheLoop) {
  loop.Wait(1s);
  const int before = loop.Wakenings;
  loop.Wait(1s);
  EXPECT_EQ(loop.Wakenings - before, 1) << "the end of the wait";
}

TEST(PulseSource, EveryVolumeComesBackAsItWasSet) {
  platform::PulseSource source;
  pa_channel_map_init_stereo(&source.channels);
  pa_cvolume_reset(&source.volume, 2);
  for (int volume = 0; volume <= kFull; ++volume) {
    source.SetVolume(volume);
    ASSERT_EQ(source.Volume(), volume);
  }
}

TEST(PulseSource, EveryBalanceIsToldByTheVolumesThatItMakes) {
  platform::PulseSource source;
  pa_channel_map_init_stereo(&source.channels);
  pa_cvolume_reset(&source.volume, 2);
  source.SetVolume(kFull / 3);
  for (int balance = 0; balance <= 100; ++balance) {
    source.SetBalance(balance);
    const float told = pa_cvolume_get_balance(&source.volume, &source.channels);
    EXPECT_NEAR(50 + told * 50, balance, 0.4);
    EXPECT_EQ(source.Volume(), kFull / 3);
  }
}

TEST(PulseSource, OneChannelHasNoBalance) {
  platform::PulseSource source;
  pa_channel_map_init_mono(&source.channels);
  EXPECT_FALSE(source.HasBalance());
}

TEST(PulseMixerWithoutAServer, IsEmptyAndCalm) {
  SoundServer::HideServers();
  PlainLoop loop;
  LookedAtMixer page(loop);
  EXPECT_TRUE(IsQuick(300ms + kAtOnce, [&] {
    loop.Wait(300ms);
    page.Look();
    EXPECT_EQ(page.mixer.SourceCount(), 0);
    page.mixer.SelectSource(0);
    page.mixer.SetSourceVolume(1);
  }));
  EXPECT_EQ(page.changes, 0);
}

TEST(PulseMixerOfADyingServer, EmptiesAndFillsAgainWithIt) {
  SoundServer server;
  ASSERT_TRUE(server.Start());
  PlainLoop loop;
  LookedAtMixer page(loop);
  ASSERT_TRUE(loop.WaitUntil([&] { return page.Select("Output"); }, kPatience));
  server.Kill();
  page.mixer.SetSourceVolume(3);
  EXPECT_TRUE(loop.WaitUntil([&] { return page.mixer.SourceCount() == 0; }, kPatience));
  ASSERT_TRUE(server.Start());
  EXPECT_TRUE(loop.WaitUntil([&] { return page.Select("Output"); }, kPatience));
  EXPECT_EQ(page.mixer.SourceVolume(), kFull);
}

}  // namespace
}  // namespace tavlo::test
