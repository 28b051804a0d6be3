#include "platform/sound/cubeb_device.h"

#include <gtest/gtest.h>

#include "mixer_page/sound_control.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

constexpr int kRate = 48000;

/// Lets the device render for so many milliseconds.
void Render(platform::CubebDevice& device, int milliseconds) {
  for (int i = 0; i < milliseconds; ++i) device.LetRender();
}

TEST(CubebDevice, KeepsMoreAheadAfterEachDroughtUpToItsLimit) {
  SoundServer server;
  ASSERT_TRUE(server.StartWithPrecedence());
  platform::RtMixer mixer;
  platform::CubebDevice device;
  mixer.SetRate(kRate);
  constexpr int kSteps = platform::CubebDevice::kLatencyMilliseconds.size() - 1;
  int steps = 0;
  for (int drought = 0; drought < kSteps + 2; ++drought) {
    ASSERT_TRUE(device.Open(0, kRate, mixer));
    Render(device, 100);
    {
      const FrozenServer frozen;
      Render(device, 100);
    }
    // Whoever comes late on a busy machine makes a drought of its own, which is the same to us. One
    // that must be noticed is waited for.
    const int patience = drought < kSteps ? 60'000 : 300;
    bool ranDry = false;
    for (int i = 0; i < patience && !ranDry; ++i) {
      Render(device, 1);
      ranDry = device.TakeRanDry();
    }
    if (ranDry) ++steps;
  }
  EXPECT_EQ(steps, kSteps);
}

}  // namespace
}  // namespace tavlo::test
