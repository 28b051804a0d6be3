#pragma once

#include <string>

#include "forms/about_form.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "store/document_name.h"
#include "store/settings_store.h"
#include "window/settings_choices.h"

namespace tavlo::shell {

/// One build serves several resellers: a setting picks the logo row and, with it, the date order.
class Branding : public window::Brand {
 public:
  Branding(forms::MainForm& form, forms::ConfigurationForm& config, forms::AboutForm& about,
           store::SettingsStore& settings, store::DocumentNames& names);

  /// Reads the setting anew, shows its brand and no other, and the user's own line if that is
  /// wanted.
  void ApplyBranding() override;

  /// What the setting held when it could be read last.
  std::string OEMLogoName;

 private:
  forms::MainForm& form_;
  forms::ConfigurationForm& config_;
  forms::AboutForm& about_;
  store::SettingsStore& settings_;
  store::DocumentNames& names_;
};

}  // namespace tavlo::shell
