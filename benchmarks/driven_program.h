#pragma once

#include <functional>
#include <memory>

#include "platform/desktop/program.h"

namespace tavlo::bench {

/// The real program, with somebody at its side who acts once it is ready for the typist.
class DrivenProgram {
 public:
  /// A serial port that is given takes the place of the machine's.
  DrivenProgram(int& argc, char** argv, std::unique_ptr<pedals::SerialPort> serialPort = nullptr);

  platform::desktop::Program program;
  /// Runs once, when the first refresh has ended.
  std::function<void()> OnReady;
  /// Ends the splash as a click on its icon does.
  void SkipSplash() { skipSplash_ = true; }
  /// Selects the first document and ends its preview, so that the next press plays it. Inside
  /// OnReady.
  void SelectFirstInSilence();

 private:
  void Look();

  base::Timer look_;
  bool skipSplash_ = false;
};

}  // namespace tavlo::bench
