#pragma once

#include <functional>

#include "base/loop.h"
#include "forms/splash_form.h"

namespace tavlo::shell {

/// The first window. It holds the screen for five seconds, or until its icon is clicked.
class Splash {
 public:
  /// `done` runs once, when the splash has gone.
  Splash(base::Loop& loop, forms::SplashForm& form, std::function<void()> done);

  base::Timer tmrProgressBar;
  base::Timer tmrStartupDelay;

  void Show(const std::string& programVersionText);

 private:
  void ShowProgress();
  void Finish();

  forms::SplashForm& form_;
  std::function<void()> done_;
  int progress_ = 0;
};

}  // namespace tavlo::shell
