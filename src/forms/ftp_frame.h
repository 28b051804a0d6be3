#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// Fetching files from a server.
struct FtpFrame {
  FtpFrame(Window& window, Pane& frameFiles)
      : frameFtp(&frameFiles, "frameFtp", {.caption = "Ftp", .visible = false}),
        txtFtpServerSelection(&window, "txtFtpServerSelection", {.visible = false}) {}

  Pane frameFtp;
  Command bConnect{
      &frameFtp, "bConnect", {.caption = "Connect", .tooltip = "Connect to the chosen server"}};
  Table comboFtpServerNames{&frameFtp, "comboFtpServerNames", {.tooltip = "Choose the server"}};
  Table comboFtpFileTypesToList{&frameFtp,
                                "comboFtpFileTypesToList",
                                {.tooltip = "Choose the type of files to list", .enabled = false}};

  /// Never visible: holds the stored choice of the server.
  Text txtFtpServerSelection;
};

}  // namespace tavlo::forms
