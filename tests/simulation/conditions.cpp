#include "simulation/conditions.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "simulation/chance.h"
#include "store/settings_fields.h"

namespace tavlo::simulation {
namespace {

struct Trouble {
  const char* name;
  bool Conditions::*on;
};
constexpr std::array kTroubles{
    Trouble{"disk", &Conditions::diskFails},
    Trouble{"kill", &Conditions::programIsKilled},
    Trouble{"power", &Conditions::powerFails},
    Trouble{"sound", &Conditions::soundFails},
    Trouble{"settings", &Conditions::settingsFail},
    Trouble{"folders", &Conditions::foldersVanish},
    Trouble{"late", &Conditions::foldersAreLate},
    Trouble{"others", &Conditions::othersInterfere},
    Trouble{"hands", &Conditions::handsInterrupt},
    Trouble{"sleep", &Conditions::machineSleeps},
    Trouble{"cables", &Conditions::cablesGo},
    Trouble{"watcher", &Conditions::watcherFalters},
    Trouble{"mixer", &Conditions::othersMix},
    Trouble{"session", &Conditions::sessionEnds},
    Trouble{"neighbour", &Conditions::hasNeighbour},
    Trouble{"server", &Conditions::serverFails},
    Trouble{"polled-usb", &Conditions::watcherIsPolled},
    Trouble{"polled-serial", &Conditions::portIsPolled},
};

using Values = std::array<const char*, 4>;

/// What a field of that form may hold, if none of its own stand below.
struct FormValues {
  store::Form form;
  Values values;
};
constexpr std::array kOfForms{
    FormValues{store::Form::NumberText, {"", "1", "-1", "99999999999"}},
    FormValues{store::Form::Number, {"-20", "2", "99999999999", "abc"}},
    FormValues{store::Form::YesNo, {"Y", "N", "", "y"}},
    FormValues{store::Form::Truth, {"0", "-1", "1", ""}},
    FormValues{store::Form::Letter, {"A", "", "0", "z"}},
    FormValues{store::Form::Text, {"", "Ward 7", "two\nlines", "\xFF\xFE"}},
    FormValues{store::Form::Path,
               {"", "/mnt/share", "C:\\Lyrane\\TavloDeck\\Files\\here", "not\nthere"}},
};

struct Setting {
  std::string_view field;
  Values values;
};
constexpr std::array kSettings{
    Setting{"AutoQueueDocumentFlag", {"Y", "N", "N", ""}},
    Setting{"AutoPreview", {"0", "5", "99999999999", "-3"}},
    Setting{"AutoBackspace", {"0", "15", "99", "1e300"}},
    Setting{"WindIncrement", {"0", "3", "60", "1e18"}},
    Setting{"Speed", {"50", "100", "150", "-1"}},
    Setting{"Volume", {"0", "50000", "65535", "9999999999"}},
    Setting{"PlayerTop", {"", "0", "-500", "99999999999"}},
    Setting{"PlayerLeft", {"", "0", "-500", "99999999999"}},
    Setting{"TitleBarHeight", {"", "840", "500", "-99999"}},
    Setting{"MixerSelection", {"0", "1", "7", "-2147483649"}},
    Setting{"SubjectHeading", {"Subject", "", "Case\nnumber", "\xFF\xFE"}},
    Setting{"WorkWaitingAlertMode", {"A", "P", "A", "1"}},
    Setting{"AutoRefreshMode", {"0", "0", "0", "-1"}},
    Setting{"AutoImportMode", {"N", "Y", "N", ""}},
    Setting{"NewDictationAlertInterval", {"30", "5", "120", "99999999999"}},
    Setting{"AutoQueueRefreshInterval", {"5", "120", "0", "99999999999"}},
    Setting{"USBorSerialFootPedal", {"U", "S", "S", ""}},
    Setting{"SerialFootPedalComPort", {"1", "1", "2", "99999999999"}},
    Setting{"PlayStopKey", {"F4", "CTRL+F4", "", "a"}},
    Setting{"PlayHeldKey", {"F5", "F5", "F4", "two\nlines"}},
    Setting{"RewindHeldKey", {"CTRL+F5", "F6", "LOGO+a", "\xFF\xFE"}},
    Setting{"ForwardHeldKey", {"Pause", "SHIFT+CTRL+F6", "F8", "CTRL+"}},
    Setting{"CompleteKey", {"F10", "F10", "ALT+Left", ""}},
    Setting{"SaveKey", {"F11", "F11", "space", ""}},
    Setting{"BusSaysNothingFlag", {"N", "N", "Y", ""}},
    Setting{"EqualizerChoice", {"Lo", "Cust", "Hi", "Loud"}},
};

const std::array<std::vector<std::string>, 8> kLayouts{{
    {},
    {"/Files/Completed"},
    {"/Files/InQueue"},
    {"/Files/InQueue", "/Files/Completed"},
    {"/Files/Rescued"},
    {"/Files/dS2Queue", "/Files/eW2Queue"},
    {"/Files/ImportQueue", "/Files/Rescued"},
    {"/Files/FtpQueue", "/Files/eU2Queue", "/Files/InQueue"},
}};

const Values& ValuesOf(const store::Field& field) {
  const auto own = std::ranges::find(kSettings, field.name, &Setting::field);
  if (own != kSettings.end()) return own->values;
  return std::ranges::find(kOfForms, field.form, &FormValues::form)->values;
}

constexpr std::string_view kDaysToKeep = "DeleteCompletedFiles";
/// From 23 on nothing is deleted.
constexpr int kMostDaysToKeep = 30;

/// What the first profiles say. The first one can log in; the others may.
constexpr std::array<Setting, 10> kServer{{
    {"FtpServerName", {"Clinic", "Ward2", "Clinic", "Ftp4"}},
    {"FtpServerID", {"ftp.example.org", "ftp.example.org", "ftp.example.org", ""}},
    {"FtpServerUserID", {"typist", "typist", "typist", "typist\r\nDELE a"}},
    {"FtpServerPassword", {"secret", "secret", "secret", "guess"}},
    {"FtpServerDir", {"out", "out", "out", "nowhere"}},
    {"FtpDeleteFileCheck", {"-1", "0", "-1", ""}},
    {"FtpAutoListDownloadCheck", {"0", "0", "-1", "1"}},
    {"FtpPassiveModeCheck", {"-1", "0", "-1", "abc"}},
    {"FtpParseGenericPointer", {"1", "0", "25", "7"}},
    {"FtpListFileDefinition", {"All files", "Orvane files", "wav files", "no such files"}},
}};
constexpr std::size_t kServers = 4;
/// The fields of it that decide whether a log-in succeeds.
constexpr std::size_t kLogInFields = 5;

/// Every day has a watch for new work of its own.
bool IsOfTheWatch(std::string_view field) {
  return field == "WorkWaitingAlertMode" || field == "AutoRefreshMode" ||
         field == "AutoImportMode" || field == "NewDictationAlertInterval";
}

}  // namespace

Conditions::Conditions(std::uint64_t seed) {
  Chance chance = Chance(seed).Child("conditions");
  for (const Trouble& trouble : kTroubles) this->*trouble.on = chance.OneIn(2);
  fileSystems = chance.Pick(kLayouts);
  freshRoot = fileSystems.empty() && chance.OneIn(4);
  documentsAtStart = chance.OneIn(20) ? 300 : chance.Below(12);
  completedAtStart = chance.Below(6);
  for (const store::Field& field : store::FieldsOf(store::Table::GeneralSettings)) {
    if (field.name == kDaysToKeep) {
      settings.emplace_back(field.name, std::to_string(chance.Below(kMostDaysToKeep + 1)));
    } else if (IsOfTheWatch(field.name) || chance.OneIn(3)) {
      settings.emplace_back(field.name, chance.Pick(ValuesOf(field)));
    }
  }
  Chance ofServers = Chance(seed).Child("servers");
  for (std::size_t row = 0; row < kServers; ++row) {
    servers.emplace_back();
    for (std::size_t at = 0; at < kServer.size(); ++at) {
      const auto& [field, values] = kServer[at];
      const bool isGiven = at == 0 || (row == 0 && at < kLogInFields);
      const char* const value = at == 0   ? values[row]
                                : isGiven ? values[0]
                                          : ofServers.Pick(values);
      servers.back().emplace_back(field, value);
    }
  }
}

std::string Conditions::Described() const {
  std::string text = "troubles:";
  for (const Trouble& trouble : kTroubles) {
    if (this->*trouble.on) text += std::string(" ") + trouble.name;
  }
  text += "; own file systems:";
  for (const std::string& folder : fileSystems) text += " " + folder;
  text += "; documents at start: " + std::to_string(documentsAtStart);
  text += "; completed before: " + std::to_string(completedAtStart);
  text += freshRoot ? "; fresh root;" : ";";
  for (const auto& [field, value] : settings) text += " " + field + "=" + value;
  for (const auto& server : servers) {
    text += "; server:";
    for (const auto& [field, value] : server) text += " " + field + "=" + value;
  }
  return text;
}

}  // namespace tavlo::simulation
