#pragma once

#include "forms/splash_form.h"
#include "platform/qt/top_window.h"

namespace tavlo::platform::qt {

/// The frameless window that stands while the program starts.
class SplashWindow : public TopWindow {
 public:
  SplashWindow(forms::SplashForm& form, QtLoop& loop, Binder& binder);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tavlo::platform::qt
