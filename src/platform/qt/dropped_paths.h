#pragma once

#include <string>
#include <vector>

class QMimeData;

namespace tavlo::platform::qt {

/// The full paths of the files of this computer that are dragged, letter for letter as the desktop
/// names them: a name need not be text. Empty when there are none.
std::vector<std::string> DroppedPaths(const QMimeData& data);

}  // namespace tavlo::platform::qt
