#pragma once

class QWidget;

namespace tavlo::platform::qt {

/// Has disabled letters on a ground, and on all that stands on it, be fainter than the others and
/// readable all the same, whatever the desktop's colours are or become. For a view whose disabled
/// controls still tell something.
void KeepDisabledReadable(QWidget& ground);

}  // namespace tavlo::platform::qt
