#pragma once

#include "forms/about_form.h"
#include "platform/qt/top_window.h"

namespace tavlo::platform::qt {

/// The about box.
class AboutWindow : public TopWindow {
 public:
  AboutWindow(forms::AboutForm& form, QtLoop& loop, Binder& binder);
};

}  // namespace tavlo::platform::qt
