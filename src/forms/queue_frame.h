#pragma once

#include "forms/controls.h"
#include "forms/document_columns.h"

namespace tavlo::forms {

/// The Queue: the dictations that wait.
struct QueueFrame {
  explicit QueueFrame(Pane& frameFiles)
      : frameInQueue(&frameFiles, "frameInQueue", {.caption = "Queue"}) {}

  Pane frameInQueue;
  Table listViewInQueue{&frameInQueue, "listViewInQueue", {.visible = false, .heard = "Queue"}};
  Command cmdUpdateFileList{
      &frameInQueue,
      "cmdUpdateFileList",
      {.caption = "Refresh", .tooltip = "Refresh the Queue list", .enabled = false}};
};

}  // namespace tavlo::forms
