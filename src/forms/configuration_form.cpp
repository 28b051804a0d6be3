#include "forms/configuration_form.h"

#include <algorithm>

namespace tavlo::forms {
namespace {

constexpr Twips kWindowHeight = 10500;
constexpr Twips kWidth = 14250;

}  // namespace

ConfigurationForm::ConfigurationForm(base::Loop& loop)
    : ConfigurationFrame(loop),
      SettingsPage(frmConfiguration),
      EqualizerPage(frmConfiguration),
      MixerPage(frmConfiguration),
      PathsPage(frmConfiguration),
      FtpPage(frmConfiguration),
      KeysPage(frmConfiguration) {
  frmConfiguration.Height = kWindowHeight;
  frmConfiguration.Width = kWidth;
  for (const char* caption : {"&Settings", "&Equalizer", "&Mixer", "&Paths", "&Ftp", "&Keys"}) {
    tabConfiguration.Add(caption);
  }
  tabConfiguration.ListIndex = 0;
}

int ConfigurationForm::TabOf(const Pane& page) {
  const auto pages = Pages();
  return static_cast<int>(std::ranges::find(pages, &page) - pages.begin());
}

}  // namespace tavlo::forms
