#pragma once

#include "forms/completed_frame.h"
#include "forms/controls.h"
#include "forms/ftp_frame.h"
#include "forms/import_frame.h"
#include "forms/main_frame.h"
#include "forms/player_frame.h"
#include "forms/queue_frame.h"

/// The main window: the player on top, under it one of four work frames. The controls stand in a
/// header for each frame, each control with its caption, tooltip, range and first state.
namespace tavlo::forms {

/// What the work frames stand on. Exactly one of them is visible.
struct WorkArea {
  explicit WorkArea(Window& window) : frameFiles(&window, "frameFiles") {}

  Pane frameFiles;
  /// Stands over the list of whatever frame shows, while there is anything to open.
  Command cmdRescued{&frameFiles,
                     "cmdRescued",
                     {.caption = "Rescued: 0",
                      .tooltip = "Open the folder of the documents that were set aside so that "
                                 "they were not lost",
                      .visible = false}};
};

struct MainForm : MainFrame,
                  PlayerFrame,
                  WorkArea,
                  QueueFrame,
                  CompletedFrame,
                  ImportFrame,
                  AuthorProfileFrame,
                  FtpFrame {
  explicit MainForm(base::Loop& loop);
};

}  // namespace tavlo::forms
