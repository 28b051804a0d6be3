#include "playback/mixer_page.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QComboBox>
#include <QWidget>
#include <memory>
#include <string>

#include "mixer_page/sound_control.h"
#include "platform/mixer/pulse_mixer.h"
#include "platform/sound/cubeb_player.h"
#include "support/keys.h"
#include "support/plain_loop.h"
#include "support/shown_windows.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

constexpr int kMixerTab = 2;
constexpr int kFull = 65535;

/// The mixer page in its window, on a sound server with two outputs and a microphone.
struct MixerPageOnADesk : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.Start());
    PlugInMicrophone();
    PlugInOutput("Headset");
    player = std::make_unique<platform::CubebPlayer>(shown.loop);
    mixer = std::make_unique<platform::PulseMixer>(shown.loop, shown.loop);
    page = std::make_unique<playback::MixerPage>(form, *player, *mixer);
    for (int index = 0; index < player->DeviceCount(); ++index) {
      player->SelectDevice(index);
      form.DeviceCombo.Add(player->DeviceName());
    }
    form.DeviceCombo.ListIndex = 0;
    form.tabConfiguration.ListIndex = kMixerTab;
    form.frameSettings.Visible = false;
    form.frameConfigMixer.Visible = true;
    form.frmConfiguration.Centre();
    form.frmConfiguration.Visible = true;
    ASSERT_TRUE(Until([&] { return form.Label[1].Value.Get() == "Microphone"; }));
    shown.typist.Rest(300);
  }
  void TearDown() override { page.reset(); }

  bool Until(const std::function<bool()>& done) { return shown.typist.Until(done); }

  /// The first figure of an output's volume in hundredths.
  static int PercentOf(const std::string& sink) {
    return std::atoi(VolumeOf("sink", sink).c_str());
  }

  void ExpectEverythingInside() {
    const QWidget* const window = shown.typist.Widget("frmConfiguration");
    for (int source = 0; source < forms::kMixerSources; ++source) {
      for (const char* kind : {"Label", "slVolume", "slBalance", "chMute"}) {
        const std::string name = kind + std::to_string(source);
        const auto* const widget = window->findChild<QWidget*>(QString::fromStdString(name));
        ASSERT_NE(widget, nullptr) << name;
        if (!widget->isVisible()) continue;
        const QRect place(widget->mapTo(window, QPoint(0, 0)), widget->size());
        EXPECT_TRUE(window->rect().contains(place)) << name;
        EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
      }
    }
  }

  SoundServer server;
  ShownWindows shown;
  forms::ConfigurationForm& form = shown.configuration;
  std::unique_ptr<platform::CubebPlayer> player;
  std::unique_ptr<platform::PulseMixer> mixer;
  std::unique_ptr<playback::MixerPage> page;
};

TEST_F(MixerPageOnADesk, HandsSetTheVolumesAndSeeThoseThatOthersSet) {
  shown.typist.Picture("mixer");
  ExpectEverythingInside();
  shown.typist.Click("slVolume0");
  EXPECT_TRUE(Until([] { return PercentOf("deck") > 40 && PercentOf("deck") < 60; }));
  shown.typist.Keys({keys::kEnd});
  EXPECT_TRUE(Until([] { return PercentOf("deck") == 0; })) << "the lower end is silence";
  shown.typist.Keys({keys::kHome});
  EXPECT_TRUE(Until([] { return PercentOf("deck") == 100; }));
  shown.typist.Click("chMute1");
  EXPECT_TRUE(Until([] { return IsMute("source", "mic"); }));
  EXPECT_FALSE(IsMute("sink", "deck"));

  Pactl("set-sink-volume deck 20%");
  Pactl("set-source-mute mic 0");
  EXPECT_TRUE(Until([&] { return !form.chMute[1].Value; }));
  EXPECT_NEAR(form.slVolume[0].Value, kFull * 0.8, kFull * 0.01);
}

TEST_F(MixerPageOnADesk, ChosenDeviceBringsItsOwnVolumes) {
  Pactl("set-sink-volume Headset 70% 35%");
  shown.typist.Widget("DeviceCombo")->setFocus();
  int headset = 0;
  while (form.DeviceCombo.TextAt(headset, 0) != "Headset") ++headset;
  for (int step = 0; step < headset; ++step) shown.typist.Keys({keys::kDown});
  EXPECT_EQ(form.txtMixerSelection.Value.Get(), std::to_string(headset));
  EXPECT_EQ(player->DeviceName(), "Headset");
  EXPECT_TRUE(Until([&] { return form.slBalance[0].Value == 25; }));
  EXPECT_NEAR(form.slVolume[0].Value, kFull * 0.3, kFull * 0.01);
  shown.typist.Click("slBalance0");
  EXPECT_NEAR(form.slBalance[0].Value, 50, 2);
  EXPECT_TRUE(Until([] { return VolumeOf("sink", "Headset").rfind("70% 35%", 0) != 0; }));
  EXPECT_GE(PercentOf("Headset"), 67);
  EXPECT_EQ(VolumeOf("sink", "deck"), "100% 100%");
}

TEST_F(MixerPageOnADesk, DeviceThatComesWhileTheListIsOpenTakesNothingFromUnderTheHand) {
  auto* const list = qobject_cast<QComboBox*>(shown.typist.Widget("DeviceCombo"));
  const int before = list->count();
  list->setFocus();
  list->showPopup();
  shown.typist.Rest(300);
  shown.typist.Keys({keys::kDown});
  PlugInOutput("Late");
  ASSERT_TRUE(Until([&] { return list->count() == before + 1; }));
  EXPECT_TRUE(list->view()->isVisible());
  shown.typist.Keys({keys::kReturn});
  EXPECT_TRUE(Until([&] { return form.txtMixerSelection.Value.Get() == "1"; }));
  EXPECT_EQ(list->currentIndex(), 1);
  EXPECT_EQ(form.DeviceCombo.TextAt(before, 0), "Late");
}

TEST_F(MixerPageOnADesk, EightSourcesHaveRoomBesideEachOther) {
  for (int input = 0; input < 8; ++input) {
    Pactl("load-module module-null-source source_name=line" + std::to_string(input) +
          R"( "description='Line input of the second mixing desk'")");
  }
  ASSERT_TRUE(Until([&] { return form.Label[7].Visible.Get(); }));
  shown.typist.Rest(300);
  shown.typist.Picture("mixer_full");
  ExpectEverythingInside();
  shown.typist.Click("slVolume7");
  EXPECT_TRUE(Until([] { return VolumeOf("source", "line5").rfind("100%", 0) != 0; }));
}

TEST_F(MixerPageOnADesk, ServerThatIsKilledEmptiesThePageAndFillsItWhenItIsBack) {
  server.Kill();
  ASSERT_TRUE(Until([&] { return form.lblNoSource.Visible.Get(); }));
  shown.typist.Rest(300);
  shown.typist.Picture("mixer_empty");
  EXPECT_TRUE(shown.typist.Widget("lblNoSource")->isVisible());
  EXPECT_FALSE(form.slVolume[0].Visible);
  ASSERT_TRUE(server.Start());
  EXPECT_TRUE(Until([&] { return form.Label[0].Value.Get() == "Output"; }));
  EXPECT_FALSE(form.lblNoSource.Visible);
}

}  // namespace
}  // namespace tavlo::test
