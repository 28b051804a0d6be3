#include <array>

#include "simulation/typist.h"

namespace tavlo::simulation {
namespace {

/// The place of "&Mixer" among the tabs.
constexpr int kMixerTab = 2;

}  // namespace

void Typist::ClickChoice() {
  forms::ConfigurationForm& config = desk_.Config();
  const std::vector<forms::Choice*> choices{&config.chkAutoQueueJob,
                                            &config.chkMinimizeMiniPlayer,
                                            &config.chkAccelerateWindIncrement,
                                            &config.chkAlwaysOnTop,
                                            &config.chkAudioPrompts,
                                            &config.chkShowCustomDisplay,
                                            &config.chkAutoRefreshMode,
                                            &config.chkWorkWaitingAlertMode,
                                            &config.optNewWorkWaitingAllJobs,
                                            &config.optNewWorkWaitingPriority,
                                            &config.chkAutoImportMode,
                                            &config.chkSwapRewindForwardPedals,
                                            &config.chkSkipBegEnd,
                                            &config.optionUSB,
                                            &config.optionSerial};
  forms::Choice& choice = *chance_.Pick(choices);
  if (!choice.Reachable()) Press(desk_.Main().mnuConfiguration);
  ActivateWindows();
  Note("clicks " + choice.Name);
  choice.Click();
}

void Typist::ShapeTheSound() {
  forms::ConfigurationForm& config = desk_.Config();
  if (!config.chkEqEnable.Reachable()) Press(desk_.Main().cmdEQ);
  ActivateWindows();
  if (chance_.OneIn(3)) {
    Note("clicks chkEqEnable");
    config.chkEqEnable.Click();
  }
  for (int curves = chance_.Below(3); curves > 0; --curves) {
    Press(Some<forms::Command>({&config.cmdEqFlat, &config.cmdEqLo, &config.cmdEqMid,
                                &config.cmdEqHi, &config.cmdEqCustom, &config.cmdSaveCustom}));
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

void Typist::TypeText() {
  static const std::vector<std::string> words{"",
                                              "0",
                                              "-5",
                                              "60",
                                              "1e300",
                                              "abc",
                                              "12 and a half",
                                              "/share/import",
                                              "\xFF",
                                              " ",
                                              "C:\\Lyrane",
                                              "\n\n\n",
                                              "99999999999999999999",
                                              std::string("a\0b", 3),
                                              std::string(70'000, 'x')};
  forms::ConfigurationForm& config = desk_.Config();
  const std::vector<forms::Text*> texts{&config.txtSubjectHeading,
                                        &config.txtAutoQueueRefreshInterval,
                                        &config.txtViewDelay,
                                        &config.txtNewDictationAlertInterval,
                                        &config.txtCustomDisplay,
                                        &config.txtDeleteCompletedFiles,
                                        &config.txtWavQueuePath,
                                        &config.txtEw2QueuePath,
                                        &config.txtSerialFootPedalComPort};
  forms::Text& text = *chance_.Pick(texts);
  if (!text.Reachable()) Press(desk_.Main().mnuConfiguration);
  ActivateWindows();
  Note("types into " + text.Name);
  text.Change(chance_.Pick(words));
}

void Typist::TurnPage() {
  forms::Table& tabs = desk_.Config().tabConfiguration;
  const int pages = static_cast<int>(tabs.Rows().size());
  if (!tabs.Reachable() || pages == 0) return;
  tabs.RowClick(chance_.Below(pages));
}

}  // namespace tavlo::simulation
