#pragma once

#include <QToolTip>
#include <string>

namespace tavlo::test {

/// What the tooltip that shows says, letter for letter: the places where a long word may be broken
/// are no letters.
inline std::string TooltipLetters() {
  return QToolTip::text().remove(QChar(u'\u200B')).toStdString();
}

}  // namespace tavlo::test
