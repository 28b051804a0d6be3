#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// Columns of the Import list. The first has no width.
namespace import_column {
enum { Nothing, FileName, Length };
}

/// The files in the import directories, of which one shows.
struct ImportFrame {
  ImportFrame(Window& window, Pane& frameFiles)
      : frameImport(&frameFiles, "frameImport", {.caption = "Import", .visible = false}),
        txtImportSynchronize(&window, "txtImportSynchronize", {.caption = "Y", .visible = false}) {}

  Pane frameImport;
  Table listViewImport{&frameImport, "listViewImport", {.heard = "Import"}};
  /// These two stand in the place of the list while it is built.
  Text lblRefreshingImportList1{&frameImport,
                                "lblRefreshingImportList1",
                                {.caption = "Refreshing list...", .visible = false}};
  Text lblRefreshingImportList2{
      &frameImport, "lblRefreshingImportList2", {.caption = "please standby", .visible = false}};
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
  /// The import directory on show: "0" for the import folder itself, else the folder's number. It
  /// is read and never typed into; the scroll bar chooses.
  Text txtWavImportSubdirectory{&frameImport,
                                "txtWavImportSubdirectory",
                                {.caption = "0", .tooltip = "Select an import directory"}};
  /// The number of that directory plus 1.
  Range scrollImportWavSubDirectories{
      &frameImport,
      "scrollImportWavSubDirectories",
      {.tooltip = "Select an import directory"},
      {.minimum = 1,
       .maximum = 26,
       .smallStep = 1,
       .largeStep = 1,
       .value = 1,
       .heard = {.atMinimum = 0, .atMaximum = 25, .unit = "directory"}}};
  /// What waits in each of the 26 directories: how many files, as text, in the order of their
  /// numbers; empty where it is not known.
  Pane frameImportDirectories{&frameImport, "frameImportDirectories"};
  Choice chkImportSynchronize{
      &frameImport,
      "chkImportSynchronize",
      {.caption = "Link",
       .tooltip = "Check to link each of the 26 import directories with each of the corresponding "
                  "26 author profiles, respectively.  Uncheck to link every import directory with "
                  "the first author profile only."}};

  /// Holds the stored value of the check box and is never visible.
  Text txtImportSynchronize;
};

/// The author profile that is applied to what is sent to the Queue.
struct AuthorProfileFrame {
  explicit AuthorProfileFrame(Pane& frameImport)
      : frameImportDemographics(&frameImport, "frameImportDemographics",
                                {.caption = "Author Profile"}) {}

  Pane frameImportDemographics;
  /// The last names of all profiles, in the order of their numbers.
  Table comboAuthorLastName{
      &frameImportDemographics, "comboAuthorLastName", {.tooltip = "Select an author profile"}};
  Text lblAuthorLastName{
      &frameImportDemographics, "lblAuthorLastName", {.caption = "Author Last Name"}};
  Text txtImportAuthorLastName{
      &frameImportDemographics, "txtImportAuthorLastName", {.heard = "Author Last Name"}, 14};
  Text lblAuthorID{&frameImportDemographics, "lblAuthorID", {.caption = "Author ID"}};
  Text txtImportAuthorID{&frameImportDemographics, "txtImportAuthorID", {.heard = "Author ID"}, 6};
  Text lblDepartment{&frameImportDemographics, "lblDepartment", {.caption = "Dept"}};
  Text txtImportDepartment{
      &frameImportDemographics, "txtImportDepartment", {.tooltip = "Department"}, 2};
  Text lblWorktype{&frameImportDemographics, "lblWorktype", {.caption = "Work"}};
  Text txtImportWorktype{
      &frameImportDemographics, "txtImportWorktype", {.tooltip = "Work Type"}, 2};
  Text lblImportSubject{&frameImportDemographics, "lblImportSubject", {.caption = "Subject"}};
  Text txtImportSubject{&frameImportDemographics, "txtImportSubject", {.heard = "Subject"}, 14};
  Text lblSystemID{&frameImportDemographics, "lblSystemID", {.caption = "System"}};
  Text txtImportSystemID{
      &frameImportDemographics, "txtImportSystemID", {.tooltip = "System ID"}, 4};
  Choice chkImportPriority{
      &frameImportDemographics,
      "chkImportPriority",
      {.caption = "Priority", .tooltip = "Send this author's files as priority documents"}};
  Text lblImportGoesAs{
      &frameImportDemographics, "lblImportGoesAs", {.caption = "Goes to the Queue as"}};
  /// The document that the profile on show makes of a file, in the words of a list's row.
  Text lblImportDocument{&frameImportDemographics, "lblImportDocument"};

  // Texts that are never visible.

  /// Holds the stored value of the check box.
  Text txtImportPriority{
      &frameImportDemographics, "txtImportPriority", {.caption = "N", .visible = false}, 1};
  /// The number of the profile, from 1.
  Text txtImportAuthorCount{&frameImportDemographics, "txtImportAuthorCount", {.visible = false}};
};

}  // namespace tavlo::forms
