#include <gtest/gtest.h>

#include <string>

#include "desk.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

/// The real program at a machine into which USB pedals are plugged.
struct UsbPedalDevice : AtTheDesk {
  bool PlugIn(const HidMake& make = kPickedPedal) {
    return desk->hardware.PlugPedal(make) && desk->hardware.PermitPedal() &&
           Until([] { return desk->UsbPresence() == pedals::UsbPresence::Ready; });
  }
  static bool Press(const std::vector<std::uint8_t>& bits) { return desk->hardware.Press(bits); }
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
  ASSERT_TRUE(desk->FallsSilent());
  const double begin = desk->recorder.Seconds();
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_TRUE(desk->SoundsSince(begin, 1));
  EXPECT_NEAR(Cents(desk->PitchSince(begin), kPartHertz[0]), 0, kPitchTolerance);
  ASSERT_TRUE(Press({0}));
  ASSERT_TRUE(Until([] { return !desk->Playing(); }));
  const double position = desk->Position();
  EXPECT_GT(position, 1.0);
  EXPECT_TRUE(desk->FallsSilent());
  EXPECT_LT(desk->HeardSince(begin), position + kMostAfterStop);
}

TEST_F(UsbPedalDevice, SidePedalsWindWithTonesWhileTheyAreDown) {
  ASSERT_TRUE(PlugIn());
  desk->AllowDoublePress(false);
  ASSERT_TRUE(desk->Begin());
  // A tone that can not be read in time is a silence.
  EXPECT_TRUE(TakeQuickly([] {
    desk->StandAt(0);
    if (!desk->FallsSilent()) return Pace::Never;
    const double begin = desk->recorder.Seconds();
    // Two jumps, though the foot be slow to leave.
    const bool winds = Press({4}) && Until([] { return desk->Position() > 19; });
    EXPECT_FALSE(desk->Playing());
    const bool stops = Press({0}) && Until([] { return !desk->Winding() && desk->SeesNone(); });
    if (!winds || !stops || !desk->FallsSilent()) return Pace::Never;
    return desk->HeardSince(begin) > 0 ? Pace::Quick : Pace::Slow;
  }));
  ASSERT_TRUE(TakeWithinAJump([] {
    desk->StandAt(30);
    // The release is seen by the tick behind the one that saw the press, or by the same.
    return Press({1, 0}) &&
           Until([] { return desk->Position() != 30 && !desk->Winding() && desk->SeesNone(); });
  }));
  EXPECT_NEAR(desk->Position(), 20, 0.001);
}

TEST_F(UsbPedalDevice, PressesBetweenTwoLooksAllCountAndTheEarIsWhereTheyLed) {
  ASSERT_TRUE(PlugIn());
  desk->AllowDoublePress(false);
  ASSERT_TRUE(desk->Begin());
  ASSERT_TRUE(TakeWithinAJump([] {
    desk->StandAt(0);
    return Press({4, 0, 4, 0, 1, 0, 4, 0, 4, 0}) &&
           Until([] { return desk->Position() > 0 && !desk->Winding() && desk->UsbRests(); });
  }));
  EXPECT_NEAR(desk->Position(), 30, 0.001);
  ASSERT_TRUE(desk->FallsSilent());
  const double begin = desk->recorder.Seconds();
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_NEAR(Cents(desk->PitchSince(begin), kPartHertz[1]), 0, kPitchTolerance);
  ASSERT_TRUE(Press({0}));
}

TEST_F(UsbPedalDevice, SecondQuickPressSkipsToBeginningAndEnd) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Begin());
  const auto holdsRight = [](bool down) { EXPECT_TRUE(Press({std::uint8_t(down ? 4 : 0)})); };
  const auto holdsLeft = [](bool down) { EXPECT_TRUE(Press({std::uint8_t(down ? 1 : 0)})); };
  ASSERT_TRUE(desk->PressTwice(holdsRight, &playback::Transport::LastForwardPressTime));
  EXPECT_EQ(desk->Position(), 3 * kPartSeconds);
  EXPECT_TRUE(desk->program->Ask([] { return desk->program->Main().cmdComplete.Enabled.Get(); }));
  ASSERT_TRUE(desk->PressTwice(holdsLeft, &playback::Transport::LastRewindPressTime));
  EXPECT_EQ(desk->Position(), 0);
}

TEST_F(UsbPedalDevice, OfSeveralPedalsTheLastInOrderCounts) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Begin());
  ASSERT_TRUE(Press({2, 3}));
  ASSERT_TRUE(Until([] { return desk->Playing() && desk->Sees(true, true, false); }));
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
  // The pace would decide which presses are double ones, and there is nothing to wind at an end.
  desk->AllowDoublePress(false);
  ASSERT_TRUE(desk->Begin());
  for (int press = 0; press < 20; ++press) {
    ASSERT_TRUE(Press({2, 0, 1, 0, 4, 0}));
    // The reports that wait are from none to some twenty.
    if (press % 4 == 3) {
      ASSERT_TRUE(Until([] { return desk->UsbRests(); }));
    }
  }
  ASSERT_TRUE(Press({1, 5, 4}));
  ASSERT_TRUE(Until([] { return desk->Winding() && desk->Sees(false, false, true); }));
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(Press({0}));
  ASSERT_TRUE(Until([] { return !desk->Playing() && !desk->Winding() && desk->UsbRests(); }));
  EXPECT_TRUE(desk->SeesNone());
  EXPECT_TRUE(desk->FallsSilent());
  EXPECT_FALSE(desk->Playing() || desk->Winding());
}

TEST_F(UsbPedalDevice, PulledCableStopsWhatThePedalHeld) {
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(desk->FallsSilent());
  const double begin = desk->recorder.Seconds();
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(desk->SoundsSince(begin, 0.5));
  ASSERT_TRUE(desk->hardware.UnplugPedal());
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
  const double position = desk->Position();
  EXPECT_TRUE(desk->FallsSilent());
  EXPECT_LT(desk->HeardSince(begin), position + kMostAfterStop);
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
  // The recording goes on while the program looks at what has come.
  ASSERT_TRUE(desk->recorder.Pass(1.5));
  EXPECT_EQ(desk->PedalState(), "No USB pedal is plugged in.");
  ASSERT_TRUE(Press({2}));
  ASSERT_TRUE(desk->recorder.Pass(0.5));
  EXPECT_FALSE(desk->Playing() || desk->InWork());
  ASSERT_TRUE(PlugIn());
  ASSERT_TRUE(Press({2, 0}));
  EXPECT_TRUE(Until([] { return desk->InWork(); }));
}

}  // namespace
}  // namespace tavlo::test
