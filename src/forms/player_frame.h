#pragma once

#include "forms/controls.h"

namespace tavlo::forms {

/// Which way the deck winds.
enum class Winding { No, Back, On };

/// The deck: display, position, keys, sound, the facts of the document and the quiet line.
struct PlayerFrame {
  explicit PlayerFrame(Window& window);

  /// True while a document sounds or winds: the Play key shows as Stop then.
  State<bool> DeckRuns;
  State<Winding> DeckWinds;

  Pane framePlayer;
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
  Pane picBriselBitMap{&framePlayer, "picBriselBitMap", {.tooltip = "Brisel", .visible = false}};
  Text lblBriselName{&framePlayer, "lblBriselName", {.caption = "Brisel", .visible = false}};
  Pane picSorelLogo{&framePlayer, "picSorelLogo", {.tooltip = "SorelTek", .visible = false}};
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

  // Texts that are never visible: each holds the stored value of something that is shown otherwise.
  Text txtSpeed;
  Text txtVolume;
  Text txtFasciaImagePointer;
  /// The pictures to choose from, which is never visible either.
  Table listFasciaImages;
};

}  // namespace tavlo::forms
