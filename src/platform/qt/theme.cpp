#include "platform/qt/theme.h"

#include <QApplication>
#include <QFontDatabase>

namespace tavlo::platform::qt {

QFont DeckFont(int pixelSize, QFont::Weight weight) {
  QFont font = QApplication::font();
  font.setFamilies({"Inter", font.family()});
  font.setPixelSize(pixelSize);
  font.setWeight(weight);
  return font;
}

QFont FiguresFont(int pixelSize) {
  QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  font.setFamilies({"DejaVu Sans Mono", font.family()});
  font.setPixelSize(pixelSize);
  return font;
}

}  // namespace tavlo::platform::qt
