#pragma once

#include "base/message_box.h"

class QWidget;

namespace tavlo::platform::qt {

/// Shows the box in front of `owner` (which may be nothing) and turns the event loop until it is
/// answered. Escape and the close button answer Ok or No.
base::Reply RunMessageDialog(const base::MessageBox& box, QWidget* owner);

}  // namespace tavlo::platform::qt
