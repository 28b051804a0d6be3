#pragma once

#include <string>

#include "forms/controls.h"

/// The "&Paths" and "&Ftp" pages of the configuration window: where documents come from.
namespace tavlo::forms {

/// The row of `PathsPage::Dir1` that leads out of the browsed folder.
inline constexpr const char* kWayUp = "..";

struct PathsPage {
  explicit PathsPage(Window& window)
      : frameConfigAlternatePath(&window, "frameConfigAlternatePath",
                                 {.caption = "Where dictations come from", .visible = false}) {}

  Pane frameConfigAlternatePath;
  Table Drive1{&frameConfigAlternatePath, "Drive1", {.tooltip = "Select a drive"}};
  /// The folders in the browsed folder, the way up first.
  Table Dir1{&frameConfigAlternatePath,
             "Dir1",
             {.tooltip = "Double click a folder to browse into it", .heard = "Folders"}};
  Text lblBrowsedFolder{
      &frameConfigAlternatePath, "lblBrowsedFolder", {.tooltip = "The browsed folder"}};

  Text lblEw2QueuePath{
      &frameConfigAlternatePath, "lblEw2QueuePath", {.caption = "Path for .eW2 files"}};
  Text txtEw2QueuePath{
      &frameConfigAlternatePath, "txtEw2QueuePath", {.tooltip = "Path for .eW2 files"}};
  Command cmdSetEw2QueuePath{&frameConfigAlternatePath,
                             "cmdSetEw2QueuePath",
                             {.caption = "Set",
                              .tooltip = "Take the browsed folder as the path for .eW2 files",
                              .heard = "Set the path for .eW2 files"}};
  Command cmdEw2QueuePathDefault{&frameConfigAlternatePath,
                                 "cmdEw2QueuePathDefault",
                                 {.caption = "Default",
                                  .tooltip = "Put the default path for .eW2 files back",
                                  .heard = "Default path for .eW2 files"}};

  Text lblDs2QueuePath{
      &frameConfigAlternatePath, "lblDs2QueuePath", {.caption = "Path for .dS2 files"}};
  Text txtDs2QueuePath{
      &frameConfigAlternatePath, "txtDs2QueuePath", {.tooltip = "Path for .dS2 files"}};
  Command cmdSetDs2QueuePath{&frameConfigAlternatePath,
                             "cmdSetDs2QueuePath",
                             {.caption = "Set",
                              .tooltip = "Take the browsed folder as the path for .dS2 files",
                              .heard = "Set the path for .dS2 files"}};
  Command cmdDs2QueuePathDefault{&frameConfigAlternatePath,
                                 "cmdDs2QueuePathDefault",
                                 {.caption = "Default",
                                  .tooltip = "Put the default path for .dS2 files back",
                                  .heard = "Default path for .dS2 files"}};

  Text lblWavQueuePath{
      &frameConfigAlternatePath, "lblWavQueuePath", {.caption = "Path for generic audio files"}};
  Text txtWavQueuePath{
      &frameConfigAlternatePath, "txtWavQueuePath", {.tooltip = "Path for generic audio files"}};
  Command cmdSetWavQueuePath{
      &frameConfigAlternatePath,
      "cmdSetWavQueuePath",
      {.caption = "Set",
       .tooltip = "Take the browsed folder as the path for generic audio files",
       .heard = "Set the path for generic audio files"}};
  Command cmdWavQueuePathDefault{&frameConfigAlternatePath,
                                 "cmdWavQueuePathDefault",
                                 {.caption = "Default",
                                  .tooltip = "Put the default path for generic audio files back",
                                  .heard = "Default path for generic audio files"}};

  Text lblEu2QueuePath{
      &frameConfigAlternatePath, "lblEu2QueuePath", {.caption = "Path for .eU2 files"}};
  Text txtEu2QueuePath{
      &frameConfigAlternatePath, "txtEu2QueuePath", {.tooltip = "Path for .eU2 files"}};
  Command cmdSetEu2QueuePath{&frameConfigAlternatePath,
                             "cmdSetEu2QueuePath",
                             {.caption = "Set",
                              .tooltip = "Take the browsed folder as the path for .eU2 files",
                              .heard = "Set the path for .eU2 files"}};
  Command cmdEu2QueuePathDefault{&frameConfigAlternatePath,
                                 "cmdEu2QueuePathDefault",
                                 {.caption = "Default",
                                  .tooltip = "Put the default path for .eU2 files back",
                                  .heard = "Default path for .eU2 files"}};
};

/// How the password of a profile travels.
struct ProtectionText : Text {
  using Text::Text;

  /// It says something that a person should mind.
  State<bool> Warns{*this, false};
};

struct FtpPage {
  explicit FtpPage(Window& window) : frameFtp(&window, "frameFtp", {.visible = false}) {}

  Pane frameFtp;

  // Steps over the 25 profiles; the caption is the number of the one that shows.
  Pane dataFtpSettings{&frameFtp, "dataFtpSettings"};
  Command cmdFtpFirst{&dataFtpSettings,
                      "cmdFtpFirst",
                      {.caption = "|<", .tooltip = "Go to the first server profile"}};
  Command cmdFtpPrevious{&dataFtpSettings,
                         "cmdFtpPrevious",
                         {.caption = "<", .tooltip = "Go to the previous server profile"}};
  Command cmdFtpNext{
      &dataFtpSettings, "cmdFtpNext", {.caption = ">", .tooltip = "Go to the next server profile"}};
  Command cmdFtpLast{&dataFtpSettings,
                     "cmdFtpLast",
                     {.caption = ">|", .tooltip = "Go to the last server profile"}};

  Text txtFtpServerID{&frameFtp, "txtFtpServerID", {.visible = false}};
  Text lblFtpName{&frameFtp, "lblFtpName", {.caption = "Server Name"}};
  Text txtFtpName{
      &frameFtp, "txtFtpName", {.tooltip = "Name of this server profile, letters and digits"}};
  Text lblServerID{&frameFtp, "lblServerID", {.caption = "FTP Server ID"}};
  Text eServer{&frameFtp,
               "eServer",
               {.tooltip = "Host name or address of the server. ftps:// or ftpes:// before it "
                           "protects what travels, where the server can do that",
                .heard = "Host name or address of the server"}};
  Text lblUser{&frameFtp, "lblUser", {.caption = "User"}};
  Text eUser{&frameFtp, "eUser", {.tooltip = "Name to log in with"}};
  ProtectionText lblFtpUnprotected{&frameFtp, "lblFtpUnprotected"};
  Text lblPass{&frameFtp, "lblPass", {.caption = "Password"}};
  /// Every character of it shows as an asterisk.
  Text ePass{&frameFtp, "ePass", {.tooltip = "Password to log in with"}};
  Text lblServerDir{&frameFtp, "lblServerDir", {.caption = "Server Directory"}};
  Text eServerDir{&frameFtp, "eServerDir", {.tooltip = "Directory to change to on the server"}};
  Choice chkFtpFileDeleteMode{&frameFtp,
                              "chkFtpFileDeleteMode",
                              {.caption = "Delete downloaded files from the server",
                               .tooltip = "Delete each downloaded file from the server"}};
  Choice chkFtpAutoListAndDownload{&frameFtp,
                                   "chkFtpAutoListAndDownload",
                                   {.caption = "Automatically list and download files upon connect",
                                    .tooltip = "List and download at once upon connect"}};
  Choice chkFtpPassiveMode{&frameFtp,
                           "chkFtpPassiveMode",
                           {.caption = "Server specifies data port for firewall access",
                            .tooltip = "Use a passive data connection"}};
  Text lblLinkFilesTo{&frameFtp, "lblLinkFilesTo", {.caption = "Link files to"}};
  Table comboAuthorLastName{&frameFtp,
                            "comboAuthorLastName",
                            {.tooltip = "Link non-Orvane files (wav, mp3, wma, avi, etc.) to this "
                                        "author's import directory and profile"}};
  Text txtFtpParseGenericPointer{&frameFtp, "txtFtpParseGenericPointer", {.visible = false}};
  Choice chkFtpAutoRetrieve{&frameFtp,
                            "chkFtpAutoRetrieve",
                            {.caption = "Automatically retireve files from server",
                             .tooltip = "Check to automatically retrieve files from the server"}};
  Command cmdFtpClear{
      &frameFtp, "cmdFtpClear", {.caption = "Clear", .tooltip = "Clear this server profile"}};
  Command cmdFtpMemorize{&frameFtp,
                         "cmdFtpMemorize",
                         {.caption = "Memorize", .tooltip = "Memorize this server profile"}};
  Command cmdFtpClone{&frameFtp,
                      "cmdFtpClone",
                      {.caption = "Clone",
                       .tooltip = "Write the memorized server profile into this one",
                       .enabled = false}};
};

}  // namespace tavlo::forms
