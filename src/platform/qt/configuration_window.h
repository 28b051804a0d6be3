#pragma once

#include "forms/configuration_form.h"
#include "platform/qt/top_window.h"

namespace tavlo::platform::qt {

/// The configuration window.
class ConfigurationWindow : public TopWindow {
 public:
  ConfigurationWindow(forms::ConfigurationForm& form, QtLoop& loop, Binder& binder);
};

}  // namespace tavlo::platform::qt
