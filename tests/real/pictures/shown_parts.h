#pragma once

#include <QRect>
#include <QSize>
#include <QString>
#include <vector>

class QWidget;

namespace tavlo::test {

/// A text that a window shows. Places are logical pixels from the window's upper left corner.
struct ShownText {
  QString of;           ///< The control that it stands on.
  QString text;         ///< Whole, also where only its beginning shows.
  QRect place;          ///< The room that it has.
  QSize needs;          ///< The room that the whole of it takes.
  bool elided = false;  ///< It is drawn with an ellipsis in place of its end.
  bool enabled = true;
  bool large = false;         ///< At least 24 pixels high, or bold and at least 18.7.
  bool scrolls = false;       ///< A text that is longer than its box can be moved in it.
  QWidget* widget = nullptr;  ///< A pointer over `pointer` of it asks for the tooltip.
  QPoint pointer;
};

/// Something that is drawn and has no letters, and that one must see to use: a key's glyph, the
/// handle of a slider, the edge of a box that is to be ticked.
struct ShownMark {
  QString of;
  QRect place;
};

/// A control's whole rectangle.
struct ShownControl {
  QString of;
  QWidget* widget;
  QRect place;
};

struct ShownParts {
  std::vector<ShownText> texts;
  std::vector<ShownMark> marks;
  std::vector<ShownControl> controls;
};

/// All that is visible of a window, found by what kind of widget it is.
ShownParts PartsOf(QWidget& window);

}  // namespace tavlo::test
