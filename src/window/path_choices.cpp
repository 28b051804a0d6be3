#include "window/path_choices.h"

namespace tavlo::window {

PathChoices::PathChoices(forms::ConfigurationForm& config, const store::WorkFolders& folders,
                         store::BrowsableFolders& browsable)
    : config_(config), folders_(folders), browser_(config, browsable) {
  struct PathRow {
    store::QueuePath path;
    forms::Text& text;
    forms::Command& set;
    forms::Command& putBack;
  };
  const PathRow rows[] = {
      {store::QueuePath::Ew2, config_.txtEw2QueuePath, config_.cmdSetEw2QueuePath,
       config_.cmdEw2QueuePathDefault},
      {store::QueuePath::Ds2, config_.txtDs2QueuePath, config_.cmdSetDs2QueuePath,
       config_.cmdDs2QueuePathDefault},
      {store::QueuePath::Wav, config_.txtWavQueuePath, config_.cmdSetWavQueuePath,
       config_.cmdWavQueuePathDefault},
      {store::QueuePath::Eu2, config_.txtEu2QueuePath, config_.cmdSetEu2QueuePath,
       config_.cmdEu2QueuePathDefault},
  };
  for (const PathRow& row : rows) {
    row.set.OnPress = [this, &text = row.text] {
      // Where no place could be read at all there is none to take, and an empty path would be one.
      const std::string& browsed = config_.lblBrowsedFolder.Value;
      if (!browsed.empty()) text.Value = browsed;
      FocusAway();
    };
    row.putBack.OnPress = [this, &text = row.text, path = row.path] {
      text.Value = folders_.DefaultQueuePath(path);
      FocusAway();
    };
  }
}

void PathChoices::WindowOpens() {
  if (Frame().Visible) browser_.OfferPlaces();
}

}  // namespace tavlo::window
