#pragma once

#include <string>
#include <vector>

#include "intake/author_profiles.h"
#include "intake/auto_import.h"
#include "intake/dropped_files.h"
#include "intake/import_directories.h"
#include "intake/import_sending.h"
#include "store/settings_store.h"
#include "support/lists_bench.h"
#include "support/simulated_database.h"
#include "window/settings_saver.h"

namespace tavlo::test {

/// The lists' bench with the Import view in front, linked, on directory 0 and its profile.
struct ImportBench : ListsBench {
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  window::SettingsSaver saver{loop, settings};
  window::RowBinding profile{saver, store::Table::ImportAuthors, window::AuthorBindings(form)};
  intake::AuthorProfiles profiles{window, profile, importList};
  intake::ImportSending sending{loop, window, files, playback, importList, claims};
  intake::AutoImport autoImport{window, importList, profiles};
  intake::DroppedFiles droppedFiles{loop, window, files};

  ImportBench() {
    folders.WavQueuePath = convertsIn = "/root/Files/ImportQueue/";
    form.frameInQueue.Visible = false;
    form.frameImport.Visible = true;
    config.txtAutoPreview.Value = "0";
    importList.MakeColumns();
    form.chkImportSynchronize.Value = true;
    profile.Show(0);
    profiles.EnterLists();
    loop.SetWallClock({2004, 3, 9, 10, 20, 0});
  }

  std::string FolderOf(int directory) const {
    return intake::ImportDirectoryPath(folders, std::to_string(directory));
  }
  /// Puts a file of ten seconds into an import directory.
  std::string Put(int directory, const std::string& name,
                  const SimulatedSound& sound = {.samples = 80'000}) {
    const std::string path = FolderOf(directory) + name;
    disk.WithFile(path, "sound of " + std::to_string(directory) + "/" + name);
    file.Sounds[path] = sound;
    return path;
  }
  void Refresh() {
    importList.RefreshImportList(form.txtWavImportSubdirectory.Value);
    importList.SetImportButtons();
  }
  /// Builds the list and clicks the row of that name.
  void Choose(const std::string& name) {
    Refresh();
    const std::vector<std::string> listed = Names();
    for (std::size_t row = 0; row < listed.size(); ++row) {
      if (listed[row] == name) form.listViewImport.RowClick(static_cast<int>(row));
    }
  }
  void TurnTo(int directory) { form.scrollImportWavSubDirectories.Change(directory + 1); }

  std::vector<std::string> Names() const {
    std::vector<std::string> listed;
    for (const forms::Row& row : form.listViewImport.Rows()) {
      listed.push_back(row.cells.at(forms::import_column::FileName).text);
    }
    return listed;
  }
  std::vector<std::string> Queued() const { return disk.NamesIn(folders.InQueuePath); }
  const std::string& Caption() const { return form.frameImport.Caption; }
  const std::string& Notice() const { return form.lblNotice.Value; }
  bool ButtonsAre(bool enabled) const {
    return form.cmdSendImportFileToQueue.Enabled == enabled &&
           form.cmdSendAllImportFilesToQueue.Enabled == enabled &&
           form.cmdDeleteOneImportFile.Enabled == enabled &&
           form.cmdDeleteAllImportFile.Enabled == enabled;
  }
  bool FocusIsAway() const { return form.frmMain.Focused() == &form.txtFocus; }
};

}  // namespace tavlo::test
