#pragma once

#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/settings_store.h"
#include "store/work_folders.h"
#include "support/simulated_database.h"
#include "support/simulated_disk.h"
#include "support/simulated_loop.h"
#include "window/settings_binding.h"

namespace tavlo::test {

/// The settings as shipped, in a database that a test lays out, and the windows that show them.
struct SettingsBench {
  SimulatedLoop loop;
  SimulatedDisk disk{loop};
  SimulatedDatabase database;
  store::SettingsStore settings{database};
  store::WorkFolders folders{disk, "/root"};
  forms::MainForm main{loop};
  forms::ConfigurationForm config{loop};
  window::SettingsBinding binding{loop, main, config, settings, folders};
};

}  // namespace tavlo::test
