#pragma once

#include <sys/types.h>

#include <string>

#include "support/temporary_folder.h"

namespace tavlo::test {

enum class WindowManager { Openbox, Mutter, Kwin, Metacity, Xfwm4, None };

/// For the name of a test.
std::string NameOf(WindowManager manager);

/// A desktop of its own for one test program: a virtual screen and a window manager, both ended
/// with it. Must stand before the QApplication is made; afterwards the program's windows show
/// there. Nothing that the user has set up for a window manager counts, and those that need a
/// session bus have one of their own.
class Desktop {
 public:
  explicit Desktop(const std::string& size = "1280x1024",
                   WindowManager manager = WindowManager::Openbox);
  ~Desktop();
  Desktop(const Desktop&) = delete;

  /// Empty when the desktop stands, else what is missing.
  const std::string& Fault() const { return fault_; }
  /// What is at fault is a window manager that is not installed.
  bool LacksManager() const { return lacksManager_; }

  /// The screen's server dies, without a farewell to whoever shows there.
  void KillScreen();

 private:
  bool StartScreen(const std::string& size);
  bool StartWindowManager(WindowManager manager);
  /// The address of a new session bus; empty when none comes up.
  std::string StartBus();

  TemporaryFolder folder_;
  pid_t screen_ = -1;
  pid_t bus_ = -1;
  pid_t manager_ = -1;
  std::string fault_;
  bool lacksManager_ = false;
};

}  // namespace tavlo::test
