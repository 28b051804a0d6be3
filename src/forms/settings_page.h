#pragma once

#include <string>

#include "forms/controls.h"

/// The "&Settings" page of the configuration window: how playing, lists, alerts and the pedal
/// behave.
namespace tavlo::forms {

/// A pedal drawn on the page. It lights while the pedal is down, whether or not the page shows.
struct PedalShape : Pane {
  static constexpr Colour kDown = 0xFFFFC0;
  static constexpr Colour kUp = 0xC0C0C0;

  PedalShape(Pane* parent, std::string name, const First& first)
      : Pane(parent, std::move(name), first) {}

  State<Colour> FillColour{*this, kUp};
};

struct SettingsPage {
  explicit SettingsPage(Window& window) : frameSettings(&window, "frameSettings") {}

  Pane frameSettings;

  // Playing. The caption of each frame carries the value of its slider.
  Pane frameAutoBackspace{
      &frameSettings, "frameAutoBackspace", {.caption = "Auto Backspace:  0.0"}};
  Range sliderABS{&frameAutoBackspace,
                  "sliderABS",
                  {.tooltip = "Select the Auto Backspace time in seconds"},
                  {.minimum = 0,
                   .maximum = 99,
                   .smallStep = 1,
                   .largeStep = 10,
                   .heard = {.atMaximum = 9.9, .step = 0.1, .unit = "seconds"}}};
  Text txtAutoBackspace{&frameAutoBackspace, "txtAutoBackspace", {.visible = false}};
  Text txtAutoBackspaceDisplay{&frameAutoBackspace, "txtAutoBackspaceDisplay", {.visible = false}};
  Pane frameAutoPreview{&frameSettings, "frameAutoPreview", {.caption = "Audio Preview:  15"}};
  Range sliderAutoPreview{&frameAutoPreview,
                          "sliderAutoPreview",
                          {.tooltip = "Select the Auto Preview time in seconds"},
                          {.minimum = 0,
                           .maximum = 15,
                           .smallStep = 1,
                           .largeStep = 5,
                           .value = 15,
                           .heard = {.atMaximum = 15, .unit = "seconds"}}};
  Text txtAutoPreview{&frameAutoPreview, "txtAutoPreview", {.visible = false}};
  Pane frameWindIncrement{&frameSettings, "frameWindIncrement", {.caption = "Wind Increment:  0"}};
  Range sliderWindIncrement{&frameWindIncrement,
                            "sliderWindIncrement",
                            {.tooltip = "Select the length of a wind step in seconds"},
                            {.minimum = 0,
                             .maximum = 60,
                             .smallStep = 1,
                             .largeStep = 5,
                             .heard = {.atMaximum = 60, .unit = "seconds"}}};
  Text txtWindIncrement{&frameWindIncrement, "txtWindIncrement", {.visible = false}};
  Choice chkAccelerateWindIncrement{
      &frameWindIncrement,
      "chkAccelerateWindIncrement",
      {.caption = "Accelerate", .tooltip = "Wind faster the longer a wind lasts"}};
  Text txtAccelerateWindIncrement{
      &frameWindIncrement, "txtAccelerateWindIncrement", {.visible = false}};
  Choice chkMinimizeMiniPlayer{
      &frameSettings,
      "chkMinimizeMiniPlayer",
      {.caption = "Minimize Upon Play", .tooltip = "Minimize the window while a document plays"}};
  Text txtMinimizeMiniPlayer{&frameSettings, "txtMinimizeMiniPlayer", {.visible = false}};
  Choice chkAlwaysOnTop{
      &frameSettings,
      "chkAlwaysOnTop",
      {.caption = "Always On Top", .tooltip = "Keep the window on top of other programs"}};
  Text txtAlwaysOnTop{&frameSettings, "txtAlwaysOnTop", {.visible = false}};
  Command cmdCenterMiniPlayer{
      &frameSettings,
      "cmdCenterMiniPlayer",
      {.caption = "Center Mini-Player", .tooltip = "Click to center the mini-player"}};

  // Prompts.
  Choice chkAudioPrompts{&frameSettings,
                         "chkAudioPrompts",
                         {.caption = "Audio Prompts", .tooltip = "Play informative audio prompts"}};
  Text txtAudioPrompts{&frameSettings, "txtAudioPrompts", {.visible = false}};
  Text lblPromptVolume{&frameSettings, "lblPromptVolume", {.caption = "Prompt Volume"}};
  Range sldPromptVol{&frameSettings,
                     "sldPromptVol",
                     {.tooltip = "Volume of the audio prompts"},
                     {.minimum = 0,
                      .maximum = 65535,
                      .smallStep = 1,
                      .largeStep = 10000,
                      .value = 55000,
                      .heard = kPercent}};
  Text txtPromptVolume{&frameSettings, "txtPromptVolume", {.visible = false}};

  // Lists and files.
  Choice chkAutoQueueJob{
      &frameSettings,
      "chkAutoQueueJob",
      {.caption = "Auto Queue", .tooltip = "Automatically queue the next dictation"}};
  Text txtAutoQueueJob{&frameSettings, "txtAutoQueueJob", {.visible = false}};
  Text lblSubjectHeading{&frameSettings, "lblSubjectHeading", {.caption = "Subject Heading"}};
  Text txtSubjectHeading{&frameSettings,
                         "txtSubjectHeading",
                         {.tooltip = "Heading of the subject column, such as client or patient"}};
  Text lblDeleteCompletedFiles{
      &frameSettings, "lblDeleteCompletedFiles", {.caption = "Delete Completed Files"}};
  Text txtDeleteCompletedFiles{
      &frameSettings,
      "txtDeleteCompletedFiles",
      {.tooltip = "Delete completed files after this many days, 0 to keep them"}};
  /// What the box does not refuse, the purge does not do.
  Text lblDeleteCompletedLimit{
      &frameSettings, "lblDeleteCompletedLimit", {.caption = "0 or above 22 keeps them all."}};
  Text lblViewDelay{&frameSettings, "lblViewDelay", {.caption = "View Delay"}};
  Text txtViewDelay{
      &frameSettings,
      "txtViewDelay",
      {.tooltip = "Kept for older settings: the deck sees for itself when a document is whole"}};
  Text lblWavConvMode{&frameSettings, "lblWavConvMode", {.caption = "Wav Conversion"}};
  Text txtWavConvMode{
      &frameSettings, "txtWavConvMode", {.tooltip = "Wav mode:  8, 11, 12, 16, 22, or 44 KHz"}};
  Command cmdWavConvMode{
      &frameSettings,
      "cmdWavConvMode",
      {.caption = "Next",
       .tooltip = "Click to select Wav conversion mode to use when converting dss files"}};
  Text lblWordProcessorPath{&frameSettings, "lblWordProcessorPath", {.caption = "Word Processor"}};
  Text txtWordProcessorPath{
      &frameSettings,
      "txtWordProcessorPath",
      {.tooltip = "Program that opens a report, default write.exe; double click to clear"}};
  Choice chkShowCustomDisplay{
      &frameSettings,
      "chkShowCustomDisplay",
      {.caption = "Custom Display", .tooltip = "Show a line of your own on the main window"}};
  Text txtShowCustomDisplay{&frameSettings, "txtShowCustomDisplay", {.visible = false}};
  /// Its tooltip follows its text.
  Text txtCustomDisplay{
      &frameSettings, "txtCustomDisplay", {.heard = "Line of your own on the deck"}};

  // Automatic refresh and alerts, which exclude each other.
  Choice chkAutoRefreshMode{
      &frameSettings,
      "chkAutoRefreshMode",
      {.caption = "Automatic Queue Refresh", .tooltip = "Refresh the Queue automatically"}};
  Text txtAutoQueueRefreshInterval{
      &frameSettings,
      "txtAutoQueueRefreshInterval",
      {.tooltip = "The number of seconds between each automatic queue refresh"}};
  Choice chkWorkWaitingAlertMode{
      &frameSettings,
      "chkWorkWaitingAlertMode",
      {.caption = "New Dictation Alert", .tooltip = "Alert when a new dictation has arrived"}};
  Text txtWorkWaitingAlertMode{&frameSettings, "txtWorkWaitingAlertMode", {.visible = false}};
  Choice optNewWorkWaitingAllJobs{
      &frameSettings,
      "optNewWorkWaitingAllJobs",
      {.caption = "Any", .tooltip = "Alert when any new dictation has arrived"},
      false,
      Choice::Kind::Option};
  Choice optNewWorkWaitingPriority{
      &frameSettings,
      "optNewWorkWaitingPriority",
      {.caption = "Priority", .tooltip = "Alert when a new priority dictation has arrived"},
      false,
      Choice::Kind::Option};
  Text txtNewDictationAlertInterval{
      &frameSettings,
      "txtNewDictationAlertInterval",
      {.tooltip = "The number of seconds between each check for new dictation"}};
  Choice chkAutoImportMode{
      &frameSettings,
      "chkAutoImportMode",
      {.caption = "Automatic Import",
       .tooltip = "Automatically import files into the queue from the import folders"}};
  Text txtAutoImport{&frameSettings, "txtAutoImport", {.visible = false}};

  // The foot pedal.
  Pane frameConfigFootPedal{
      &frameSettings,
      "frameConfigFootPedal",
      {.caption = "Press each foot pedal and it will be highlighted to confirm its operation"}};
  PedalShape ShapeLeftPedal{
      &frameConfigFootPedal, "ShapeLeftPedal", {.tooltip = "Lights while the left pedal is down"}};
  PedalShape ShapeCenterPedal{&frameConfigFootPedal,
                              "ShapeCenterPedal",
                              {.tooltip = "Lights while the center pedal is down"}};
  PedalShape ShapeRightPedal{&frameConfigFootPedal,
                             "ShapeRightPedal",
                             {.tooltip = "Lights while the right pedal is down"}};
  Text lblLeftPedal{&frameConfigFootPedal, "lblLeftPedal", {.caption = "R"}};
  Text lblPlay{&frameConfigFootPedal, "lblPlay", {.caption = "Play"}};
  Text lblRightPedal{&frameConfigFootPedal, "lblRightPedal", {.caption = "F"}};
  Choice chkSwapRewindForwardPedals{&frameConfigFootPedal,
                                    "chkSwapRewindForwardPedals",
                                    {.caption = "Transpose F/R Foot Pedals",
                                     .tooltip = "Transpose the forward and rewind foot pedals"}};
  Text txtSwapRewFwdPedals{&frameConfigFootPedal, "txtSwapRewFwdPedals", {.visible = false}};
  Choice chkSkipBegEnd{
      &frameConfigFootPedal,
      "chkSkipBegEnd",
      {.caption = "Allow Skip Begin/End",
       .tooltip = "Press the rewind or forward pedal twice to skip to the beginning or end"}};
  Text txtSkipBegEnd{&frameConfigFootPedal, "txtSkipBegEnd", {.visible = false}};
  Choice optionUSB{&frameConfigFootPedal,
                   "optionUSB",
                   {.caption = "USB", .tooltip = "Use a USB foot pedal"},
                   false,
                   Choice::Kind::Option};
  Choice optionSerial{&frameConfigFootPedal,
                      "optionSerial",
                      {.caption = "Serial", .tooltip = "Use a serial foot pedal"},
                      false,
                      Choice::Kind::Option};
  Text txtUSBorSerialFootPedal{
      &frameConfigFootPedal, "txtUSBorSerialFootPedal", {.visible = false}};
  Text lblSerialFootPedalComPort{
      &frameConfigFootPedal, "lblSerialFootPedalComPort", {.caption = "Port"}};
  Text txtSerialFootPedalComPort{
      &frameConfigFootPedal,
      "txtSerialFootPedalComPort",
      {.tooltip = "Number of the serial port of the foot pedal", .enabled = false}};
  /// How the chosen pedal is doing.
  Text lblPedalState{&frameConfigFootPedal, "lblPedalState"};
  /// What runs the deck now while another window has the keyboard.
  Text lblWaysFromAfar{&frameConfigFootPedal, "lblWaysFromAfar"};
};

}  // namespace tavlo::forms
