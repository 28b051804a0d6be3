#pragma once

#include <QIcon>
#include <QPixmap>
#include <QRectF>

#include "base/message_box.h"

class QPainter;

/// The drawings of assets/icons and assets/brands, rendered for the screen they are shown on. Sizes
/// are logical pixels; `ratio` is how many of the screen's own there are to one.
namespace tavlo::platform::qt {

/// What keys show, and the rows of files.
enum class Glyph {
  None,
  SkipBegin,
  Rewind,
  Play,
  Stop,
  Forward,
  SkipEnd,
  AllToTheRight,
  AllToTheLeft,
  File,
  Fetching
};

/// The glyph in one ink.
QPixmap GlyphPixmap(Glyph glyph, int size, const QColor& ink, double ratio);

/// The resellers whose logo the deck can bear.
enum class Brand { Brisel, Sorel };

/// The reseller's logo, as wide as its drawing asks for at that height.
QPixmap BrandPixmap(Brand brand, int height, double ratio);
/// The size of that pixmap in logical pixels.
QSize BrandSize(Brand brand, int height);

/// What a message box shows beside its text. base::Icon::None has no sign.
QPixmap BoxSign(base::Icon icon, int size, double ratio);

/// Draws the program's sign (a deck with its play key) into `box`.
void PaintSign(QPainter& painter, const QRectF& box);

/// The program's sign in the sizes that desktops ask for.
QIcon ApplicationIcon();

}  // namespace tavlo::platform::qt
