#pragma once

#include <string>

namespace tavlo::lists {

/// Tells somebody who looks at other windows something, in a corner of the desktop. Both calls
/// return at once, whatever becomes of the notification: a desktop may show none, or show it late.
/// On the loop's thread.
class DesktopNotifier {
 public:
  virtual ~DesktopNotifier() = default;

  /// Shows a notification in the place of the one before. `title` and `text` are UTF-8 without
  /// markup; line breaks are line feeds.
  virtual void Notify(const std::string& title, const std::string& text) = 0;
  /// Takes the last notification away; one that does not show yet never will. Nothing when there is
  /// none.
  virtual void Withdraw() = 0;
};

}  // namespace tavlo::lists
