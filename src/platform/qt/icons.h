#pragma once

#include <QIcon>
#include <QPainterPath>
#include <QSizeF>

namespace tavlo::platform::qt {

/// What the keys of the deck show. Each is drawn in a box of one by one.
enum class Glyph { None, SkipBegin, Rewind, Play, Stop, Forward, SkipEnd };

/// The glyph's outline in a box of `size` by `size` at the origin.
QPainterPath GlyphPath(Glyph glyph, double size);

/// Draws the program's sign (a deck with its play key) into `box`.
void PaintSign(QPainter& painter, const QRectF& box);

/// The program's sign in the sizes that desktops ask for.
QIcon ApplicationIcon();

}  // namespace tavlo::platform::qt
