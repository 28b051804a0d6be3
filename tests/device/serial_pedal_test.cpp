#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <chrono>
#include <string>
#include <thread>

#include "desk.h"
#include "pedals/poll.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kLeft = TIOCM_CD;
constexpr int kCenter = TIOCM_DSR;
constexpr int kRight = TIOCM_CTS;
/// The real program at a machine with a serial port and a switch box on it.
struct SerialPedalDevice : AtTheDesk {
  void SetUp() override {
    ASSERT_TRUE(desk->hardware.PlugSerialBox());
    desk->Choose("S");
    ASSERT_EQ(desk->PedalState(), "Port 5 is being read.");
  }
  static void Hold(int lines) { desk->hardware.Wires().Close(lines); }
  /// The contact of these lines closes or opens, and bounces for so long. False when that took so
  /// much longer that the program may have seen the contact both ways, one after the other.
  static bool Bounce(int from, int to, int milliseconds) {
    const auto begun = std::chrono::steady_clock::now();
    const auto settled = begun + std::chrono::milliseconds(milliseconds);
    for (int lines = to; std::chrono::steady_clock::now() < settled; lines ^= from ^ to) {
      Hold(lines);
      std::this_thread::sleep_for(1ms);
    }
    Hold(to);
    return std::chrono::steady_clock::now() - begun < pedals::kPollInterval;
  }
  static bool SeesLines(int lines) {
    return desk->Sees(lines & kLeft, lines & kCenter, lines & kRight);
  }
  static bool Rests() {
    return desk->program->Ask(
        [] { return !desk->program->Rooms().serialPedal.tmrSerialFootPedal.Enabled(); });
  }
  /// Waits until the program has seen these lines, and has read them again and acted on that.
  static bool AreTakenIn(int lines) {
    if (!Until([&] { return SeesLines(lines); })) return false;
    // The first of these reads may have begun before, and the third begins when the second has been
    // acted on.
    const SerialWires& wires = desk->hardware.Wires();
    const int enough = wires.reads + 3;
    return Until([&] { return wires.reads >= enough || Rests(); });
  }
  bool Begin() {
    if (!desk->Select()) return false;
    Hold(kCenter);
    const bool plays = Until([] { return desk->Playing(); });
    Hold(0);
    return plays && Until([] { return !desk->Playing(); });
  }
};

TEST_F(SerialPedalDevice, OpenPortFeedsItsSwitchBoxAndIsGivenBack) {
  SerialWires& wires = desk->hardware.Wires();
  EXPECT_EQ(wires.openings, 1);
  EXPECT_EQ(wires.raised, TIOCM_DTR | TIOCM_RTS);
  desk->Choose("U");
  EXPECT_TRUE(Until([&] { return wires.openings == 0; }));
}

TEST_F(SerialPedalDevice, PortWithoutADeviceIsTold) {
  desk->Choose("S", "9");
  EXPECT_EQ(desk->PedalState(), "Port 9 can not be read.");
}

TEST_F(SerialPedalDevice, CenterPedalSoundsTheDocumentForAsLongAsItIsDown) {
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(desk->FallsSilent());
  const double begin = desk->recorder.Seconds();
  Hold(kCenter);
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_TRUE(desk->SoundsSince(begin, 1));
  EXPECT_NEAR(Cents(desk->PitchSince(begin), kPartHertz[0]), 0, kPitchTolerance);
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Playing(); }));
  const double position = desk->Position();
  EXPECT_TRUE(desk->FallsSilent());
  EXPECT_LT(desk->HeardSince(begin), position + kMostAfterStop);
}

TEST_F(SerialPedalDevice, SidePedalsWindWhileTheyAreDown) {
  ASSERT_TRUE(Begin());
  desk->StandAt(0);
  Hold(kRight);
  // Two jumps, though the foot be slow to leave.
  ASSERT_TRUE(Until([] { return desk->Position() > 19; }));
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Winding() && desk->SeesNone(); }));
  desk->StandAt(50);
  Hold(kLeft);
  ASSERT_TRUE(Until([] { return desk->Position() < 31; }));
  Hold(0);
  EXPECT_TRUE(Until([] { return !desk->Winding(); }));
}

TEST_F(SerialPedalDevice, SecondQuickPressSkipsToBeginningAndEnd) {
  ASSERT_TRUE(Begin());
  const auto holdsRight = [](bool down) { Hold(down ? kRight : 0); };
  const auto holdsLeft = [](bool down) { Hold(down ? kLeft : 0); };
  ASSERT_TRUE(desk->PressTwice(holdsRight, &playback::Transport::LastForwardPressTime));
  EXPECT_EQ(desk->Position(), 3 * kPartSeconds);
  ASSERT_TRUE(desk->PressTwice(holdsLeft, &playback::Transport::LastRewindPressTime));
  EXPECT_EQ(desk->Position(), 0);
}

TEST_F(SerialPedalDevice, OpenPortIsWaitedForAndClosingItEndsTheWait) {
  SerialWires& wires = desk->hardware.Wires();
  EXPECT_TRUE(Until([&] { return wires.waits == 1; }));
  Hold(kRight);
  Hold(0);
  EXPECT_TRUE(Until([&] { return wires.waits == 1; }));
  desk->Choose("U");
  EXPECT_EQ(wires.waits, 0);
  EXPECT_TRUE(Until([&] { return wires.openings == 0; }));
}

TEST_F(SerialPedalDevice, PortAtRestIsNotReadAgainAndAgain) {
  EXPECT_TRUE(Until(Rests));
  ASSERT_TRUE(desk->Select());
  Hold(kCenter);
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_FALSE(Rests());
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Playing(); }));
  EXPECT_TRUE(Until(Rests));
}

TEST_F(SerialPedalDevice, ContactThatBouncesIsOnePressAndOneRelease) {
  ASSERT_TRUE(Begin());
  for (int bounce = 1; bounce <= 20; ++bounce) {
    const bool forwards = bounce % 2 != 0;
    const int pedal = forwards ? kRight : kLeft;
    bool isShort = false;
    bool winds = false;
    bool stops = false;
    const auto bounceOnce = [&] {
      desk->StandAt(30);
      isShort = Bounce(0, pedal, bounce);
      if (!AreTakenIn(pedal)) return false;
      winds = desk->Winding();
      isShort = Bounce(pedal, 0, bounce) && isShort;
      if (!AreTakenIn(0)) return false;
      stops = !desk->Winding();
      return true;
    };
    ASSERT_TRUE(TakeQuickly([&] {
      if (!TakeWithinAJump(bounceOnce)) return Pace::Never;
      return isShort ? Pace::Quick : Pace::Slow;
    })) << bounce;
    EXPECT_TRUE(winds) << bounce;
    EXPECT_TRUE(stops) << bounce;
    EXPECT_NEAR(desk->Position(), forwards ? 40 : 20, 0.001) << bounce;
  }
}

TEST_F(SerialPedalDevice, OfSeveralPedalsTheLastInOrderCounts) {
  ASSERT_TRUE(desk->Select());
  Hold(kLeft | kCenter);
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_FALSE(desk->Winding());
  Hold(kLeft | kCenter | kRight);
  ASSERT_TRUE(Until([] { return desk->Winding(); }));
  Hold(0);
  EXPECT_TRUE(Until([] { return !desk->Winding(); }));
}

TEST_F(SerialPedalDevice, PulledAdapterStopsWhatThePedalHeldAndIsFoundAgain) {
  ASSERT_TRUE(desk->Select());
  Hold(kCenter);
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(desk->hardware.UnplugSerialBox());
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
  EXPECT_TRUE(Until([] { return desk->PedalState() == "Port 5 can not be read."; }));
  ASSERT_TRUE(desk->hardware.PlugSerialBox());
  EXPECT_TRUE(Until([] { return desk->PedalState() == "Port 5 is being read."; }));
  Hold(kCenter);
  EXPECT_TRUE(Until([] { return desk->Playing(); }));
  Hold(0);
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

TEST_F(SerialPedalDevice, UsbPedalWorksBesideIt) {
  ASSERT_TRUE(desk->hardware.PlugPedal());
  ASSERT_TRUE(desk->hardware.PermitPedal());
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(Until([] { return desk->UsbPresence() == pedals::UsbPresence::Ready; }));
  ASSERT_TRUE(desk->FallsSilent());
  const double begin = desk->recorder.Seconds();
  ASSERT_TRUE(desk->hardware.Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  // The serial lines stand still, so they do not stop the other pedal.
  EXPECT_TRUE(desk->SoundsSince(begin, 0.5));
  EXPECT_TRUE(desk->Playing());
  Hold(kRight);
  ASSERT_TRUE(Until([] { return desk->Winding(); }));
  EXPECT_FALSE(desk->Playing());
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Winding(); }));
  ASSERT_TRUE(desk->hardware.Press({0, 2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  ASSERT_TRUE(desk->hardware.Press({0}));
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

TEST_F(SerialPedalDevice, WithUsbChosenTheLinesAreNotHeard) {
  desk->Choose("U");
  EXPECT_TRUE(Until([] { return desk->hardware.Wires().openings == 0; }));
  ASSERT_TRUE(desk->Select());
  Hold(kCenter);
  // The recording goes on while nothing is heard of the pedal.
  ASSERT_TRUE(desk->recorder.Pass(0.5));
  EXPECT_FALSE(desk->Playing());
  desk->Choose("S");
  EXPECT_TRUE(Until([] { return desk->Playing(); }));
  Hold(0);
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

}  // namespace
}  // namespace tavlo::test
