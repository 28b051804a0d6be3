#include "shell/splash.h"

#include <utility>

namespace tavlo::shell {
namespace {

using base::operator""ms;

constexpr int kLastProgress = 10;

}  // namespace

Splash::Splash(base::Loop& loop, forms::SplashForm& form, std::function<void()> done)
    : tmrProgressBar(loop, "tmrProgressBar", 500ms),
      tmrStartupDelay(loop, "tmrStartupDelay", 5000ms),
      form_(form),
      done_(std::move(done)) {
  tmrProgressBar.OnTick = [this] { ShowProgress(); };
  tmrStartupDelay.OnTick = [this] { Finish(); };
  form_.picIcon.OnClick = [this] { Finish(); };
  // A close request stays without a handler: the splash does not close before its time.
  form_.frmInitSplash.OnPointerMove = [this] {
    form_.frmInitSplash.MousePointer = forms::Pointer::Hourglass;
  };
}

void Splash::Show(const std::string& programVersionText) {
  form_.lblVersion.Value = "Version:  " + programVersionText;
  form_.frmInitSplash.Centre();
  form_.frmInitSplash.MousePointer = forms::Pointer::Hourglass;
  form_.frmInitSplash.Visible = true;
  tmrProgressBar.Start();
  tmrStartupDelay.Start();
}

void Splash::ShowProgress() {
  tmrProgressBar.Stop();
  progress_ = progress_ < kLastProgress ? progress_ + 1 : 0;
  form_.ProgressBar1.Value = progress_;
  tmrProgressBar.Start();
}

void Splash::Finish() {
  form_.frmInitSplash.MousePointer = forms::Pointer::Arrow;
  tmrProgressBar.Stop();
  tmrStartupDelay.Stop();
  form_.frmInitSplash.Visible = false;
  done_();
}

}  // namespace tavlo::shell
