#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ftp/server_list.h"
#include "ftp/server_profiles.h"
#include "support/import_bench.h"

namespace tavlo::test {

/// The Ftp page, open in front, and the list of servers on a database that a test lays out before
/// `ShowServers`.
struct ServerPageBench : ImportBench {
  window::RowBinding server{saver, store::Table::FtpSettings, window::FtpBindings(config)};
  ftp::ServerList servers{form, server};
  ftp::ServerProfiles page{config, server, profiles, servers};

  ServerPageBench() {
    config.frmConfiguration.Visible = true;
    config.frameFtp.Visible = true;
    for (const char* type : {"All files", "Orvane files", "mp3 files"}) {
      form.comboFtpFileTypesToList.Add(type);
    }
    form.comboFtpFileTypesToList.ListIndex = 0;
  }

  /// Lays a value into a profile; rows count from 0.
  ServerPageBench& Store(int row, std::string_view field, const std::string& value) {
    database.With(store::Table::FtpSettings, field, value, row);
    return *this;
  }
  /// What a start does: the first profile shows, and the window is opened.
  void ShowServers() {
    server.Show(0);
    page.WindowOpens();
  }

  std::string Stored(int row, std::string_view field) const {
    return database.Value(store::Table::FtpSettings, row, field);
  }
  std::vector<std::string> Listed() const {
    std::vector<std::string> listed;
    for (const forms::Row& row : form.comboFtpServerNames.Rows()) {
      listed.push_back(row.cells.at(0).text);
    }
    return listed;
  }
  /// How many saves of profiles were written.
  std::size_t Saves() const {
    std::size_t saves = 0;
    for (const auto& save : database.Saves) saves += save.table == store::Table::FtpSettings;
    return saves;
  }
  bool PageGaveKeyboardAway() {
    const bool away = config.frmConfiguration.Focused() == &config.txtFocus;
    config.frmConfiguration.FocusOn(config.eServer);
    return away;
  }
};

}  // namespace tavlo::test
