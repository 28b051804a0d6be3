#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "desk.h"
#include "pedal_models.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

constexpr const char* kRules = TAVLO_UDEV_RULES;

/// Pedals on a real bus, and the udev rule that goes with the program.
struct UdevRule : AtTheDesk {
  void TearDown() override {
    EXPECT_TRUE(desk->hardware.UnplugBusPedal());
    AtTheDesk::TearDown();
  }
  /// What udev says of a pedal of that make.
  static std::string SaidOf(std::uint16_t vendor, std::uint16_t product) {
    if (!desk->hardware.PlugBusPedal({.vendor = vendor,
                                      .product = product,
                                      .usagePage = 0x0C,
                                      .usage = 3,
                                      .reportBytes = 2})) {
      return {};
    }
    const std::string said = desk->hardware.AskUdev(kRules);
    desk->hardware.UnplugBusPedal();
    return said;
  }
  static bool GivesToTheSeat(const std::string& said) {
    std::istringstream lines(said);
    for (std::string line; std::getline(lines, line);) {
      if (line.starts_with("CURRENT_TAGS=") && line.find(":uaccess:") != std::string::npos)
        return true;
    }
    return false;
  }
};

TEST_F(UdevRule, EveryKnownPedalIsGivenToWhoSitsAtTheDesk) {
  const std::string said = SaidOf(kPickedPedal.vendor, kPickedPedal.product);
  EXPECT_TRUE(GivesToTheSeat(said)) << said;
  for (const pedal_watch::PedalModel& model : pedal_watch::kPedalModels) {
    EXPECT_TRUE(GivesToTheSeat(SaidOf(model.vendor, model.product))) << std::hex << model.product;
  }
}

TEST_F(UdevRule, NoOtherDeviceIsGivenAway) {
  const std::string said = SaidOf(kPickedPedal.vendor, 0x00FE);
  EXPECT_NE(said, "");
  EXPECT_FALSE(GivesToTheSeat(said)) << said;
}

TEST_F(UdevRule, UdevReadsTheFileWithoutAComplaint) {
  const std::string said = SaidOf(kPickedPedal.vendor, kPickedPedal.product);
  EXPECT_NE(said.find("Reading rules file: /run/udev/rules.d/70-tavlo-deck-pedals.rules"),
            std::string::npos)
      << said;
  // A complaint names the file and the line.
  EXPECT_EQ(said.find("70-tavlo-deck-pedals.rules:"), std::string::npos) << said;
}

TEST_F(UdevRule, PedalOnARealBusPlaysForAsLongAsItIsDown) {
  ASSERT_TRUE(desk->hardware.PlugBusPedal());
  ASSERT_TRUE(desk->hardware.PermitPedal());
  ASSERT_TRUE(Until([] { return desk->UsbPresence() == pedals::UsbPresence::Ready; }));
  ASSERT_TRUE(desk->Select());
  ASSERT_TRUE(desk->FallsSilent());
  const double begin = desk->recorder.Seconds();
  ASSERT_TRUE(desk->hardware.PressOnBus(2));
  ASSERT_TRUE(Until([] { return desk->Playing(); }));
  EXPECT_TRUE(desk->SoundsSince(begin, 0.5));
  ASSERT_TRUE(desk->hardware.PressOnBus(0));
  EXPECT_TRUE(Until([] { return !desk->Playing(); }));
}

}  // namespace
}  // namespace tavlo::test
