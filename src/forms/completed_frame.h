#pragma once

#include "forms/controls.h"
#include "forms/document_columns.h"

namespace tavlo::forms {

/// The dictations that are completed.
struct CompletedFrame {
  explicit CompletedFrame(Pane& frameFiles)
      : frameCompleted(&frameFiles, "frameCompleted", {.caption = "Completed", .visible = false}) {}

  Pane frameCompleted;
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
};

}  // namespace tavlo::forms
