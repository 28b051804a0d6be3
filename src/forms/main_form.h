#pragma once

#include <string>
#include <vector>

#include "forms/controls.h"

/// The main window: the player on top, under it one of four work frames. The controls stand here by
/// frame, each with its caption, tooltip, range and first state.
namespace tavlo::forms {

/// Columns of the Queue list (and of the Completed list, whose Saved column has no width). The last
/// three have no width either: the file that a row stands for, and two that only sort.
namespace document_column {
enum {
  Priority,
  Saved,
  Author,
  Id,
  Department,
  Work,
  Subject,
  Length,
  Date,
  Time,
  System,
  FileName,
  PrioritySort,
  StampSort
};
}

/// Columns of the Import list. The first has no width.
namespace import_column {
enum { Nothing, FileName, Length };
}

/// Which way the deck winds.
enum class Winding { No, Back, On };

struct MainForm {
  explicit MainForm(base::Loop& loop);

  Window frmMain;

  /// True while a document sounds or winds: the Play key shows as Stop then.
  State<bool> DeckRuns{frmMain, false};
  State<Winding> DeckWinds{frmMain, Winding::No};

  Pane mnuFile{&frmMain, "mnuFile", {.caption = "&File"}};
  Command mnuConfiguration{&mnuFile,
                           "mnuConfiguration",
                           {.caption = "&Configuration", .tooltip = "Change the settings"}};
  Command mnuMinimize{
      &mnuFile, "mnuMinimize", {.caption = "&Minimize", .tooltip = "Minimize the window"}};
  Command mnuAbout{
      &mnuFile, "mnuAbout", {.caption = "&About", .tooltip = "Tell the version of Tavlo Deck"}};
  Command mnuExit{&mnuFile, "mnuExit", {.caption = "&Exit", .tooltip = "End Tavlo Deck"}};
  Pane mnuView{&frmMain, "mnuView", {.caption = "&View"}};
  Command mnuViewQueue{
      &mnuView, "mnuViewQueue", {.caption = "&Queue", .tooltip = "Show the dictations that wait"}};
  Command mnuViewCompleted{&mnuView,
                           "mnuViewCompleted",
                           {.caption = "&Completed", .tooltip = "Show the completed dictations"}};
  Command mnuViewImport{&mnuView,
                        "mnuViewImport",
                        {.caption = "&Import", .tooltip = "Show the files in the import folders"}};
  Command mnuViewFtp{
      &mnuView, "mnuViewFtp", {.caption = "F&tp", .tooltip = "Fetch files from a server"}};
  Command mnuReport{
      &frmMain, "mnuReport", {.caption = "&Report", .tooltip = "Write a report of the list"}};

  /// Takes the keyboard after every action, so that no button is left holding it.
  Text txtFocus{&frmMain, "txtFocus", {.heard = "Tavlo Deck"}};

  // The player.
  Pane framePlayer{&frmMain, "framePlayer"};
  Pane imageFaciaA{&framePlayer, "imageFaciaA"};
  Pane imageFaciaB{&framePlayer, "imageFaciaB"};
  Text lblFilePositionHMS{
      &framePlayer,
      "lblFilePositionHMS",
      {.caption = "00:00:00", .tooltip = "Current position in document", .visible = false}};
  Text lblFileLengthHMS{
      &framePlayer, "lblFileLengthHMS", {.caption = "00:00:00", .tooltip = "Document length"}};
  Range MeterLeft{&framePlayer,
                  "MeterLeft",
                  {.tooltip = "Left audio channel amplitude indicator"},
                  {.minimum = 0, .maximum = 100, .heard = kPercent}};
  Range MeterRight{&framePlayer,
                   "MeterRight",
                   {.tooltip = "Right audio channel amplitude indicator"},
                   {.minimum = 0, .maximum = 100, .heard = kPercent}};
  Text lblCustomDisplay{&framePlayer, "lblCustomDisplay", {.visible = false}};
  Pane picBriselBitMap{&framePlayer, "picBriselBitMap", {.visible = false}};
  Text lblBriselName{&framePlayer, "lblBriselName", {.visible = false}};
  Pane picSorelLogo{&framePlayer, "picSorelLogo", {.visible = false}};
  Range slPosition{&framePlayer,
                   "slPosition",
                   {.tooltip = "Slide to desired position in document", .enabled = false},
                   {.smallStep = 1, .largeStep = 5, .heard = kPercent}};
  Command cmdSkipBeg{
      &framePlayer, "cmdSkipBeg", {.tooltip = "Skip to beginning", .enabled = false}};
  Command cmdRewind{&framePlayer, "cmdRewind", {.tooltip = "Rewind", .enabled = false}};
  Command cmdPlay{
      &framePlayer, "cmdPlay", {.caption = "&Play", .tooltip = "Play", .enabled = false}};
  Command cmdStop{&framePlayer,
                  "cmdStop",
                  {.caption = "&Stop", .tooltip = "Stop", .enabled = false, .visible = false}};
  Command cmdImportCompleteSnipetStop{
      &framePlayer,
      "cmdImportCompleteSnipetStop",
      {.caption = "&Stop", .tooltip = "Stop the preview", .enabled = false}};
  Command cmdForward{&framePlayer, "cmdForward", {.tooltip = "Fast Forward", .enabled = false}};
  Command cmdSkipEnd{&framePlayer, "cmdSkipEnd", {.tooltip = "Skip to end", .enabled = false}};
  Command cmdSkip{
      &framePlayer,
      "cmdSkip",
      {.caption = "S&kip", .tooltip = "Return this document to the queue", .enabled = false}};
  Command cmdSave{&framePlayer,
                  "cmdSave",
                  {.caption = "S&ave", .tooltip = "Mark this document saved", .enabled = false}};
  Command cmdComplete{
      &framePlayer,
      "cmdComplete",
      {.caption = "&Complete", .tooltip = "Mark this document completed", .enabled = false}};
  Text lblSpeed{&framePlayer, "lblSpeed", {.caption = "SPD"}};
  Range Slider1{&framePlayer,
                "Slider1",
                {.tooltip = "Playback speed", .enabled = false},
                {.minimum = -50,
                 .maximum = 50,
                 .smallStep = 5,
                 .largeStep = 5,
                 .heard = {.atMinimum = 50, .atMaximum = 150, .unit = "percent"}}};
  Command cmdNormalSpeed{
      &framePlayer,
      "cmdNormalSpeed",
      {.caption = "&MID", .tooltip = "Set playback speed to normal", .enabled = false}};
  Text lblVolume{&framePlayer, "lblVolume", {.caption = "VOL"}};
  Range sldVol{&framePlayer,
               "sldVol",
               {.tooltip = "Playback volume"},
               {.minimum = 0,
                .maximum = 65535,
                .smallStep = 1,
                .largeStep = 10000,
                .value = 55000,
                .heard = kPercent}};
  Command cmdEQ{&framePlayer,
                "cmdEQ",
                {.caption = "&EQ",
                 .tooltip = "Access the equalizer and other configuration menus",
                 .enabled = false}};
  Pane StatusBar1{&framePlayer, "StatusBar1"};
  /// The quiet line: what the last command could not do. It stands until the next command.
  Text lblNotice{&framePlayer, "lblNotice", {.visible = false}};

  // The work frames. Exactly one is visible.
  Pane frameFiles{&frmMain, "frameFiles"};

  Pane frameInQueue{&frameFiles, "frameInQueue", {.caption = "Queue"}};
  Table listViewInQueue{&frameInQueue, "listViewInQueue", {.visible = false, .heard = "Queue"}};
  Command cmdUpdateFileList{
      &frameInQueue,
      "cmdUpdateFileList",
      {.caption = "Refresh", .tooltip = "Refresh the Queue list", .enabled = false}};

  Pane frameCompleted{&frameFiles, "frameCompleted", {.caption = "Completed", .visible = false}};
  Table listViewCompleted{&frameCompleted, "listViewCompleted", {.heard = "Completed"}};
  Command cmdMoveToQueue{&frameCompleted,
                         "cmdMoveToQueue",
                         {.caption = "Return to Queue",
                          .tooltip = "Return the selected document to the Queue",
                          .enabled = false}};
  Command cmdDeleteOneCompleted{
      &frameCompleted,
      "cmdDeleteOneCompleted",
      {.caption = "Delete One", .tooltip = "Delete the selected document", .enabled = false}};
  Command cmdDeleteAllCompleted{
      &frameCompleted,
      "cmdDeleteAllCompleted",
      {.caption = "Delete All", .tooltip = "Delete all the Completed documents", .enabled = false}};

  Pane frameImport{&frameFiles, "frameImport", {.caption = "Import", .visible = false}};
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

  Pane frameFtp{&frameFiles, "frameFtp", {.caption = "Ftp", .visible = false}};
  Command bConnect{
      &frameFtp, "bConnect", {.caption = "Connect", .tooltip = "Connect to the chosen server"}};
  Table comboFtpServerNames{&frameFtp, "comboFtpServerNames", {.tooltip = "Choose the server"}};
  Table comboFtpFileTypesToList{&frameFtp,
                                "comboFtpFileTypesToList",
                                {.tooltip = "Choose the type of files to list", .enabled = false}};

  // Texts that are never visible: each holds the stored value of something that is shown otherwise.
  Text txtSpeed{&frmMain, "txtSpeed", {.visible = false}};
  Text txtVolume{&frmMain, "txtVolume", {.visible = false}};
  Text txtPlayerTop{&frmMain, "txtPlayerTop", {.visible = false}};
  Text txtPlayerLeft{&frmMain, "txtPlayerLeft", {.visible = false}};
  Text txtTitleBarHeight{&frmMain, "txtTitleBarHeight", {.visible = false}};
  Text txtFasciaImagePointer{&frmMain, "txtFasciaImagePointer", {.visible = false}};
  Text txtImportSynchronize{&frmMain, "txtImportSynchronize", {.visible = false}};
  /// The import directory on show: "0" for the import folder itself, else the folder's number.
  Text txtWavImportSubdirectory{
      &frmMain, "txtWavImportSubdirectory", {.caption = "0", .visible = false}};
  Text txtFtpServerSelection{&frmMain, "txtFtpServerSelection", {.visible = false}};
  Table listFasciaImages{&frmMain,
                         "listFasciaImages",
                         {.tooltip = "Choose the appearance of your Tavlo Deck", .visible = false}};
};

}  // namespace tavlo::forms
