#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

#include "pedal_models.h"

namespace tavlo::test {
namespace {

std::string Rules() {
  std::ostringstream text;
  text << std::ifstream(TAVLO_UDEV_RULES).rdbuf();
  return text.str();
}

std::string RuleFor(unsigned vendor, unsigned product) {
  std::array<char, 100> rule{};
  std::snprintf(rule.data(), rule.size(),
                "ATTRS{idVendor}==\"%04x\", ATTRS{idProduct}==\"%04x\", TAG+=\"uaccess\"\n", vendor,
                product);
  return rule.data();
}

TEST(UdevRules, GiveAccessToEveryPedalThatTheWatchTakes) {
  const std::string rules = Rules();
  EXPECT_NE(rules.find(RuleFor(pedal_watch::kPickedVendor, 255)), std::string::npos);
  for (const pedal_watch::PedalModel& model : pedal_watch::kPedalModels) {
    EXPECT_NE(rules.find(RuleFor(model.vendor, model.product)), std::string::npos) << model.product;
  }
}

}  // namespace
}  // namespace tavlo::test
