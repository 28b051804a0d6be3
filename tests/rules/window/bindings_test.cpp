#include "window/bindings.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "store/settings_fields.h"
#include "support/simulated_loop.h"

namespace tavlo::test {
namespace {

using store::Form;
using store::Table;
using window::Binding;

/// Names of the check boxes on a pane and on the panes that stand on it.
std::set<std::string> CheckBoxesOn(const forms::Pane& pane) {
  std::set<std::string> names;
  for (const forms::Control* const control : pane.Children()) {
    const auto* const box = dynamic_cast<const forms::Choice*>(control);
    if (box && box->ChoiceKind == forms::Choice::Kind::Check) names.insert(box->Name);
    if (const auto* const inner = dynamic_cast<const forms::Pane*>(control)) {
      names.merge(CheckBoxesOn(*inner));
    }
  }
  return names;
}

struct BindingsTest : testing::Test {
  BindingsTest() {
    general = window::ConfigurationBindings(config);
    std::ranges::copy(window::MainBindings(main), std::back_inserter(general));
  }

  std::vector<Binding> All() {
    std::vector<Binding> all = general;
    std::ranges::copy(ftp, std::back_inserter(all));
    std::ranges::copy(author, std::back_inserter(all));
    return all;
  }
  std::vector<Binding> Pairs() {
    std::vector<Binding> pairs = All();
    std::erase_if(pairs, [](const Binding& binding) { return !binding.IsPair(); });
    return pairs;
  }

  SimulatedLoop loop;
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
  std::vector<Binding> general;
  std::vector<Binding> ftp = window::FtpBindings(config);
  std::vector<Binding> author = window::AuthorBindings(main);
};

TEST_F(BindingsTest, EveryFieldButTheFewWithoutAControlIsBoundOnce) {
  const std::set<std::string_view> unbound{"OEMLogo", "FtpListFileDefinition", "Secretary"};
  std::multiset<std::string_view> bound;
  for (const Binding& each : All()) bound.insert(each.field);
  for (const Table table : {Table::GeneralSettings, Table::FtpSettings, Table::ImportAuthors}) {
    for (const store::Field& field : store::FieldsOf(table)) {
      EXPECT_EQ(bound.count(field.name), unbound.contains(field.name) ? 0u : 1u) << field.name;
    }
  }
}

TEST_F(BindingsTest, EveryTruthHasACheckBoxAndEveryYesOrNoACheckBoxBeforeItsText) {
  const auto expect = [](const std::vector<Binding>& bindings, Table table) {
    for (const Binding& binding : bindings) {
      const store::Field* const field = store::FindField(table, binding.field);
      ASSERT_TRUE(field) << binding.field;
      const bool yesNo = field->form == Form::YesNo;
      const bool truth = field->form == Form::Truth;
      EXPECT_EQ(binding.check != nullptr, yesNo || truth) << binding.field;
      EXPECT_EQ(binding.text != nullptr, !truth) << binding.field;
    }
  };
  expect(general, Table::GeneralSettings);
  expect(ftp, Table::FtpSettings);
  expect(author, Table::ImportAuthors);
}

TEST_F(BindingsTest, EveryCheckBoxStandsForAFieldButTheFewThatStandForSomethingElse) {
  std::set<std::string> expected{
      "chkWorkWaitingAlertMode",  // One of the letters of the alert mode.
      "chkFtpAutoRetrieve",       // Holds for the run only.
      "chMute0",
      "chMute1",
      "chMute2",
      "chMute3",
      "chMute4",
      "chMute5",
      "chMute6",
      "chMute7"};
  for (const Binding& binding : All()) {
    if (!binding.check) continue;
    EXPECT_TRUE(expected.insert(binding.check->Name).second) << binding.field;
  }
  std::set<std::string> standing = CheckBoxesOn(main.frmMain);
  standing.merge(CheckBoxesOn(config.frmConfiguration));
  EXPECT_EQ(standing, expected);
}

TEST_F(BindingsTest, TextOfAPairIsNeverSeen) {
  ASSERT_FALSE(Pairs().empty());
  for (const Binding& pair : Pairs()) {
    EXPECT_FALSE(pair.text->Visible) << pair.field;
    EXPECT_TRUE(pair.check->Visible) << pair.field;
  }
}

TEST_F(BindingsTest, BoxOfThePedalsSenseAloneIsTickedForANo) {
  for (const Binding& pair : Pairs()) {
    const std::string ticked = pair.check == &config.chkSwapRewindForwardPedals ? "N" : "Y";
    const std::string other = ticked == "Y" ? "N" : "Y";
    for (const std::string& stored : {ticked, other, ticked}) {
      pair.Show(stored);
      pair.ShowTick();
      EXPECT_EQ(pair.check->Value, stored == ticked) << pair.field << " as " << stored;
      pair.Show("");
      pair.TakeTick();
      EXPECT_EQ(pair.Shown(), stored) << pair.field;
    }
  }
}

TEST_F(BindingsTest, WhatIsNotYesCountsAsNo) {
  for (const Binding& pair : Pairs()) {
    pair.Show("N");
    pair.ShowTick();
    const bool no = pair.check->Value;
    for (const char* stored : {"", "y", "1", "-1", "Yes"}) {
      pair.Show(stored);
      pair.ShowTick();
      EXPECT_EQ(pair.check->Value, no) << pair.field << " as " << stored;
      EXPECT_EQ(pair.Shown(), stored) << "the text stays until somebody clicks";
    }
  }
}

TEST_F(BindingsTest, PairsOfAPageAreThoseWhoseBoxesStandOnIt) {
  const std::vector<Binding> pairs = window::PairsOn(config.frameConfigEqualizer, general);
  ASSERT_EQ(pairs.size(), 1u);
  EXPECT_EQ(pairs[0].check, &config.chkEqEnable);
  std::size_t onPages = window::PairsOn(main.frmMain, All()).size();
  for (const forms::Pane* const page : config.Pages()) {
    onPages += window::PairsOn(*page, All()).size();
  }
  EXPECT_EQ(onPages, Pairs().size());
  EXPECT_EQ(window::PairsOn(main.frameImport, general).size(), 1u);
}

}  // namespace
}  // namespace tavlo::test
