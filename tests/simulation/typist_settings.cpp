#include <array>

#include "simulation/typist.h"

namespace tavlo::simulation {
namespace {

/// The place of "&Mixer" among the tabs.
constexpr int kMixerTab = 2;
/// The place of "&Keys".
constexpr int kKeysTab = 5;
constexpr std::array kSecondsOfChecks{"0", "5", "30", "30", "2000"};

}  // namespace

void Typist::ShapeTheSound() {
  forms::ConfigurationForm& config = desk_.Config();
  if (!config.chkEqEnable.Reachable()) Press(desk_.Main().cmdEQ);
  ActivateWindows();
  if (chance_.OneIn(3)) {
    Note("clicks chkEqEnable");
    config.chkEqEnable.Click();
  }
  for (int curves = chance_.Below(3); curves > 0; --curves) {
    Press(Some<forms::Command>({{&config.cmdEqFlat, 1},
                                {&config.cmdEqLo, 1},
                                {&config.cmdEqMid, 1},
                                {&config.cmdEqHi, 1},
                                {&config.cmdEqCustom, 1},
                                {&config.cmdSaveCustom, 1}}));
  }
  for (int drags = chance_.Below(3); drags > 0; --drags) {
    Drag(config.sldEQ[static_cast<std::size_t>(chance_.Below(forms::kEqualizerBands))]);
  }
}

void Typist::WorkTheMixer() {
  forms::ConfigurationForm& config = desk_.Config();
  forms::MainForm& main = desk_.Main();
  if (!config.frmConfiguration.Visible) {
    Press(main.cmdEQ.Reachable() ? main.cmdEQ : main.mnuConfiguration);
  }
  ActivateWindows();
  if (!config.frameConfigMixer.Visible || chance_.OneIn(6)) {
    config.tabConfiguration.RowClick(kMixerTab);
  }
  for (int deeds = 1 + chance_.Below(4); deeds > 0; --deeds) mixerHand_.Act();
  if (chance_.OneIn(3)) Press(config.mnuClose);
}

void Typist::ChooseAlerts() {
  forms::ConfigurationForm& config = desk_.Config();
  if (!config.frmConfiguration.Visible) Press(desk_.Main().mnuConfiguration);
  ActivateWindows();
  if (!config.frameSettings.Visible) config.tabConfiguration.RowClick(0);
  for (int clicks = 1 + chance_.Below(3); clicks > 0; --clicks) {
    forms::Choice& choice = Some<forms::Choice>({{&config.chkWorkWaitingAlertMode, 3},
                                                 {&config.chkAutoRefreshMode, 2},
                                                 {&config.optNewWorkWaitingAllJobs, 1},
                                                 {&config.optNewWorkWaitingPriority, 1},
                                                 {&config.chkAutoImportMode, 1}});
    Note("clicks " + choice.Name);
    choice.Click();
  }
  if (chance_.OneIn(3)) {
    forms::Text& box =
        chance_.OneIn(2) ? config.txtNewDictationAlertInterval : config.txtAutoQueueRefreshInterval;
    Note("types into " + box.Name);
    box.Change(chance_.Pick(kSecondsOfChecks));
  }
  if (!chance_.OneIn(4)) Press(config.mnuClose);
}

void Typist::ChooseKeys() {
  forms::ConfigurationForm& config = desk_.Config();
  if (!config.frmConfiguration.Visible) {
    Press(desk_.Main().cmdEQ.Reachable() ? desk_.Main().cmdEQ : desk_.Main().mnuConfiguration);
  }
  ActivateWindows();
  config.tabConfiguration.RowClick(kKeysTab);
  for (int choices = 1 + chance_.Below(4); choices > 0; --choices) otherWindow_.ChooseAKey();
  // What is chosen is held over the page, too.
  if (chance_.OneIn(3)) otherWindow_.Act();
  if (!chance_.OneIn(4)) Press(config.mnuClose);
}

void Typist::TurnPage() {
  forms::Table& tabs = desk_.Config().tabConfiguration;
  const int pages = static_cast<int>(tabs.Rows().size());
  if (!tabs.Reachable() || pages == 0) return;
  tabs.RowClick(chance_.Below(pages));
}

}  // namespace tavlo::simulation
