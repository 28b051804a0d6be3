#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// Columns of both lists of files.
namespace ftp_column {
enum { FileName };
}

/// Fetching files from a server.
struct FtpFrame {
  FtpFrame(Window& window, Pane& frameFiles)
      : frameFtp(&frameFiles, "frameFtp", {.caption = "Ftp", .visible = false}),
        txtFtpServerSelection(&window, "txtFtpServerSelection", {.visible = false}),
        txtFtpParseImportDirPointer(&window, "txtFtpParseImportDirPointer", {.visible = false}) {
    for (Table* const list : {&listFtpList, &listFtpDownloadList}) {
      list->SetColumns({{.title = "File Name", .width = 1500}});
    }
    listFtpDownloadList.WhenEmpty = "Nothing to download\nClick a file on the left to put it here.";
  }

  Pane frameFtp;
  Command bConnect{
      &frameFtp,
      "bConnect",
      {.caption = "Connect", .tooltip = "Log in to the chosen server, or log out again"}};
  Table comboFtpServerNames{&frameFtp, "comboFtpServerNames", {.tooltip = "Choose the server"}};
  Command bList{
      &frameFtp, "bList", {.caption = "List", .tooltip = "List the files of the server directory"}};
  Table comboFtpFileTypesToList{&frameFtp,
                                "comboFtpFileTypesToList",
                                {.tooltip = "Choose the type of files to list", .enabled = false}};

  // What the server has. The captions count.
  Pane frameFtpFilename{
      &frameFtp, "frameFtpFilename", {.caption = "Files in list: 0", .enabled = false}};
  Table listFtpList{
      &frameFtpFilename,
      "listFtpList",
      {.tooltip = "Click a file to move it to download list", .heard = "Files on the server"}};

  Command cmdFtpListToDownload{
      &frameFtp,
      "cmdFtpListToDownload",
      {.caption = ">>", .tooltip = "Move all files to the download list", .enabled = false}};
  Command cmdFtpDownloadToList{
      &frameFtp,
      "cmdFtpDownloadToList",
      {.caption = "<<", .tooltip = "Move all files back from the download list", .enabled = false}};

  // What is to be fetched, from the first one on.
  Pane frameFtpDownloadList{
      &frameFtp, "frameFtpDownloadList", {.caption = "Files to download: 0", .enabled = false}};
  Table listFtpDownloadList{
      &frameFtpDownloadList,
      "listFtpDownloadList",
      {.tooltip = "Click a file to move it back to the list", .heard = "Files to download"}};

  // How it is doing.
  Pane frameFtpConnectionStatus{
      &frameFtp, "frameFtpConnectionStatus", {.caption = "Connection status"}};
  Command bDownload{&frameFtpConnectionStatus,
                    "bDownload",
                    {.caption = "Download",
                     .tooltip = "Fetch the files of the download list, or halt after this one",
                     .enabled = false}};
  /// Bytes of the file that is being fetched.
  Text eByteCount{&frameFtpConnectionStatus, "eByteCount", {.enabled = false, .heard = "Received"}};
  /// The status box; its tooltip is its text.
  Text eMessage{&frameFtpConnectionStatus, "eMessage", {.heard = "Ftp status"}};

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
