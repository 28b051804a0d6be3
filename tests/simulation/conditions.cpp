#include "simulation/conditions.h"

#include <array>

#include "simulation/chance.h"

namespace tavlo::simulation {
namespace {

struct Trouble {
  const char* name;
  bool Conditions::*on;
};
constexpr std::array kTroubles{
    Trouble{"disk", &Conditions::diskFails},         Trouble{"kill", &Conditions::programIsKilled},
    Trouble{"power", &Conditions::powerFails},       Trouble{"sound", &Conditions::soundFails},
    Trouble{"settings", &Conditions::settingsFail},  Trouble{"folders", &Conditions::foldersVanish},
    Trouble{"others", &Conditions::othersInterfere}, Trouble{"hands", &Conditions::handsInterrupt},
    Trouble{"sleep", &Conditions::machineSleeps},    Trouble{"cables", &Conditions::cablesGo},
    Trouble{"watcher", &Conditions::watcherFalters}, Trouble{"mixer", &Conditions::othersMix},
    Trouble{"session", &Conditions::sessionEnds},
};

struct Setting {
  const char* field;
  std::array<const char*, 4> values;
};
constexpr std::array kSettings{
    Setting{"AutoQueueDocumentFlag", {"Y", "N", "N", ""}},
    Setting{"AutoPreview", {"0", "5", "99999999999", "-3"}},
    Setting{"AutoBackspace", {"0", "15", "99", "1e300"}},
    Setting{"WindIncrement", {"0", "3", "60", "1e18"}},
    Setting{"AccelerateWindIncrementFlag", {"Y", "N", "Y", "N"}},
    Setting{"MinimizeMiniPlayerFlag", {"Y", "N", "N", "Y"}},
    Setting{"AudioPromptsFlag", {"Y", "N", "Y", "N"}},
    Setting{"Speed", {"50", "100", "150", "-1"}},
    Setting{"Volume", {"0", "50000", "65535", "9999999999"}},
    Setting{"PlayerTop", {"", "0", "-500", "99999999999"}},
    Setting{"PlayerLeft", {"", "0", "-500", "99999999999"}},
    Setting{"TitleBarHeight", {"", "840", "500", "-99999"}},
    Setting{"MixerSelection", {"0", "1", "7", "-2147483649"}},
    Setting{"SubjectHeading", {"Subject", "", "Case\nnumber", "\xFF\xFE"}},
    Setting{"AutoRefreshMode", {"0", "-1", "1", ""}},
    Setting{"WorkWaitingAlertMode", {"0", "A", "P", "1"}},
    Setting{"AlwaysOnTopFlag", {"Y", "N", "", "y"}},
    Setting{"AutoQueueRefreshInterval", {"1", "120", "0", "99999999999"}},
    Setting{"USBorSerialFootPedal", {"U", "S", "S", ""}},
    Setting{"SerialFootPedalComPort", {"1", "1", "2", "99999999999"}},
    Setting{"SwapRewFwdPedalFlag", {"Y", "N", "", "y"}},
    Setting{"SkipBegEndFlag", {"Y", "N", "Y", ""}},
    Setting{"EqualizerEnableFlag", {"Y", "N", "Y", ""}},
    Setting{"EqualizerChoice", {"Lo", "Cust", "Hi", "Loud"}},
    Setting{"CustomEq3", {"-20", "20", "99999999999", "abc"}},
};

const std::array<std::vector<std::string>, 5> kLayouts{{
    {},
    {"/Files/Completed"},
    {"/Files/InQueue"},
    {"/Files/InQueue", "/Files/Completed"},
    {"/Files/Rescued"},
}};

}  // namespace

Conditions::Conditions(std::uint64_t seed) {
  Chance chance = Chance(seed).Child("conditions");
  for (const Trouble& trouble : kTroubles) this->*trouble.on = chance.OneIn(2);
  fileSystems = chance.Pick(kLayouts);
  freshRoot = fileSystems.empty() && chance.OneIn(4);
  documentsAtStart = chance.OneIn(20) ? 300 : chance.Below(12);
  for (const Setting& setting : kSettings) {
    if (chance.OneIn(3)) settings.emplace_back(setting.field, chance.Pick(setting.values));
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
  text += freshRoot ? "; fresh root;" : ";";
  for (const auto& [field, value] : settings) text += " " + field + "=" + value;
  return text;
}

}  // namespace tavlo::simulation
