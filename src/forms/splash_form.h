#pragma once

#include "forms/controls.h"

/// The window that stands while the program starts.
namespace tavlo::forms {

struct SplashForm {
  explicit SplashForm(base::Loop& loop) : frmInitSplash(loop, "frmInitSplash", "Tavlo Deck") {
    frmInitSplash.Width = 7200;
    frmInitSplash.Height = 4500;
  }

  Window frmInitSplash;
  Pane picIcon{
      &frmInitSplash, "picIcon", {.tooltip = "Click to start at once", .heard = "Start at once"}};
  Text lblVersion{&frmInitSplash, "lblVersion"};
  Range ProgressBar1{&frmInitSplash,
                     "ProgressBar1",
                     {.tooltip = "Progress of the start"},
                     {.minimum = 0, .maximum = 10, .heard = kPercent}};
};

}  // namespace tavlo::forms
