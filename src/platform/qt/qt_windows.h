#pragma once

#include <array>

#include "forms/about_form.h"
#include "forms/configuration_form.h"
#include "forms/main_form.h"
#include "forms/splash_form.h"
#include "platform/qt/about_window.h"
#include "platform/qt/binder.h"
#include "platform/qt/configuration_pages.h"
#include "platform/qt/deck_window.h"
#include "platform/qt/splash_window.h"
#include "platform/qt/unmanaged_keyboard.h"

namespace tavlo::platform::qt {

/// Gives the QApplication its name, icon and lettering, and keeps it running while no window shows.
/// Call it once, before the first window is made.
void PrepareApplication();

/// All windows of the program, each showing its form as long as this lives. Takes the hooks of the
/// loop. The forms, the loop and `hush` must outlive it. A window appears when its form becomes
/// visible and the loop makes a pass.
class QtWindows {
 public:
  QtWindows(QtLoop& loop, Hush& hush, forms::MainForm& main, forms::SplashForm& splash,
            forms::AboutForm& about, forms::ConfigurationForm& configuration);
  ~QtWindows();
  QtWindows(const QtWindows&) = delete;

 private:
  /// The window in front of the others, null when none shows.
  TopWindow* Foremost();

  QtLoop& loop_;
  UnmanagedKeyboard keyboard_;
  Binder binder_;
  DeckWindow deck_;
  SplashWindow splash_;
  AboutWindow about_;
  ConfigurationPages configuration_;
  /// Who owns a message box: the first of these that shows.
  std::array<TopWindow*, 4> order_;
};

}  // namespace tavlo::platform::qt
