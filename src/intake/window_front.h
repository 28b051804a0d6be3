#pragma once

#include <string>

#include "intake/passes_front.h"
#include "window/main_window.h"

namespace tavlo::intake {

/// The passes' front on the main window: what they say stands in its quiet line.
class WindowFront : public PassesFront {
 public:
  explicit WindowFront(window::MainWindow& window) : window_(window) {}

  void ShowFtpSort(bool shows) override;
  std::string FtpParseImportDirPointer() const override;
  std::string WavImportSubdirectory() const override;
  void Say(const std::string& text) override { window_.Say(text); }
  void SayHowFar(const std::string& text) override { window_.SayHowFar(text); }

 private:
  window::MainWindow& window_;
};

}  // namespace tavlo::intake
