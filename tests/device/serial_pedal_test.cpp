#include <gtest/gtest.h>
#include <sys/ioctl.h>

#include <chrono>
#include <string>
#include <thread>

#include "desk.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr int kLeft = TIOCM_CD;
constexpr int kCenter = TIOCM_DSR;
constexpr int kRight = TIOCM_CTS;
/// Changes are seen 50 ms apart; what stands for so long is seen.
constexpr auto kSeen = 150ms;

/// The real program at a machine with a serial port and a switch box on it.
struct SerialPedalDevice : AtTheDesk {
  void SetUp() override {
    ASSERT_TRUE(desk->hardware.PlugSerialBox());
    desk->Choose("S");
    ASSERT_EQ(desk->PedalState(), "Port 5 is being read.");
  }
  static void Hold(int lines) { desk->hardware.Wires().Close(lines); }
  /// The contact of these lines closes or opens, and bounces for so long.
  static void Bounce(int from, int to, int milliseconds) {
    const auto settled = std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds);
    for (int lines = to; std::chrono::steady_clock::now() < settled; lines ^= from ^ to) {
      Hold(lines);
      std::this_thread::sleep_for(1ms);
    }
    Hold(to);
  }
  static void Touch(int lines) {
    Hold(lines);
    std::this_thread::sleep_for(kSeen);
    Hold(0);
    std::this_thread::sleep_for(kSeen);
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
  Hold(kCenter);
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  const Sound heard = desk->Listen(2);
  EXPECT_GT(AudibleSeconds(heard), 1.0);
  EXPECT_NEAR(Cents(PitchOf(heard.Between(1, 2)), kPartHertz[0]), 0, kPitchTolerance);
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Playing(); }));
  desk->Listen(0.6);
  EXPECT_EQ(AudibleSeconds(desk->Listen(0.5)), 0);
}

TEST_F(SerialPedalDevice, SidePedalsWindWhileTheyAreDown) {
  ASSERT_TRUE(Begin());
  const double begin = desk->Position();
  Hold(kRight);
  ASSERT_TRUE(Until([&] { return desk->Winding() && desk->Position() > begin + 19; }));
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Winding(); }));
  const double forwards = desk->Position();
  Hold(kLeft);
  ASSERT_TRUE(Until([&] { return desk->Winding() && desk->Position() < forwards; }));
  Hold(0);
  EXPECT_TRUE(Until([] { return !desk->Winding(); }));
}

TEST_F(SerialPedalDevice, SecondQuickPressSkipsToBeginningAndEnd) {
  ASSERT_TRUE(Begin());
  Touch(kRight);
  Touch(kRight);
  EXPECT_TRUE(Until([] { return desk->Position() == 3 * kPartSeconds; })) << desk->Position();
  Touch(kLeft);
  Touch(kLeft);
  EXPECT_TRUE(Until([] { return desk->Position() == 0; })) << desk->Position();
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
  const auto rests = [] {
    return desk->program->Ask(
        [] { return !desk->program->Rooms().serialPedal.tmrSerialFootPedal.Enabled(); });
  };
  EXPECT_TRUE(Until(rests));
  ASSERT_TRUE(desk->Select());
  Hold(kCenter);
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_FALSE(rests());
  Hold(0);
  ASSERT_TRUE(Until([] { return !desk->Playing(); }));
  EXPECT_TRUE(Until(rests));
}

TEST_F(SerialPedalDevice, ContactThatBouncesIsOnePressAndOneRelease) {
  ASSERT_TRUE(Begin());
  desk->program->Do(
      [] { desk->program->Rooms().documentInWork.CurrentSamplePosition = 30 * kRate; });
  double position = 30;
  for (int bounce = 1; bounce <= 20; ++bounce) {
    const bool forwards = bounce % 2 != 0;
    const int pedal = forwards ? kRight : kLeft;
    Bounce(0, pedal, bounce);
    std::this_thread::sleep_for(kSeen);
    EXPECT_TRUE(desk->Winding()) << bounce;
    Bounce(pedal, 0, bounce);
    std::this_thread::sleep_for(kSeen);
    EXPECT_FALSE(desk->Winding()) << bounce;
    position += forwards ? 10 : -10;
    EXPECT_NEAR(desk->Position(), position, 0.001) << bounce;
    // Another press of this pedal would be a double one until then.
    std::this_thread::sleep_for(kSeen);
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
  EXPECT_EQ(desk->PedalState(), "Port 5 can not be read.");
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
  ASSERT_TRUE(desk->hardware.Press({2}));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  // The serial lines stand still, so they do not stop the other pedal.
  EXPECT_GT(AudibleSeconds(desk->Listen(1)), 0.5);
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
  ASSERT_TRUE(desk->Select());
  Hold(kCenter);
  desk->Listen(0.5);
  EXPECT_FALSE(desk->Playing());
  desk->Choose("S");
  EXPECT_TRUE(Until([] { return desk->Playing(); }));
  Hold(0);
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

}  // namespace
}  // namespace tavlo::test
