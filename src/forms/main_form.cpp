#include "forms/main_form.h"

namespace tavlo::forms {
namespace {

constexpr Twips kFullHeight = 9600;
constexpr Twips kFullWidth = 13800;
constexpr Twips kPlayerHeight = 3210;

}  // namespace

MainForm::MainForm(base::Loop& loop) : frmMain(loop, "frmMain", "Tavlo Deck") {
  frmMain.Height = kFullHeight;
  frmMain.Width = kFullWidth;
  framePlayer.Height = kPlayerHeight;
  StatusBar1.Panels = std::vector<std::string>(7);
  StatusBar1.PanelTooltips =
      std::vector<std::string>{"Priority Status", "Author ID", "Author Name",   "Department",
                               "Work Type",       "Subject",   "Dictation Date"};
}

}  // namespace tavlo::forms
