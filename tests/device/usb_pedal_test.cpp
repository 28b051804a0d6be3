#include <gtest/gtest.h>

#include <chrono>
#include <string>
#include <thread>

#include "desk.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

/// The real program at a machine into which USB pedals are plugged.
struct UsbPedalDevice : AtTheDesk {
  bool PlugIn(const HidMake& make = kPickedPedal) {
    return desk->hardware.PlugPedal(make) && desk->hardware.PermitPedal() &&
           Until([] { return desk->UsbPresence() == pedals::UsbPresence::Ready; });
  }
  bool Press(const std::vector<std::uint8_t>& bits) { return desk->hardware.Press(bits); }
};

TEST_F(UsbPedalDevice, PedalThatMayNotBeReadIsToldFromNone) {
  EXPECT_TRUE(Until([] { return desk->PedalState() == "No USB pedal is plugged in."; }));
  ASSERT_TRUE(desk->hardware.PlugPedal());
  ASSERT_TRUE(Until([] { return desk->PedalState() != "No USB pedal is plugged in."; }));
  EXPECT_EQ(desk->PedalState(),
            "A USB pedal is plugged in, but you may not read it. The udev rule of Tavlo Deck "
            "allows it to whoever sits at the desk: install it, then plug the pedal in again.");
  ASSERT_TRUE(desk->hardware.PermitPedal());
  EXPECT_TRUE(Until([] { return desk->PedalState() == "A USB pedal is ready."; }));
}

TEST_F(UsbPedalDevice, CenterPedalSoundsTheDocumentForAsLongAsItIsDown) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  const Sound heard = desk->Listen(2);
  EXPECT_GT(AudibleSeconds(heard), 1.0);
  EXPECT_NEAR(Cents(PitchOf(heard.Between(1, 2)), kPartHertz[0]), 0, kPitchTolerance);
  ASSERT_TRUE(Press({0}));
  ASSERT_TRUE(Until([] { return !desk->Playing(); }));
  desk->Listen(0.6);
  EXPECT_EQ(AudibleSeconds(desk->Listen(0.5)), 0);
  EXPECT_GT(desk->Position(), 1.0);
}

TEST_F(UsbPedalDevice, SidePedalsWindWithTonesWhileTheyAreDown) {
  ASSERT_TRUE(PlugIn());
  desk->AllowDoublePress(false);
  ASSERT_TRUE(desk->Begin());
  const double begin = desk->Position();
  const double recorded = desk->recorder.Seconds();
  ASSERT_TRUE(Press({4}));
  ASSERT_TRUE(Until([] { return desk->Winding(); }));
  ASSERT_TRUE(Until([&] { return desk->Position() > begin + 19; }));
  EXPECT_FALSE(desk->Playing());
  ASSERT_TRUE(Press({0}));
  ASSERT_TRUE(Until([] { return !desk->Winding(); }));
  desk->Listen(0.6);
  EXPECT_GT(AudibleSeconds(desk->recorder.Since(recorded)), 0);
  const double forwards = desk->Position();
  ASSERT_TRUE(Press({1, 0}));
  ASSERT_TRUE(Until([&] { return desk->Position() < forwards; }));
  EXPECT_NEAR(desk->Position(), forwards - 10, 0.001);
  // The release is seen by the tick behind the one that saw the press, or by the same.
  EXPECT_TRUE(Until([] { return !desk->Winding(); }));
  EXPECT_NEAR(desk->Position(), forwards - 10, 0.001);
}

TEST_F(UsbPedalDevice, PressesBetweenTwoLooksAllCountAndTheEarIsWhereTheyLed) {
  ASSERT_TRUE(PlugIn());
  desk->AllowDoublePress(false);
  ASSERT_TRUE(desk->Begin());
  const double begin = desk->Position();
  ASSERT_TRUE(Press({4, 0, 4, 0, 1, 0, 4, 0, 4, 0}));
  ASSERT_TRUE(Until([&] { return desk->Position() > begin + 25; }));
  EXPECT_TRUE(Until([] { return !desk->Winding(); }));
  EXPECT_NEAR(desk->Position(), begin + 30, 0.001);
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_NEAR(Cents(PitchOf(desk->Listen(2).Between(1, 2)), kPartHertz[1]), 0, kPitchTolerance);
  ASSERT_TRUE(Press({0}));
}

TEST_F(UsbPedalDevice, SecondQuickPressSkipsToBeginningAndEnd) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Begin());
  const auto pressTwice = [&](std::uint8_t pedal) {
    ASSERT_TRUE(Press({pedal, 0}));
    std::this_thread::sleep_for(250ms);
    ASSERT_TRUE(Press({pedal, 0}));
  };
  pressTwice(4);
  EXPECT_TRUE(Until([] { return desk->Position() == 3 * kPartSeconds; })) << desk->Position();
  EXPECT_TRUE(desk->program->Ask([] { return desk->program->Main().cmdComplete.Enabled.Get(); }));
  pressTwice(1);
  EXPECT_TRUE(Until([] { return desk->Position() == 0; })) << desk->Position();
}

TEST_F(UsbPedalDevice, OfSeveralPedalsTheLastInOrderCounts) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Begin());
  ASSERT_TRUE(Press({2, 3}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_FALSE(desk->Winding());
  ASSERT_TRUE(Press({7}));
  ASSERT_TRUE(Until([] { return desk->Winding(); }));
  EXPECT_FALSE(desk->Playing());
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(Press({0}));
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

TEST_F(UsbPedalDevice, StormOfPressesEndsAsItsLastReportSays) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Begin());
  for (int press = 0; press < 20; ++press) {
    ASSERT_TRUE(Press({2, 0, 1, 0, 4, 0}));
    std::this_thread::sleep_for(std::chrono::milliseconds(press * 7 % 40));
  }
  ASSERT_TRUE(Press({1, 5, 4}));
  ASSERT_TRUE(Until([] { return desk->Winding(); }));
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(Press({0}));
  ASSERT_TRUE(Until([] { return !desk->Playing() && !desk->Winding(); }));
  desk->Listen(0.6);
  EXPECT_FALSE(desk->Playing() || desk->Winding());
}

TEST_F(UsbPedalDevice, PulledCableStopsWhatThePedalHeld) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_GT(AudibleSeconds(desk->Listen(1)), 0);
  ASSERT_TRUE(desk->hardware.UnplugPedal());
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
  desk->Listen(0.6);
  EXPECT_EQ(AudibleSeconds(desk->Listen(0.5)), 0);
  EXPECT_TRUE(Until([] { return desk->PedalState() == "No USB pedal is plugged in."; }));
}

TEST_F(UsbPedalDevice, PedalThatIsPluggedInAgainGoesOnWhereItWas) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Begin());
  const double position = desk->Position();
  ASSERT_TRUE(desk->hardware.UnplugPedal());
  ASSERT_TRUE(Until([] { return desk->PedalState() == "No USB pedal is plugged in."; }));
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_TRUE(Until([&] { return desk->Position() > position; }));
  ASSERT_TRUE(Press({0}));
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

TEST_F(UsbPedalDevice, PedalOfAnotherMakePlays) {
  ASSERT_TRUE(
      PlugIn({.vendor = 0x07B4, .product = 0x0202, .usagePage = 1, .usage = 4, .reportBytes = 3}));
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(desk->hardware.Report({{0, 0, 2}}));
  EXPECT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(desk->hardware.Report({{0, 0, 0}}));
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

TEST_F(UsbPedalDevice, OtherInputDeviceIsNoPedal) {
  ASSERT_TRUE(desk->hardware.PlugPedal(
      {.vendor = 0x1234, .product = 0x00FF, .usagePage = 0x0C, .usage = 3, .reportBytes = 2}));
  ASSERT_TRUE(desk->hardware.PermitPedal());
  ASSERT_TRUE(desk->Select());
  desk->Listen(1.5);
  EXPECT_EQ(desk->PedalState(), "No USB pedal is plugged in.");
  ASSERT_TRUE(Press({2}));
  desk->Listen(0.5);
  EXPECT_FALSE(desk->Playing());
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(Press({2, 0}));
  EXPECT_TRUE(Until([] { return desk->InWork(); }));
}

}  // namespace
}  // namespace tavlo::test
