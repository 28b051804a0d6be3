#pragma once

#include <string>

namespace tavlo::platform::desktop {

/// While a program starts the desktop shows that it does, until a window of it shows. The toolkit
/// says so when one does; a start that shows none has to say it by itself, or the desktop goes on
/// for many seconds.
class StartupFeedback {
 public:
  /// To be made before the QApplication, which takes the desktop's word for itself.
  StartupFeedback();

  /// This start is over. Without effect where the desktop has no word for it, or is none of X. On
  /// the toolkit's thread.
  void End() const;

 private:
  const std::string id_;
};

}  // namespace tavlo::platform::desktop
