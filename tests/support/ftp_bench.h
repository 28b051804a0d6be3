#pragma once

#include <string>
#include <vector>

#include "support/deck_bench.h"

namespace tavlo::test {

/// The whole program with a server and a profile for it, in the Ftp view.
struct FtpBench : DeckBench {
  using Seconds = std::chrono::seconds;

  /// Fields of the first profile that are not as shipped.
  store::Assignments profile = {{"FtpServerName", "Clinic"},
                                {"FtpServerID", "ftp.example.org"},
                                {"FtpServerUserID", "typist"},
                                {"FtpServerPassword", "secret"},
                                {"FtpServerDir", "out"}};
  SimulatedFtpServer& server = ftp.server;

  /// Starts with the profile stored, and shows the Ftp view.
  void Start(const store::Assignments& more = {}) {
    SettingsTables tables = databases.Shipped();
    store::Record& row = tables.at(store::Table::FtpSettings).at(0);
    for (const auto& [field, value] : profile) row.at(field) = value;
    for (const auto& [field, value] : more) row.at(field) = value;
    databases.Place(SettingsPath(), tables);
    StartUntilReady();
    ShowView();
    loop.Shown.clear();
  }
  void ShowView() { form.mnuViewFtp.Press(forms::By::Hand); }
  /// Starts, and logs in by hand.
  void StartConnected(const store::Assignments& more = {}) {
    Start(more);
    form.bConnect.Press(forms::By::Hand);
  }
  /// The same, with the listing made.
  void StartListed(const store::Assignments& more = {}) {
    StartConnected(more);
    form.bList.Press(forms::By::Hand);
  }
  /// Fetches all that is listed, until nothing more comes.
  void DownloadAll() {
    form.cmdFtpListToDownload.Press(forms::By::Hand);
    form.bDownload.Press(forms::By::Hand);
    loop.Advance(Seconds{60});
  }
  void SwitchAutoRetrieve() {
    form.mnuConfiguration.Press(forms::By::Hand);
    config.tabConfiguration.RowClick(config.TabOf(config.FtpPage::frameFtp));
    config.chkFtpAutoRetrieve.Click();
    config.mnuClose.Press(forms::By::Hand);
  }

  std::string Status() const { return form.eMessage.Value; }
  static std::vector<std::string> NamesOf(const forms::Table& list) {
    std::vector<std::string> names;
    for (const forms::Row& row : list.Rows()) names.push_back(row.cells.at(0).text);
    return names;
  }
  std::vector<std::string> Listed() const { return NamesOf(form.listFtpList); }
  std::vector<std::string> ToDownload() const { return NamesOf(form.listFtpDownloadList); }
  static std::string Landing(const std::string& name = {}) {
    return Path("/Files/FtpQueue/" + name);
  }
};

}  // namespace tavlo::test
