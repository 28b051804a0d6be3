#include "forms/player_frame.h"

#include <string>
#include <vector>

namespace tavlo::forms {
namespace {

constexpr Twips kPlayerHeight = 3210;

}  // namespace

PlayerFrame::PlayerFrame(Window& window)
    : DeckRuns(window, false),
      DeckWinds(window, Winding::No),
      framePlayer(&window, "framePlayer"),
      txtSpeed(&window, "txtSpeed", {.visible = false}),
      txtVolume(&window, "txtVolume", {.visible = false}),
      txtFasciaImagePointer(&window, "txtFasciaImagePointer", {.visible = false}),
      listFasciaImages(&window, "listFasciaImages",
                       {.tooltip = "Choose the appearance of your Tavlo Deck", .visible = false}) {
  framePlayer.Height = kPlayerHeight;
  StatusBar1.Panels = std::vector<std::string>(7);
  StatusBar1.PanelTooltips =
      std::vector<std::string>{"Priority Status", "Author ID", "Author Name",   "Department",
                               "Work Type",       "Subject",   "Dictation Date"};
}

}  // namespace tavlo::forms
