#pragma once

#include <QImage>
#include <QPoint>
#include <string>
#include <vector>

class QWidget;

namespace tavlo::test {

/// A picture of the screen and what part of it a window has.
struct Portrait {
  QImage picture;
  QPoint corner;     ///< Of the window's contents in the picture, in pixels.
  double scale = 1;  ///< Pixels in a logical pixel.
};

/// What a reader of that window would complain about, a sentence each: texts and marks that stand
/// out too little from what they are drawn on, measured in the picture; texts that are cut off with
/// no way to read the rest; controls that lie on each other, or outside of what they stand on; a
/// window that reaches over the edge of the screen. Disabled controls may be faint.
std::vector<std::string> FaultsOf(QWidget& window, const Portrait& portrait);

}  // namespace tavlo::test
