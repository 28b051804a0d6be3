#include "simulation/ftp_rules.h"

#include <algorithm>

namespace tavlo::simulation {
namespace {

using forms::MainForm;

bool OffersToConnect(Desk& desk) { return desk.Main().bConnect.Caption.Get() == "Connect"; }

bool RunIsOn(Desk& desk) { return desk.Rooms()->ftp.download.tmrFtpDownload.Enabled(); }

bool DocumentIsInWork(Desk& desk) { return desk.Main().cmdSkip.Enabled; }

bool MenusAreBackWithTheConnection(Desk& desk) {
  const MainForm& main = desk.Main();
  return !OffersToConnect(desk) || DocumentIsInWork(desk) ||
         (main.mnuFile.Enabled && main.mnuView.Enabled);
}

/// An unattended run that passes over a name has none until its next tick, though it may be
/// switched off before that.
bool RunHasATransfer(Desk& desk) {
  if (desk.ftp.Receiving()) return RunIsOn(desk);
  const std::string& said = desk.Main().eMessage.Value;
  const bool passesOver = said.find("does not send this file") != std::string::npos;
  return !RunIsOn(desk) || !desk.Main().mnuViewFtp.Enabled || passesOver;
}

bool PassesKnowWhatIsReceived(Desk& desk) {
  const std::string& name = desk.Rooms()->receiving.name;
  return desk.ftp.LandingPath() == (name.empty() ? "" : desk.Rooms()->folders.FtpQueuePath + name);
}

bool RunIsOfAConnection(Desk& desk) { return !RunIsOn(desk) || !OffersToConnect(desk); }

bool ConnectIsOutOfReachInARunAlone(Desk& desk) {
  return OffersToConnect(desk) || desk.Main().bConnect.Enabled != RunIsOn(desk);
}

bool NobodyChangesTheServerInALogIn(Desk& desk) {
  return OffersToConnect(desk) || !desk.Main().comboFtpServerNames.Enabled;
}

bool HaltIsOnTheKeyInARun(Desk& desk) {
  return !RunIsOn(desk) || desk.Main().bDownload.Caption.Get() == "Halt";
}

bool WhatALogOutHidesShows(Desk& desk) {
  const MainForm& main = desk.Main();
  return main.frameFtpFilename.Visible && main.frameFtpConnectionStatus.Visible &&
         main.frameFtpDownloadList.Visible && main.cmdFtpDownloadToList.Visible &&
         main.cmdFtpListToDownload.Visible && main.eMessage.Visible;
}

bool Counts(const forms::Pane& frame, const forms::Table& list) {
  return frame.Caption.Get().ends_with(": " + std::to_string(list.Rows().size()));
}

bool FilesAreCounted(Desk& desk) {
  const MainForm& main = desk.Main();
  return Counts(main.frameFtpFilename, main.listFtpList) &&
         Counts(main.frameFtpDownloadList, main.listFtpDownloadList);
}

bool AutoRetrieveIsArmedWhileItIsOn(Desk& desk) {
  const bool isOn = desk.Config().chkFtpAutoRetrieve.Value;
  return desk.Rooms()->ftp.autoRetrieve.tmrFtpAutoRetrieve.Enabled() == isOn;
}

bool NobodyOpensTheViewOfAutoRetrieve(Desk& desk) {
  return !desk.Config().chkFtpAutoRetrieve.Value || !desk.Main().mnuViewFtp.Enabled;
}

bool PasswordIsNotTold(Desk& desk) {
  const std::string& password = desk.ftp.server.password;
  return desk.Main().eMessage.Value.Get().find(password) == std::string::npos &&
         desk.Main().lblNotice.Value.Get().find(password) == std::string::npos;
}

bool OneIsLoggedInAtMost(Desk& desk) {
  return desk.ftp.server.loggedIn == (desk.ftp.LoggedIn() ? 1 : 0);
}

struct ServerRule {
  const char* sentence;
  bool (*holds)(Desk& desk);
};
constexpr ServerRule kServerRules[] = {
    {"The menus are there while nobody is connected.", &MenusAreBackWithTheConnection},
    {"A run has a transfer, and a transfer a run.", &RunHasATransfer},
    {"The passes know which file is being received.", &PassesKnowWhatIsReceived},
    {"A run is of a connection.", &RunIsOfAConnection},
    {"Who is connected may log out save in a run.", &ConnectIsOutOfReachInARunAlone},
    {"The server is not changed in a log-in.", &NobodyChangesTheServerInALogIn},
    {"A run can be halted.", &HaltIsOnTheKeyInARun},
    {"What a log-out hides shows again.", &WhatALogOutHidesShows},
    {"The files of both lists are counted.", &FilesAreCounted},
    {"Automatic retrieval is armed while it is on.", &AutoRetrieveIsArmedWhileItIsOn},
    {"The view is closed to hands in automatic retrieval.", &NobodyOpensTheViewOfAutoRetrieve},
    {"The password is not told.", &PasswordIsNotTold},
    {"One log-in stands at most.", &OneIsLoggedInAtMost},
};

}  // namespace

std::string BrokenServerRule(Desk& desk) {
  if (!desk.ftp.misuses.empty()) {
    return "The client is called while it waits, or once it is let go of: " +
           desk.ftp.misuses.front();
  }
  for (const ServerRule& rule : kServerRules) {
    if (!rule.holds(desk)) return std::string("Broken: ") + rule.sentence;
  }
  return "";
}

}  // namespace tavlo::simulation
