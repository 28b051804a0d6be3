#include "seen_settings.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include "remote/afar_action.h"
#include "window/bindings.h"

namespace tavlo {
namespace {

using forms::ConfigurationForm;
using forms::MainForm;
using store::Table;

/// A control that is called something beside the setting that it stands for.
struct Called {
  const forms::Control* control = nullptr;
  std::string words;
};
using CalledByField = std::map<std::string_view, Called>;

/// A caption as it is read: without the mark before its key, and without the value behind it.
std::string Plain(std::string caption) {
  std::erase(caption, '&');
  return caption.substr(0, caption.find(':'));
}

Called Of(const forms::Text& label) { return {&label, Plain(label.Value)}; }
Called Of(const forms::Pane& frame) { return {&frame, Plain(frame.Caption)}; }
Called Of(const forms::Choice& box) { return {&box, Plain(box.Caption)}; }
Called Of(const forms::Command& key) { return {&key, Plain(key.Caption)}; }

template <typename Control>
Called OneOf(std::initializer_list<const Control*> controls) {
  Called called = Of(**controls.begin());
  for (const Control* const other : controls) {
    if (other != *controls.begin()) called.words += ", " + Plain(other->Caption);
  }
  return called;
}

/// Under a check box, without a caption of its own.
Called Under(const forms::Choice& box, const std::string& what) {
  return {&box, Of(box).words + ", " + what};
}

CalledByField OnSettingsPage(const ConfigurationForm& config) {
  return {
      {"AutoBackspace", Of(config.frameAutoBackspace)},
      {"AutoPreview", Of(config.frameAutoPreview)},
      {"WindIncrement", Of(config.frameWindIncrement)},
      {"SubjectHeading", Of(config.lblSubjectHeading)},
      {"WordProcessorPath", Of(config.lblWordProcessorPath)},
      {"ViewDelay", Of(config.lblViewDelay)},
      {"WavConvMode", Of(config.lblWavConvMode)},
      {"DeleteCompletedFiles", Of(config.lblDeleteCompletedFiles)},
      {"SerialFootPedalComPort", Of(config.lblSerialFootPedalComPort)},
      {"PromptVolume", Of(config.lblPromptVolume)},
      {"USBorSerialFootPedal", OneOf({&config.optionUSB, &config.optionSerial})},
      {"CustomDisplay", Under(config.chkShowCustomDisplay, "the line")},
      {"WorkWaitingAlertMode",
       OneOf({&config.chkWorkWaitingAlertMode, &config.optNewWorkWaitingAllJobs,
              &config.optNewWorkWaitingPriority})},
      {"NewDictationAlertInterval", Under(config.chkWorkWaitingAlertMode, "seconds")},
      {"AutoQueueRefreshInterval", Under(config.chkAutoRefreshMode, "seconds")},
  };
}

CalledByField OnPathsPage(const ConfigurationForm& config) {
  return {
      {"Ew2QueuePath", Of(config.lblEw2QueuePath)},
      {"Ds2QueuePath", Of(config.lblDs2QueuePath)},
      {"WavQueuePath", Of(config.lblWavQueuePath)},
      {"Eu2QueuePath", Of(config.lblEu2QueuePath)},
  };
}

CalledByField OnSoundPages(const ConfigurationForm& config) {
  static constexpr std::array<std::string_view, forms::kEqualizerBands> kCustomFields{
      "CustomEq1", "CustomEq2", "CustomEq3", "CustomEq4",  "CustomEq5",  "CustomEq6",
      "CustomEq7", "CustomEq8", "CustomEq9", "CustomEq10", "CustomEq11", "CustomEq12"};
  CalledByField called{
      {"EqualizerChoice",
       OneOf<forms::Command>({&config.cmdEqFlat, &config.cmdEqLo, &config.cmdEqMid, &config.cmdEqHi,
                              &config.cmdEqCustom})},
      {"MixerSelection", Of(config.lblDevice)},
  };
  for (std::size_t band = 0; band < kCustomFields.size(); ++band) {
    const forms::Text& label = config.lblBand[band];
    called[kCustomFields[band]] = {&label,
                                   Of(label).words + ", then " + Of(config.cmdSaveCustom).words};
  }
  return called;
}

CalledByField OnFtpPage(const ConfigurationForm& config) {
  return {
      {"ID", {&config.dataFtpSettings, "the number between the four keys"}},
      {"FtpServerName", Of(config.lblFtpName)},
      {"FtpServerID", Of(config.lblServerID)},
      {"FtpServerUserID", Of(config.lblUser)},
      {"FtpServerPassword", Of(config.lblPass)},
      {"FtpServerDir", Of(config.lblServerDir)},
      {"FtpParseGenericPointer", Of(config.lblLinkFilesTo)},
  };
}

CalledByField OnKeysPage(const ConfigurationForm& config) {
  static constexpr std::array<std::string_view, remote::kAfarActions.size()> kKeyFields{
      "PlayStopKey",    "PlayHeldKey", "RewindHeldKey", "ForwardHeldKey",
      "ToBeginningKey", "ToEndKey",    "SlowerKey",     "FasterKey",
      "NormalSpeedKey", "CompleteKey", "SaveKey",       "SkipKey"};
  CalledByField called;
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    const std::size_t row = remote::IndexOf(name.action);
    called[kKeyFields[row]] = {&config.keys[row].lblKey, std::string(name.description)};
  }
  return called;
}

CalledByField OnMainWindow(const MainForm& main) {
  return {
      {"FaciaImagePointer", {&main.imageFaciaA, "a click beside its keys"}},
      {"Speed", Of(main.lblSpeed)},
      {"Volume", Of(main.lblVolume)},
      {"PlayerTop", {&main.framePlayer, "the place of the mini-player"}},
      {"PlayerLeft", {&main.framePlayer, "the place of the mini-player"}},
      {"TitleBarHeight", {&main.StatusBar1, "a double click on the mini-player's line of facts"}},
      {"FtpServerSelection", {&main.comboFtpServerNames, "the list of servers"}},
  };
}

CalledByField OnImportView(const MainForm& main) {
  return {
      {"NumericSorter", {&main.comboAuthorLastName, "the list of profiles, by their order"}},
      {"SystemID", Of(main.lblSystemID)},
      {"AuthorID", Of(main.lblAuthorID)},
      {"AuthorLastName", Of(main.lblAuthorLastName)},
      {"Department", Of(main.lblDepartment)},
      {"Worktype", Of(main.lblWorktype)},
      {"Subject", Of(main.lblImportSubject)},
  };
}

std::vector<window::Binding> BindingsOf(Table table, ConfigurationForm& config, MainForm& main) {
  switch (table) {
    case Table::GeneralSettings: {
      std::vector<window::Binding> bindings = window::ConfigurationBindings(config);
      std::ranges::copy(window::MainBindings(main), std::back_inserter(bindings));
      return bindings;
    }
    case Table::FtpSettings:
      return window::FtpBindings(config);
    case Table::ImportAuthors:
      return window::AuthorBindings(main);
    case Table::RevisionInfo:
      break;
  }
  return {};
}

/// The page or view on which a control stands.
std::string PlaceOf(const forms::Control& control, ConfigurationForm& config, MainForm& main) {
  std::map<const forms::Control*, std::string> places{{&main.framePlayer, "Deck"},
                                                      {&main.FtpFrame::frameFtp, "Ftp view"},
                                                      {&main.frameImport, "Import view"}};
  for (forms::Pane* const page : config.Pages()) {
    places[page] = Plain(config.tabConfiguration.TextAt(config.TabOf(*page), 0)) + " page";
  }
  for (const forms::Control* at = &control; at; at = at->Parent) {
    if (const auto place = places.find(at); place != places.end()) return place->second;
  }
  return {};
}

}  // namespace

const std::vector<std::string>& Places() {
  static const std::vector<std::string> places{"Settings page", "Equalizer page", "Mixer page",
                                               "Paths page",    "Ftp page",       "Keys page",
                                               "Deck",          "Ftp view",       "Import view"};
  return places;
}

std::map<std::string_view, Seen> SeenFields(Table table, ConfigurationForm& config,
                                            MainForm& main) {
  CalledByField called;
  for (CalledByField part :
       {OnSettingsPage(config), OnPathsPage(config), OnSoundPages(config), OnFtpPage(config),
        OnKeysPage(config), OnMainWindow(main), OnImportView(main)}) {
    called.merge(part);
  }
  std::map<std::string_view, Seen> seen;
  for (const window::Binding& binding : BindingsOf(table, config, main)) {
    const auto named = called.find(binding.field);
    Called control = named == called.end() ? Called() : named->second;
    if (binding.check) control = Of(*binding.check);
    seen[binding.field] =
        control.control ? Seen{PlaceOf(*control.control, config, main), control.words} : Seen();
  }
  return seen;
}

}  // namespace tavlo
