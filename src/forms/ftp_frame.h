#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// Fetching files from a server.
struct FtpFrame {
  FtpFrame(Window& window, Pane& frameFiles)
      : frameFtp(&frameFiles, "frameFtp", {.caption = "Ftp", .visible = false}),
        txtFtpServerSelection(&window, "txtFtpServerSelection", {.visible = false}),
        txtFtpParseImportDirPointer(&window, "txtFtpParseImportDirPointer", {.visible = false}) {}

  Pane frameFtp;
  Command bConnect{
      &frameFtp, "bConnect", {.caption = "Connect", .tooltip = "Connect to the chosen server"}};
  Table comboFtpServerNames{&frameFtp, "comboFtpServerNames", {.tooltip = "Choose the server"}};
  Table comboFtpFileTypesToList{&frameFtp,
                                "comboFtpFileTypesToList",
                                {.tooltip = "Choose the type of files to list", .enabled = false}};
  // They show while what was fetched is sorted.
  Text lblFtpParsing{
      &frameFtp, "lblFtpParsing", {.caption = "Processing files...", .visible = false}};
  Text lblFtpWait{&frameFtp, "lblFtpWait", {.caption = "please standby ", .visible = false}};

  // Texts that are never visible.

  /// Holds the stored choice of the server.
  Text txtFtpServerSelection;
  /// The import directory that takes the files of the connected server; empty before the first
  /// connection.
  Text txtFtpParseImportDirPointer;
};

}  // namespace tavlo::forms
