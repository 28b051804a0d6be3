#include "window/no_document.h"

#include <string>
#include <vector>

namespace tavlo::window {

void ShowNoDocument(forms::MainForm& form) {
  form.StatusBar1.Panels = std::vector<std::string>(form.StatusBar1.Panels.Get().size());
  form.lblFilePositionHMS.Value = "00:00:00";
  form.lblFileLengthHMS.Value = "00:00:00";
  form.slPosition.Value = 0;
  form.slPosition.Enabled = false;
  form.cmdPlay.Enabled = false;
  form.cmdComplete.Enabled = false;
}

}  // namespace tavlo::window
