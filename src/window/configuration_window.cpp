#include "window/configuration_window.h"

namespace tavlo::window {

ConfigurationWindow::ConfigurationWindow(MainWindow& window, SettingsBinding& settings,
                                         store::WorkFolders& folders)
    : window_(window),
      main_(window.Form()),
      config_(window.Config()),
      settings_(settings),
      folders_(folders) {
  main_.mnuConfiguration.OnPress = [this] { window_.ShowConfiguration(); };
  config_.mnuClose.OnPress = [this] { SaveConfiguration(ConfigurationExit::ByMenu); };
  config_.frmConfiguration.OnCloseRequest = [this] {
    SaveConfiguration(ConfigurationExit::ByFrame);
  };
  config_.frmConfiguration.OnActivate = [this] { Open(); };
  config_.tabConfiguration.OnSelect = [this] { ShowPage(config_.tabConfiguration.ListIndex); };
  for (forms::Pane* frame : config_.Pages()) frame->Enabled = false;
}

void ConfigurationWindow::Register(ConfigurationPage& page) {
  pages_.push_back(&page);
  page.Frame().Enabled = true;
}

void ConfigurationWindow::SaveConfiguration(ConfigurationExit exit) {
  folders_.Ew2QueuePath = folders_.QueuePathOf(config_.txtEw2QueuePath.Value.Get());
  folders_.Ds2QueuePath = folders_.QueuePathOf(config_.txtDs2QueuePath.Value.Get());
  folders_.WavQueuePath = folders_.QueuePathOf(config_.txtWavQueuePath.Value.Get());
  settings_.SaveConfigurationFields();
  for (ConfigurationPage* page : pages_) page->WindowCloses(exit);
  ConfigOpenOnEqualizer = false;
  config_.frmConfiguration.Visible = false;
  main_.frmMain.Visible = true;
  // What had the keyboard when the main window was hidden may be a key or a menu.
  window_.FocusAway();
  ReloadQueuePaths();
}

void ConfigurationWindow::SaveAtOnce() {
  if (config_.frmConfiguration.Visible) settings_.SaveConfigurationFields();
  settings_.Flush();
}

void ConfigurationWindow::ReloadQueuePaths() {
  folders_.ReloadQueuePaths({.ew2QueuePath = config_.txtEw2QueuePath.Value,
                             .ds2QueuePath = config_.txtDs2QueuePath.Value,
                             .wavQueuePath = config_.txtWavQueuePath.Value,
                             .eu2QueuePath = config_.txtEu2QueuePath.Value,
                             .viewDelay = config_.txtViewDelay.Value});
}

void ConfigurationWindow::Open() {
  for (ConfigurationPage* page : pages_) {
    const bool isEqualizer = &page->Frame() == &config_.frameConfigEqualizer;
    if (ConfigOpenOnEqualizer && isEqualizer) {
      config_.tabConfiguration.ListIndex = config_.TabOf(page->Frame());
    }
    page->WindowOpens();
  }
}

void ConfigurationWindow::ShowPage(int tab) {
  for (forms::Pane* frame : config_.Pages()) frame->Visible = config_.TabOf(*frame) == tab;
  for (ConfigurationPage* page : pages_) {
    if (page->Frame().Visible) page->ComesToFront();
  }
}

}  // namespace tavlo::window
