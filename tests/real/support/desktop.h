#pragma once

#include <sys/types.h>

#include <string>

namespace tavlo::test {

enum class WindowManager { Openbox, None };

/// A desktop of its own for one test program: a virtual screen and a small window manager, both
/// ended with it. Must stand before the QApplication is made; afterwards the program's windows show
/// there.
class Desktop {
 public:
  explicit Desktop(const std::string& size = "1280x1024",
                   WindowManager manager = WindowManager::Openbox);
  ~Desktop();
  Desktop(const Desktop&) = delete;

  /// Empty when the desktop stands, else what is missing.
  const std::string& Fault() const { return fault_; }

  /// The screen's server dies, without a farewell to whoever shows there.
  void KillScreen();

 private:
  bool StartScreen(const std::string& size);
  bool StartWindowManager();

  pid_t screen_ = -1;
  pid_t manager_ = -1;
  std::string fault_;
};

}  // namespace tavlo::test
