#pragma once

#include <array>

#include "forms/controls.h"
#include "forms/files_pages.h"
#include "forms/keys_page.h"
#include "forms/settings_page.h"
#include "forms/sound_pages.h"

/// The configuration window: six pages of which one shows. It stays loaded for the whole run, and
/// its controls are the live copy of the settings.
namespace tavlo::forms {

/// What stands around the pages.
struct ConfigurationFrame {
  explicit ConfigurationFrame(base::Loop& loop)
      : frmConfiguration(loop, "frmConfiguration", "Tavlo Deck - Configuration") {}

  Window frmConfiguration;
  Command mnuClose{&frmConfiguration,
                   "mnuClose",
                   {.caption = "&Close", .tooltip = "Keep the settings and go back to the deck"}};
  /// Takes the keyboard after every action, so that no button is left holding it.
  Text txtFocus{&frmConfiguration, "txtFocus", {.heard = "Configuration"}};
  /// The tab strip; its rows are the captions of the tabs.
  Table tabConfiguration{
      &frmConfiguration, "tabConfiguration", {.heard = "Pages of the configuration"}};
};

struct ConfigurationForm : ConfigurationFrame,
                           SettingsPage,
                           EqualizerPage,
                           MixerPage,
                           PathsPage,
                           FtpPage,
                           KeysPage {
  explicit ConfigurationForm(base::Loop& loop);

  /// The pages in the order of their tabs.
  std::array<Pane*, 6> Pages() {
    return {&frameSettings, &frameConfigEqualizer, &frameConfigMixer, &frameConfigAlternatePath,
            &frameFtp,      &frameConfigKeys};
  }
  /// The row of the tab strip that shows a page.
  int TabOf(const Pane& page);
};

}  // namespace tavlo::forms
