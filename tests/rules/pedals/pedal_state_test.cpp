#include "pedals/pedal_state.h"

#include <gtest/gtest.h>

#include <string>

#include "support/pedal_bench.h"

namespace tavlo::test {
namespace {

struct PedalStateTest : testing::Test, PedalBench {
  pedals::PedalState state{config, serial, usb};

  std::string Shown() {
    state.Show();
    return config.lblPedalState.Value;
  }
};

TEST_F(PedalStateTest, TellsAPedalThatIsReadyFromNone) {
  usb.StartWatch();
  EXPECT_EQ(Shown(), "A USB pedal is ready.");
  watcher.Unplug();
  EXPECT_EQ(Shown(), "No USB pedal is plugged in.");
}

TEST_F(PedalStateTest, TellsNoPermissionFromNoPedalAndSaysWhatHelps) {
  usb.StartWatch();
  watcher.Plug(pedals::UsbPresence::NoPermission);
  EXPECT_EQ(Shown(),
            "A USB pedal is plugged in, but you may not read it. The udev rule of Tavlo Deck "
            "allows it to whoever sits at the desk: install it, then plug the pedal in again.");
}

TEST_F(PedalStateTest, TellsThatPedalsCannotBeWatched) {
  watcher.CanStart = false;
  usb.StartWatch();
  EXPECT_EQ(Shown(), "USB pedals can not be read: the library PedalWatch did not start.");
}

TEST_F(PedalStateTest, TellsWhichSerialPortIsRead) {
  ChooseSerial();
  EXPECT_EQ(Shown(), "Port 1 is being read.");
  config.txtSerialFootPedalComPort.Value = "4";
  EXPECT_EQ(Shown(), "Port 4 can not be read.");
}

}  // namespace
}  // namespace tavlo::test
