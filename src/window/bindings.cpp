#include "window/bindings.h"

#include <algorithm>
#include <iterator>

#include "store/settings_fields.h"

namespace tavlo::window {
namespace {

static_assert(forms::kMostTyped <= store::kLongestValue, "what a hand puts in can be stored");

bool StandsOn(const forms::Pane& pane, const forms::Control& control) {
  for (const forms::Pane* around = control.Parent; around; around = around->Parent) {
    if (around == &pane) return true;
  }
  return false;
}

}  // namespace

std::string Binding::Shown() const {
  return text ? text->Value.Get() : store::TruthText(check->Value);
}

void Binding::Show(const std::string& stored) const {
  if (text) {
    text->Value = stored;
  } else {
    check->Value = store::CheckBoxValue(stored) == 1;
  }
}

void Binding::ShowTick() const {
  check->Value = store::IsYes(text->Value.Get()) == (tick == Tick::Yes);
}

void Binding::TakeTick() const { text->Value = store::YesNo(check->Value == (tick == Tick::Yes)); }

std::vector<Binding> PairsOn(const forms::Pane& pane, const std::vector<Binding>& bindings) {
  std::vector<Binding> pairs;
  std::ranges::copy_if(bindings, std::back_inserter(pairs), [&](const Binding& binding) {
    return binding.IsPair() && StandsOn(pane, *binding.check);
  });
  return pairs;
}

std::vector<Binding> ConfigurationBindings(forms::ConfigurationForm& config) {
  using enum Saving;
  return {
      {"AutoBackspace", Listed, &config.txtAutoBackspace},
      {"AutoPreview", Listed, &config.txtAutoPreview},
      {"WindIncrement", Listed, &config.txtWindIncrement},
      {"AccelerateWindIncrementFlag", Listed, &config.txtAccelerateWindIncrement,
       &config.chkAccelerateWindIncrement},
      {"SubjectHeading", Listed, &config.txtSubjectHeading},
      {"AudioPromptsFlag", Listed, &config.txtAudioPrompts, &config.chkAudioPrompts},
      {"MinimizeMiniPlayerFlag", Listed, &config.txtMinimizeMiniPlayer,
       &config.chkMinimizeMiniPlayer},
      {"WordProcessorPath", Listed, &config.txtWordProcessorPath},
      {"AlwaysOnTopFlag", Listed, &config.txtAlwaysOnTop, &config.chkAlwaysOnTop},
      {"SkipBegEndFlag", Listed, &config.txtSkipBegEnd, &config.chkSkipBegEnd},
      {"SwapRewFwdPedalFlag", Listed, &config.txtSwapRewFwdPedals,
       &config.chkSwapRewindForwardPedals, Tick::No},
      {"ViewDelay", Listed, &config.txtViewDelay},
      {"WavConvMode", Listed, &config.txtWavConvMode},
      {"AutoQueueDocumentFlag", Listed, &config.txtAutoQueueJob, &config.chkAutoQueueJob},
      {"DeleteCompletedFiles", Listed, &config.txtDeleteCompletedFiles},
      {"SerialFootPedalComPort", Listed, &config.txtSerialFootPedalComPort},
      {"Ew2QueuePath", Listed, &config.txtEw2QueuePath},
      {"Ds2QueuePath", Listed, &config.txtDs2QueuePath},
      {"WavQueuePath", Listed, &config.txtWavQueuePath},
      {"Eu2QueuePath", Listed, &config.txtEu2QueuePath},
      {"PromptVolume", Listed, &config.txtPromptVolume},
      {"USBorSerialFootPedal", Listed, &config.txtUSBorSerialFootPedal},
      {"CustomEq1", Listed, &config.txtEqCustom[0]},
      {"CustomEq2", Listed, &config.txtEqCustom[1]},
      {"CustomEq3", Listed, &config.txtEqCustom[2]},
      {"CustomEq4", Listed, &config.txtEqCustom[3]},
      {"CustomEq5", Listed, &config.txtEqCustom[4]},
      {"CustomEq6", Listed, &config.txtEqCustom[5]},
      {"CustomEq7", Listed, &config.txtEqCustom[6]},
      {"CustomEq8", Listed, &config.txtEqCustom[7]},
      {"CustomEq9", Listed, &config.txtEqCustom[8]},
      {"CustomEq10", Listed, &config.txtEqCustom[9]},
      {"CustomEq11", Listed, &config.txtEqCustom[10]},
      {"CustomEq12", Listed, &config.txtEqCustom[11]},
      {"CustomDisplay", Listed, &config.txtCustomDisplay},
      {"ShowCustomDisplay", Listed, &config.txtShowCustomDisplay, &config.chkShowCustomDisplay},
      {"MixerSelection", Listed, &config.txtMixerSelection},
      {"AutoImportMode", GoesAlong, &config.txtAutoImport, &config.chkAutoImportMode},
      {"AutoRefreshMode", GoesAlong, nullptr, &config.chkAutoRefreshMode},
      {"WorkWaitingAlertMode", GoesAlong, &config.txtWorkWaitingAlertMode},
      {"NewDictationAlertInterval", GoesAlong, &config.txtNewDictationAlertInterval},
      {"AutoQueueRefreshInterval", GoesAlong, &config.txtAutoQueueRefreshInterval},
      {"EqualizerChoice", GoesAlong, &config.txtEqChoice},
      {"EqualizerEnableFlag", GoesAlong, &config.txtEqEnable, &config.chkEqEnable},
      {"PlayStopKey", GoesAlong, &config.keys[0].txtKey},
      {"PlayHeldKey", GoesAlong, &config.keys[1].txtKey},
      {"RewindHeldKey", GoesAlong, &config.keys[2].txtKey},
      {"ForwardHeldKey", GoesAlong, &config.keys[3].txtKey},
      {"ToBeginningKey", GoesAlong, &config.keys[4].txtKey},
      {"ToEndKey", GoesAlong, &config.keys[5].txtKey},
      {"SlowerKey", GoesAlong, &config.keys[6].txtKey},
      {"FasterKey", GoesAlong, &config.keys[7].txtKey},
      {"NormalSpeedKey", GoesAlong, &config.keys[8].txtKey},
      {"CompleteKey", GoesAlong, &config.keys[9].txtKey},
      {"SaveKey", GoesAlong, &config.keys[10].txtKey},
      {"SkipKey", GoesAlong, &config.keys[11].txtKey},
      {"BusSaysNothingFlag", GoesAlong, &config.txtBusSaysNothing, &config.chkBusSaysNothing},
  };
}

std::vector<Binding> MainBindings(forms::MainForm& main) {
  using enum Saving;
  return {
      {"FaciaImagePointer", AtChange, &main.txtFasciaImagePointer},
      {"ImportWavSynchronizeFlag", AtChange, &main.txtImportSynchronize,
       &main.chkImportSynchronize},
      {"Speed", AtChange, &main.txtSpeed},
      {"Volume", AtChange, &main.txtVolume},
      {"FtpServerSelection", AtChange, &main.txtFtpServerSelection},
      {"PlayerTop", WithPlace, &main.txtPlayerTop},
      {"PlayerLeft", WithPlace, &main.txtPlayerLeft},
      {"TitleBarHeight", WithPlace, &main.txtTitleBarHeight},
  };
}

std::vector<Binding> FtpBindings(forms::ConfigurationForm& config) {
  using enum Saving;
  return {
      // The number first: a row without a name is named after it.
      {"ID", Never, &config.txtFtpServerID},
      {"FtpServerName", WithItsRow, &config.txtFtpName},
      {"FtpServerID", WithItsRow, &config.eServer},
      {"FtpServerUserID", WithItsRow, &config.eUser},
      {"FtpServerPassword", WithItsRow, &config.ePass},
      {"FtpServerDir", WithItsRow, &config.eServerDir},
      {"FtpDeleteFileCheck", WithItsRow, nullptr, &config.chkFtpFileDeleteMode},
      {"FtpAutoListDownloadCheck", WithItsRow, nullptr, &config.chkFtpAutoListAndDownload},
      {"FtpPassiveModeCheck", WithItsRow, nullptr, &config.chkFtpPassiveMode},
      {"FtpParseGenericPointer", WithItsRow, &config.txtFtpParseGenericPointer},
  };
}

std::vector<Binding> AuthorBindings(forms::MainForm& main) {
  using enum Saving;
  return {
      {"NumericSorter", Never, &main.txtImportAuthorCount},
      {"SystemID", WithItsRow, &main.txtImportSystemID},
      {"AuthorID", WithItsRow, &main.txtImportAuthorID},
      {"AuthorLastName", WithItsRow, &main.txtImportAuthorLastName},
      {"Department", WithItsRow, &main.txtImportDepartment},
      {"Worktype", WithItsRow, &main.txtImportWorktype},
      {"Priority", WithItsRow, &main.txtImportPriority, &main.chkImportPriority},
      {"Subject", WithItsRow, &main.txtImportSubject},
  };
}

}  // namespace tavlo::window
