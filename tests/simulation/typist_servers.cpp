#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "simulation/typist.h"

namespace tavlo::simulation {
namespace {

using base::operator""s;

constexpr int kServersOfInterest = 4;
constexpr int kMostFilesClicked = 4;
/// Seconds in which a mended server sends all that it has.
constexpr int kLongestRun = 600;

constexpr std::array kNamesOfServers{"",     "Clinic", "Ward 7",
                                     "Ftp1", "a'b",    "\xC3\x85ngstr\xC3\xB6m"};
constexpr std::array kWrongTexts{"", "ftp.example.com", "ftps://ftp.example.org", "out\r\nDELE a",
                                 "ftp.example.org:99999"};
constexpr std::string_view kOfferOfTheExit = "Are you sure you want to exit the Tavlo Deck?";
constexpr std::string_view kRefusalOfTheExit =
    "The Ftp must be disconnected before you may exit the Tavlo Deck";

int RowsOf(const forms::Table& table) { return static_cast<int>(table.Rows().size()); }

}  // namespace

bool Typist::ServersAreDead() const {
  const forms::Command& connect = desk_.Main().bConnect;
  return !connect.Enabled && connect.Caption.Get() == "Connect";
}

void Typist::WorkOnServers() {
  forms::MainForm& main = desk_.Main();
  if (!main.frameFtp.Visible) Press(main.mnuViewFtp);
  if (ServersAreDead() && chance_.OneIn(2)) return Press(main.mnuExit);
  if (chance_.OneIn(2)) FetchSome();
  for (int deeds = chance_.Below(5); deeds > 0; --deeds) WorkOneKeyOfServers();
  if (!chance_.OneIn(4)) LeaveServers();
}

void Typist::FetchSome() {
  forms::MainForm& main = desk_.Main();
  Note("fetches from a server");
  if (chance_.OneIn(2)) ClickRowOf(main.comboFtpServerNames, chance_.Below(kServersOfInterest));
  if (main.bConnect.Caption.Get() == "Connect") Press(main.bConnect);
  Press(main.bList);
  if (chance_.OneIn(2)) {
    Press(main.cmdFtpListToDownload);
  } else {
    for (int files = chance_.Below(kMostFilesClicked); files > 0; --files) {
      ClickSomeRowOf(main.listFtpList);
    }
  }
  Press(main.bDownload);
  WaitAWhile();
}

void Typist::WorkOneKeyOfServers() {
  forms::MainForm& main = desk_.Main();
  switch (chance_.Below(12)) {
    case 0:
      ClickRowOf(main.comboFtpServerNames, chance_.Below(kServersOfInterest));
      break;
    case 1:
      ClickSomeRowOf(main.comboFtpFileTypesToList);
      break;
    case 2:
      Press(main.bConnect);
      break;
    case 3:
      Press(main.bList);
      break;
    case 4:
      ClickSomeRowOf(main.listFtpList);
      break;
    case 5:
      ClickSomeRowOf(main.listFtpDownloadList);
      break;
    case 6:
      Press(chance_.OneIn(3) ? main.cmdFtpDownloadToList : main.cmdFtpListToDownload);
      break;
    case 7:
    case 8:
      Press(main.bDownload);
      break;
    case 9:
      Note("closes " + main.frmMain.Name);
      main.frmMain.CloseRequest();
      break;
    default:
      WaitAWhile();
      break;
  }
}

void Typist::LogOut() {
  forms::MainForm& main = desk_.Main();
  if (main.bConnect.Caption.Get() != "Disconnect" || !main.frameFtp.Visible) return;
  if (main.bConnect.Reachable()) return Press(main.bConnect);
  if (main.bDownload.Caption.Get() == "Halt" && main.bDownload.Reachable()) Press(main.bDownload);
}

void Typist::LeaveServers() {
  LogOut();
  if (desk_.Main().bConnect.Caption.Get() == "Disconnect") {
    WaitAWhile();
    LogOut();
  }
  Press(desk_.Main().mnuViewQueue);
}

void Typist::TurnToServerPage() {
  forms::ConfigurationForm& config = desk_.Config();
  if (!config.frmConfiguration.Visible) Press(desk_.Main().mnuConfiguration);
  ActivateWindows();
  config.tabConfiguration.RowClick(config.TabOf(config.frameFtp));
}

void Typist::SwitchAutoRetrieve() {
  forms::ConfigurationForm& config = desk_.Config();
  TurnToServerPage();
  Note("clicks " + config.chkFtpAutoRetrieve.Name);
  config.chkFtpAutoRetrieve.Click();
  if (calm_ || !chance_.OneIn(4)) Press(config.mnuClose);
  ActivateWindows();
}

void Typist::StopAutoRetrieve() {
  if (desk_.Config().chkFtpAutoRetrieve.Value) SwitchAutoRetrieve();
}

void Typist::EditServers() {
  forms::ConfigurationForm& config = desk_.Config();
  TurnToServerPage();
  for (int deeds = 1 + chance_.Below(5); deeds > 0; --deeds) {
    switch (chance_.Below(6)) {
      case 0:
      case 1:
        Press(Some<forms::Command>({{&config.cmdFtpFirst, 3},
                                    {&config.cmdFtpPrevious, 2},
                                    {&config.cmdFtpNext, 2},
                                    {&config.cmdFtpLast, 1}}));
        break;
      case 2:
        TypeIntoServer();
        break;
      case 3:
        ClickOn(Some<forms::Choice>({{&config.chkFtpFileDeleteMode, 2},
                                     {&config.chkFtpAutoListAndDownload, 2},
                                     {&config.chkFtpPassiveMode, 1}}));
        break;
      case 4:
        Press(Some<forms::Command>(
            {{&config.cmdFtpClear, 1}, {&config.cmdFtpMemorize, 3}, {&config.cmdFtpClone, 2}}));
        break;
      default:
        ClickSomeRowOf(config.comboAuthorLastName);
        break;
    }
  }
  if (!chance_.OneIn(4)) Press(config.mnuClose);
}

void Typist::TypeIntoServer() {
  forms::ConfigurationForm& config = desk_.Config();
  const test::SimulatedFtpServer& server = desk_.ftp.server;
  const auto type = [this](forms::Text& box, const std::string& text) {
    Note("types into " + box.Name);
    box.Change(text);
  };
  if (chance_.OneIn(3)) return type(config.txtFtpName, chance_.Pick(kNamesOfServers));
  if (chance_.OneIn(4)) {
    forms::Text& box = Some<forms::Text>(
        {{&config.eServer, 1}, {&config.eUser, 1}, {&config.ePass, 1}, {&config.eServerDir, 1}});
    return type(box, chance_.Pick(kWrongTexts));
  }
  type(config.eServer, server.address);
  type(config.eUser, server.user);
  type(config.ePass, server.password);
  type(config.eServerDir, server.directory);
}

void Typist::ClickOn(forms::Choice& choice) {
  Note("clicks " + choice.Name);
  choice.Click();
}

std::optional<ftp::ServerProfile> Typist::ChooseGoodServer() {
  forms::Table& names = desk_.Main().comboFtpServerNames;
  const test::SimulatedFtpServer& server = desk_.ftp.server;
  for (int row = 0; row < RowsOf(names); ++row) {
    names.RowClick(row);
    const auto profile = desk_.Rooms()->ftpServers.Chosen();
    if (!profile || profile->address != server.address || profile->user != server.user) continue;
    if (profile->password == server.password && profile->directory == server.directory) {
      return profile;
    }
  }
  return {};
}

bool Typist::LogsOut() {
  for (int waited = 0; waited < kLongestRun; ++waited) {
    LogOut();
    if (desk_.Main().bConnect.Caption.Get() == "Connect") return true;
    desk_.loop.Advance(1s);
  }
  return false;
}

Typist::Fetched Typist::FetchAll() {
  forms::MainForm& main = desk_.Main();
  StopAutoRetrieve();
  if (!GoTo(main.mnuViewFtp, main.frameFtp)) return {"There is no way to the servers."};
  if (!LogsOut()) return {"A run over what a server has does not come to its end."};
  const auto profile = ChooseGoodServer();
  if (!profile) return {};
  Press(main.bConnect);
  if (!profile->autoListAndDownload) {
    ClickRowOf(main.comboFtpFileTypesToList, 0);
    Press(main.bList);
    Press(main.cmdFtpListToDownload);
    Press(main.bDownload);
  }
  for (int waited = 0; main.bDownload.Caption.Get() == "Halt"; ++waited) {
    if (waited == kLongestRun) return {"A run over what a server has does not come to its end."};
    desk_.loop.Advance(1s);
  }
  if (!LogsOut()) return {"The log-out does not come to its end."};
  // A profile may list some types alone.
  return {.wrong = "",
          .deletes = profile->autoListAndDownload ? std::optional<bool>() : profile->deleteFiles};
}

void Typist::LookAtExit(const base::MessageBox& box) {
  const bool connected = desk_.Main().bConnect.Caption.Get() == "Disconnect";
  if (box.text == kRefusalOfTheExit && !connected) {
    exitedWrongly_ = "The exit is refused though nobody is connected.";
  }
  if (box.text == kOfferOfTheExit && connected) {
    exitedWrongly_ = "The exit is offered to somebody who is connected.";
  }
}

}  // namespace tavlo::simulation
