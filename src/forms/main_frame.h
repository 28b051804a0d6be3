#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// What stands around the frames of the main window.
struct MainFrame {
  explicit MainFrame(base::Loop& loop) : frmMain(loop, "frmMain", "Tavlo Deck") {}

  Window frmMain;

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

  // Texts that are never visible: they hold the stored place of the mini-player.
  Text txtPlayerTop{&frmMain, "txtPlayerTop", {.visible = false}};
  Text txtPlayerLeft{&frmMain, "txtPlayerLeft", {.visible = false}};
  Text txtTitleBarHeight{&frmMain, "txtTitleBarHeight", {.visible = false}};
};

}  // namespace tavlo::forms
