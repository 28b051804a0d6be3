#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// Columns of the Import list. The first has no width.
namespace import_column {
enum { Nothing, FileName, Length };
}

/// The files in the import directories.
struct ImportFrame {
  ImportFrame(Window& window, Pane& frameFiles)
      : frameImport(&frameFiles, "frameImport", {.caption = "Import", .visible = false}),
        txtImportSynchronize(&window, "txtImportSynchronize", {.visible = false}),
        txtWavImportSubdirectory(&window, "txtWavImportSubdirectory",
                                 {.caption = "0", .visible = false}) {}

  Pane frameImport;
  Table listViewImport{&frameImport, "listViewImport", {.heard = "Import"}};
  Command cmdRefreshImportList{&frameImport,
                               "cmdRefreshImportList",
                               {.caption = "Refresh", .tooltip = "Refresh the Import list"}};
  Command cmdDeleteOneImportFile{
      &frameImport,
      "cmdDeleteOneImportFile",
      {.caption = "Delete One", .tooltip = "Delete the selected file", .enabled = false}};
  Command cmdDeleteAllImportFile{
      &frameImport,
      "cmdDeleteAllImportFile",
      {.caption = "Delete All", .tooltip = "Delete all the displayed files", .enabled = false}};
  Command cmdSendImportFileToQueue{
      &frameImport,
      "cmdSendImportFileToQueue",
      {.caption = "Send One to Queue",
       .tooltip = "Apply the demographics to the selected file and send it to the Queue",
       .enabled = false}};
  Command cmdSendAllImportFilesToQueue{
      &frameImport,
      "cmdSendAllImportFilesToQueue",
      {.caption = "Send All to Queue",
       .tooltip = "Apply the demographics to all of the displayed files and send them to the Queue",
       .enabled = false}};
  Choice chkImportSynchronize{
      &frameImport,
      "chkImportSynchronize",
      {.caption = "Link",
       .tooltip = "Check to link each of the 26 import directories with each of the corresponding "
                  "26 author profiles, respectively.  Uncheck to link every import directory with "
                  "the first author profile only."}};

  // Texts that are never visible.

  /// Holds the stored value of the check box.
  Text txtImportSynchronize;
  /// The import directory on show: "0" for the import folder itself, else the folder's number.
  Text txtWavImportSubdirectory;
};

}  // namespace tavlo::forms
