#pragma once

#include "base/message_box.h"

class QDialog;
class QWidget;

namespace tavlo::platform::qt {

class OthersKeyboard;

/// The message boxes of a program. One that comes while another is open stands in front of that
/// one and is answered first. Lives on the toolkit's thread.
class MessageDialogs {
 public:
  /// Shows the box in front of the open one, else of `owner` (which may be nothing), and turns the
  /// event loop until it is answered. Escape and the close button answer Ok or No. Where somebody
  /// types elsewhere (`typing`, null where nobody does) the keyboard stays there: see QuietBox.
  base::Reply Run(const base::MessageBox& box, QWidget* owner, OthersKeyboard* typing);

 private:
  QDialog* foremost_ = nullptr;
};

}  // namespace tavlo::platform::qt
