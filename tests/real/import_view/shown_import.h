#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "look/desktop_letters.h"
#include "support/shown_windows.h"

namespace tavlo::test {

/// The Import view on a morning on which four directories have something.
struct ShownImport : testing::Test {
  ShownImport() {
    forms::MainForm& form = shown.main;
    form.listViewImport.SetColumns(
        {{"", 0}, {"File Name", 5000}, {.title = "Length", .width = 2500, .figures = true}});
    form.listViewImport.WhenEmpty =
        "Nothing to import\nFiles that are put into this directory show here.";
    form.frameInQueue.Visible = false;
    form.frameImport.Visible = true;
    form.frameImport.Caption = "Import:     0     00:00:00";
    form.chkImportSynchronize.Value = true;
    std::vector<std::string> counts(26, "0");
    counts[0] = "2";
    counts[7] = "1";
    counts[12] = "1400";
    counts[25] = "";
    form.frameImportDirectories.Panels = counts;
    FillProfile();
  }

  void FillProfile() {
    forms::MainForm& form = shown.main;
    for (const char* const name : {"Brown", "Haddad", "Lindqvist", "Okafor"}) {
      form.comboAuthorLastName.Add(name);
    }
    form.comboAuthorLastName.ListIndex = 3;
    form.txtImportAuthorLastName.Value = "Okafor";
    form.txtImportAuthorID.Value = "8801";
    form.txtImportDepartment.Value = "5";
    form.txtImportWorktype.Value = "3";
    form.txtImportSubject.Value = "discharge";
    form.txtImportSystemID.Value = "3";
    form.chkImportPriority.Value = true;
    form.lblImportDocument.Value = "Pri Okafor 8801 Dept 5 Work 3 discharge";
  }
  void FillList() {
    forms::MainForm& form = shown.main;
    const std::vector<std::vector<std::string>> files{
        {"clinic letter 14.mp3", "00:01:44"}, {"DM650012.wav", "00:03:18"},
        {"DM650013.wav", "00:00:51"},         {"hearing part 1.wma", "00:06:20"},
        {"hearing part 2.wma", "00:02:07"},   {"note_2026115973.mp3", "00:00:32"}};
    for (const auto& file : files) form.listViewImport.Add({{{""}, {file[0]}, {file[1]}}});
    form.listViewImport.ListIndex = 1;
    form.frameImport.Caption = "Import:     6     00:14:52";
    std::vector<std::string> counts = form.frameImportDirectories.Panels;
    counts[3] = "6";
    form.frameImportDirectories.Panels = counts;
    form.scrollImportWavSubDirectories.Value = 4;
    form.txtWavImportSubdirectory.Value = "3";
    for (forms::Command* const key :
         {&form.cmdSendImportFileToQueue, &form.cmdSendAllImportFilesToQueue,
          &form.cmdDeleteOneImportFile, &form.cmdDeleteAllImportFile}) {
      key->Enabled = true;
    }
  }

  ShownWindows shown;
};

}  // namespace tavlo::test
