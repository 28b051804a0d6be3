#include "simulation/control_walk.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "support/simulated_loop.h"

namespace tavlo::simulation {
namespace {

/// Every control of a form, however deep it stands.
void Collect(const forms::Pane& pane, std::set<const forms::Control*>& all) {
  for (const forms::Control* const control : pane.Children()) {
    all.insert(control);
    if (const auto* const inner = dynamic_cast<const forms::Pane*>(control)) Collect(*inner, all);
  }
}

struct ControlWalkTest : testing::Test {
  test::SimulatedLoop loop;
  shell::Windows windows{loop};
  ControlWalk walk{windows};
};

TEST_F(ControlWalkTest, ComesToEveryControlThatIsNotLeftOut) {
  std::set<const forms::Control*> walked;
  const auto add = [&](const auto& touchables) {
    for (const auto& touchable : touchables) walked.insert(touchable.control);
  };
  add(walk.commands);
  add(walk.choices);
  add(walk.sliders);
  add(walk.texts);
  add(walk.tables);
  add(walk.panes);
  std::set<const forms::Control*> all;
  for (const auto& window : walk.windows) Collect(*window.control, all);
  ASSERT_GT(all.size(), 100U);
  for (const forms::Control* const control : all) {
    EXPECT_EQ(walked.contains(control), !ControlWalk::LeftOut(*control)) << control->Name;
  }
}

TEST_F(ControlWalkTest, KnowsNoNameThatNoControlHas) {
  EXPECT_EQ(ControlWalk::Obsolete(windows), std::vector<std::string>{});
}

TEST_F(ControlWalkTest, TypesIntoBoxesAndNotIntoLabels) {
  const auto isTypedInto = [&](const forms::Text& text) {
    return std::ranges::find(walk.boxes, &text, &Touchable<forms::Text>::control) !=
           walk.boxes.end();
  };
  EXPECT_TRUE(isTypedInto(windows.configuration.txtSubjectHeading));
  EXPECT_TRUE(isTypedInto(windows.configuration.ePass));
  EXPECT_FALSE(isTypedInto(windows.configuration.lblSubjectHeading));
  EXPECT_FALSE(isTypedInto(windows.configuration.Label[0]));
}

}  // namespace
}  // namespace tavlo::simulation
