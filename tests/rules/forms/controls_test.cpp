#include "forms/controls.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <utility>

#include "store/settings_database.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using forms::By;
using forms::Choice;
using forms::Command;
using forms::Pane;
using forms::Range;
using forms::SortOrder;
using forms::Table;
using forms::Text;
using forms::Window;

struct ControlsTest : testing::Test {
  ControlsTest() { window.Visible = true; }

  SimulatedLoop loop;
  Window window{loop, "window", "Window"};
  Pane frame{&window, "frame"};
  Command button{&frame, "button", {}};
  Text box{&frame, "box"};
  Range slider{&frame, "slider", {}, {.minimum = -5, .maximum = 5}};
  Table list{&frame, "list"};
  int ran = 0;
};

TEST_F(ControlsTest, PressByProgramReachesAButtonOfAHiddenFrame) {
  button.OnPress = [&] { ++ran; };
  frame.Visible = false;
  button.Visible = false;
  button.Press();
  EXPECT_EQ(ran, 1);
}

TEST_F(ControlsTest, PressByProgramOfADisabledButtonDoesNothing) {
  button.OnPress = [&] { ++ran; };
  button.Enabled = false;
  button.Press();
  EXPECT_EQ(ran, 0);
}

TEST_F(ControlsTest, HandNeedsTheControlVisibleAndEnabled) {
  button.OnPress = [&] { ++ran; };
  button.Press(By::Hand);
  EXPECT_EQ(ran, 1);
  button.Visible = false;
  button.Press(By::Hand);
  button.Visible = true;
  button.Enabled = false;
  button.Press(By::Hand);
  EXPECT_EQ(ran, 1);
}

TEST_F(ControlsTest, HandNeedsEveryPaneAroundTheControlVisibleAndEnabled) {
  button.OnPress = [&] { ++ran; };
  frame.Visible = false;
  button.Press(By::Hand);
  frame.Visible = true;
  window.Enabled = false;
  button.Press(By::Hand);
  EXPECT_EQ(ran, 0);
}

TEST_F(ControlsTest, HandReachesNothingUnderAMessageBox) {
  button.OnPress = [&] { ++ran; };
  loop.Expect({.meanwhile = [&] {
    button.Press(By::Hand);
    EXPECT_EQ(ran, 0);
    button.Press();
  }});
  loop.Show({.text = "?"});
  EXPECT_EQ(ran, 1);
}

TEST_F(ControlsTest, WindowIsToldOfEveryCommandOfAHandBeforeItRuns) {
  std::string told;
  window.OnCommandByHand = [&] { told += "window "; };
  button.OnPress = [&] { told += "press "; };
  list.OnRowClick = [&] { told += "row "; };
  list.OnHeaderClick = [&](int) { told += "heading "; };
  slider.OnPress = [&] { told += "slider "; };
  list.Add("a");
  button.Press(By::Hand);
  list.RowClick(0);
  list.HeaderClick(0);
  slider.Press();
  EXPECT_EQ(told, "window press window row window heading window slider ");
}

TEST_F(ControlsTest, PressByProgramOrOutOfReachIsNoCommandOfAHand) {
  window.OnCommandByHand = [&] { ++ran; };
  button.OnPress = [] {};
  button.Press();
  button.Enabled = false;
  button.Press(By::Hand);
  EXPECT_EQ(ran, 0);
}

TEST_F(ControlsTest, FailureInAHandsPressIsShownByTheNameOfTheControl) {
  button.OnPress = [] { throw std::runtime_error("no"); };
  button.Press(By::Hand);
  ASSERT_EQ(loop.Shown.size(), 1u);
  EXPECT_EQ(loop.Shown[0].text, "button could not finish: no");
}

TEST_F(ControlsTest, WritingAnEqualValueDoesNothing) {
  box.Value = "a";
  box.OnChange = [&] { ++ran; };
  box.OnStored = [&] { ++ran; };
  const unsigned version = box.Version();
  box.Value = "a";
  EXPECT_EQ(ran, 0);
  EXPECT_EQ(box.Version(), version);
}

TEST_F(ControlsTest, ProgramsWriteRunsTheChangeHandlerAndThenTheStore) {
  std::string order;
  box.OnChange = [&] { order += "change "; };
  box.OnStored = [&] { order += "store "; };
  box.Value = "a";
  EXPECT_EQ(order, "change store ");
}

TEST_F(ControlsTest, ChangeHandlerThatCorrectsItsControlRunsAgainForThatWrite) {
  std::string seen;
  box.OnChange = [&] {
    seen += box.Value.Get() + " ";
    if (box.Value.Get() == "bad") box.Value = "good";
  };
  box.Value = "bad";
  EXPECT_EQ(seen, "bad good ");
  EXPECT_EQ(box.Value.Get(), "good");
}

TEST_F(ControlsTest, TypedTextIsCutToTheLongestWholeCharacters) {
  Text narrow(&frame, "narrow", {}, 3);
  narrow.Change("\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F");
  EXPECT_EQ(narrow.Value.Get(), "\xC3\xA4\xC3\xB6\xC3\xBC");
}

TEST_F(ControlsTest, TypedTextHasNoMoreBytesThanASettingMayHave) {
  std::string pasted;
  while (pasted.size() < 100'000) pasted += "\xE2\x82\xAC";
  box.Change(pasted);
  EXPECT_EQ(box.Value.Get(), pasted.substr(0, 65'535));
  EXPECT_LE(box.Value.Get().size(), store::kLongestValue);
  EXPECT_GT(box.Value.Get().size() + 3, store::kLongestValue);
}

TEST_F(ControlsTest, TypedTextHasNoNul) {
  box.Change(std::string("pas\0ted", 7));
  EXPECT_EQ(box.Value.Get(), "pasted");
}

TEST_F(ControlsTest, ProgramMayWriteATextThatIsLongerThanAHandMayType) {
  Text narrow(&frame, "narrow", {}, 3);
  narrow.Value = "longer";
  EXPECT_EQ(narrow.Value.Get(), "longer");
}

TEST_F(ControlsTest, ProgramsWriteOfASliderRunsItsChangeAndNeverItsRelease) {
  std::string order;
  slider.OnChange = [&] { order += "change "; };
  slider.OnRelease = [&] { order += "release "; };
  slider.Value = 3;
  EXPECT_EQ(order, "change ");
  slider.Release();
  EXPECT_EQ(order, "change release ");
}

TEST_F(ControlsTest, SliderInAHandIsLetGoAlthoughItWasDisabledMeanwhile) {
  int releases = 0;
  slider.OnRelease = [&] { ++releases; };
  slider.Press();
  slider.Enabled = false;
  slider.Release();
  EXPECT_EQ(releases, 1);
  slider.Release();
  EXPECT_EQ(releases, 1);
}

TEST_F(ControlsTest, AKeyOnASliderIsAllThreeAndTheKeyboardStays) {
  std::string told;
  slider.OnPress = [&] { told += "press "; };
  slider.OnChange = [&] { told += "change "; };
  slider.OnRelease = [&] {
    told += "release";
    window.FocusOn(button);
  };
  slider.Step(3);
  EXPECT_EQ(told, "press change release");
  EXPECT_EQ(slider.Value, 3);
  EXPECT_EQ(window.Focused(), &slider);
  slider.Enabled = false;
  slider.Step(4);
  EXPECT_EQ(slider.Value, 3);
}

TEST_F(ControlsTest, NumberOutsideASlidersBoundsIsTheNearerBound) {
  EXPECT_EQ(slider.Bounds.Nearest(std::int64_t{1} << 40), 5);
  EXPECT_EQ(slider.Bounds.Nearest(-(std::int64_t{1} << 40)), -5);
  EXPECT_EQ(slider.Bounds.Nearest(4), 4);
}

TEST_F(ControlsTest, SliderIsCutToItsBounds) {
  slider.Value = 99;
  EXPECT_EQ(slider.Value, 5);
  slider.Change(-99);
  EXPECT_EQ(slider.Value, -5);
}

TEST_F(ControlsTest, CheckBoxTurnsWithEachClickAndAnOptionOnlySets) {
  Choice check(&frame, "check", {});
  Choice option(&frame, "option", {}, false, Choice::Kind::Option);
  check.Click();
  check.Click();
  option.Click();
  option.Click();
  EXPECT_FALSE(check.Value);
  EXPECT_TRUE(option.Value);
}

TEST_F(ControlsTest, RowClickChoosesTheRowBeforeItsHandlersRun) {
  list.Add("a");
  list.Add("b");
  std::string order;
  list.OnRowClick = [&] { order += "row" + std::to_string(list.ListIndex) + " "; };
  list.OnClick = [&] { order += "click "; };
  list.RowClick(1);
  EXPECT_EQ(order, "row1 click ");
}

TEST_F(ControlsTest, ClickBesideTheRowsDoesNothing) {
  list.Add("a");
  list.OnClick = [&] { ++ran; };
  list.RowClick(1);
  list.RowClick(-1);
  EXPECT_EQ(ran, 0);
  EXPECT_EQ(list.ListIndex, -1);
}

TEST_F(ControlsTest, SortIsStableIgnoresCaseAndTheChoiceFollowsItsRow) {
  for (const auto& [key, name] : {std::pair{"b", "1"}, {"A", "2"}, {"B", "3"}, {"a", "4"}}) {
    list.Add(forms::Row{{{key}, {name}}});
  }
  list.ListIndex = 2;
  list.Sort(0, SortOrder::Ascending);
  std::string names;
  for (int row = 0; row < 4; ++row) names += list.TextAt(row, 1);
  EXPECT_EQ(names, "2413");
  EXPECT_EQ(list.TextAt(list.ListIndex, 1), "3");
}

TEST_F(ControlsTest, SortOrdersTextsOfAnyLengthAsTheirBytesDo) {
  using namespace std::string_literals;
  const std::string fifteen = "20040309140512x";
  const std::string longer = fifteen + "yz and so on";
  const std::vector<std::string> inOrder{
      "",  "\0"s,  "\0\0"s, fifteen,   fifteen + "\0"s, fifteen + "y", longer + " 1", longer + " 2",
      "a", "a\0"s, "a b",   "\xC3\xA9"};
  for (std::size_t i = 0; i < inOrder.size(); ++i) {
    list.Add(inOrder[i * 7 % inOrder.size()]);
  }
  list.Sort(0, SortOrder::Ascending);
  for (std::size_t i = 0; i < inOrder.size(); ++i) {
    EXPECT_EQ(list.TextAt(static_cast<int>(i), 0), inOrder[i]) << i;
  }
}

TEST_F(ControlsTest, DescendingSortKeepsTheOrderOfEqualRows) {
  for (const auto& [key, name] : {std::pair{"a", "1"}, {"b", "2"}, {"a", "3"}, {"b", "4"}}) {
    list.Add(forms::Row{{{key}, {name}}});
  }
  list.Sort(0, SortOrder::Descending);
  std::string names;
  for (int row = 0; row < 4; ++row) names += list.TextAt(row, 1);
  EXPECT_EQ(names, "2413");
}

TEST_F(ControlsTest, LongSortBreathesWhileTheRowsStandAndKeepsTheOrderOfEqualOnes) {
  constexpr int kRows = 10'000;
  const auto text = [](int number) { return std::to_string(100'000 + number); };
  for (int i = 0; i < kRows; ++i) list.Add(forms::Row{{{text(i * 7 % 100)}, {text(i)}}});
  int breaths = 0;
  int moved = 0;
  list.Sort(0, SortOrder::Ascending, [&] {
    ++breaths;
    for (int i = 0; i < kRows; ++i) moved += list.TextAt(i, 1) == text(i) ? 0 : 1;
  });
  EXPECT_GT(breaths, 10);
  EXPECT_EQ(moved, 0);
  for (int i = 1; i < kRows; ++i) {
    EXPECT_LT(list.TextAt(i - 1, 0) + list.TextAt(i - 1, 1), list.TextAt(i, 0) + list.TextAt(i, 1));
  }
}

TEST_F(ControlsTest, HeaderClickTakesTheColumnAndFlipsTheOrder) {
  list.Add("a");
  list.Add("b");
  list.SortByHeader(0);
  EXPECT_EQ(list.TextAt(0, 0), "b");
  list.SortByHeader(0);
  EXPECT_EQ(list.TextAt(0, 0), "a");
}

TEST_F(ControlsTest, FilesAreLetGoOverAListThatAHandReaches) {
  std::vector<std::string> dropped;
  list.OnDropFiles = [&dropped](const std::vector<std::string>& paths) { dropped = paths; };
  list.Enabled = false;
  list.DropFiles({"/a.wav"});
  EXPECT_TRUE(dropped.empty());
  list.Enabled = true;
  list.DropFiles({"/a.wav", "/b.wav"});
  EXPECT_EQ(dropped, (std::vector<std::string>{"/a.wav", "/b.wav"}));
}

TEST_F(ControlsTest, RemovingARowMovesTheChoiceWithItsRow) {
  for (const char* name : {"a", "b", "c"}) list.Add(name);
  list.ListIndex = 2;
  list.Remove(0);
  EXPECT_EQ(list.TextAt(list.ListIndex, 0), "c");
  list.Remove(1);
  EXPECT_EQ(list.ListIndex, -1);
}

TEST_F(ControlsTest, ClearForgetsTheChoice) {
  list.Add("a");
  list.ListIndex = 0;
  list.Clear();
  EXPECT_EQ(list.ListIndex, -1);
  EXPECT_EQ(list.TextAt(0, 0), "");
}

TEST_F(ControlsTest, MoveOfAWindowIsNoResize) {
  window.OnResize = [&] { ++ran; };
  window.Place(10, 10, 100, 100, forms::Shape::Normal);
  EXPECT_EQ(ran, 1);
  window.Place(20, 20, 100, 100, forms::Shape::Normal);
  EXPECT_EQ(ran, 1);
}

TEST_F(ControlsTest, AskingForTheKeyboardAgainAsksTheToolkitAgain) {
  window.FocusOn(box);
  const unsigned version = window.FocusVersion();
  window.FocusOn(box);
  EXPECT_NE(window.FocusVersion(), version);
}

TEST_F(ControlsTest, AWindowCentresOnTheScreenThatItStandsOn) {
  window.Width = 600;
  window.Height = 300;
  window.ScreenLeft = 10000;
  window.ScreenTop = 2000;
  window.ScreenWidth = 1000;
  window.ScreenHeight = 700;
  window.Centre();
  EXPECT_EQ(window.Left, 10200);
  EXPECT_EQ(window.Top, 2200);
}

}  // namespace
}  // namespace tavlo::test
