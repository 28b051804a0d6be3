#pragma once

#include "forms/controls.h"

/// The about box.
namespace tavlo::forms {

struct AboutForm {
  explicit AboutForm(base::Loop& loop) : frmAbout(loop, "frmAbout", "About Tavlo Deck") {
    frmAbout.Width = 7200;
    frmAbout.Height = 4500;
  }

  Window frmAbout;
  Command mnuClose{&frmAbout, "mnuClose", {.caption = "&Close", .tooltip = "Go back to the deck"}};
  Command mnuSystemInfo{
      &frmAbout,
      "mnuSystemInfo",
      {.caption = "&System Info", .tooltip = "Show what this computer is made of"}};
  Text lblVersion{&frmAbout, "lblVersion"};
  Text lblAboutDescription{&frmAbout, "lblAboutDescription"};
};

}  // namespace tavlo::forms
