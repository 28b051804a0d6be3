#include <gtest/gtest.h>

#include <QImage>
#include <QPushButton>
#include <QWidget>
#include <map>
#include <string>
#include <utility>

#include "platform/qt/deck_slider.h"
#include "platform/qt/icons.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

using platform::qt::Glyph;

/// Pixels of the pixmap that have anything on them.
int Inked(const QPixmap& pixmap) {
  const QImage image = pixmap.toImage();
  int inked = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) inked += qAlpha(image.pixel(x, y)) > 128;
  }
  return inked;
}

TEST(Icons, EveryGlyphIsDrawnInTheInkThatIsAskedFor) {
  for (const Glyph glyph : {Glyph::SkipBegin, Glyph::Rewind, Glyph::Play, Glyph::Stop,
                            Glyph::Forward, Glyph::SkipEnd}) {
    const QPixmap pixmap = platform::qt::GlyphPixmap(glyph, 32, Qt::red, 1);
    EXPECT_GT(Inked(pixmap), 32 * 32 / 6) << static_cast<int>(glyph);
    const QImage image = pixmap.toImage();
    for (int x = 0; x < image.width(); ++x) {
      const QColor colour = image.pixelColor(x, 16);
      if (colour.alpha() < 255) continue;
      EXPECT_EQ(colour, QColor(Qt::red)) << static_cast<int>(glyph);
    }
  }
}

TEST(Icons, EveryKindOfMessageBoxHasASignOfItsOwn) {
  std::map<std::string, base::Icon> signs;
  for (const base::Icon icon :
       {base::Icon::Information, base::Icon::Question, base::Icon::Warning, base::Icon::Critical}) {
    const QImage image = platform::qt::BoxSign(icon, 48, 2).toImage();
    EXPECT_EQ(image.size(), QSize(96, 96));
    const std::string bytes(reinterpret_cast<const char*>(image.constBits()),
                            static_cast<std::size_t>(image.sizeInBytes()));
    EXPECT_TRUE(signs.emplace(bytes, icon).second) << static_cast<int>(icon);
    EXPECT_GT(Inked(QPixmap::fromImage(image)), 96 * 96 / 3) << static_cast<int>(icon);
  }
}

TEST(Icons, ProgramsOwnIconIsThereInEverySizeThatDesktopsAskFor) {
  const QIcon icon = platform::qt::ApplicationIcon();
  for (const int size : {16, 24, 32, 48, 64, 128}) {
    EXPECT_GT(Inked(icon.pixmap(size, size)), size * size / 2) << size;
  }
}

TEST(DeckSliders, OneThatRunsBothWaysIsLitFromItsNoughtToItsHandle) {
  using platform::qt::DeckSlider;
  DeckSlider slider(DeckSlider::Look::Level);
  slider.resize(200, 24);
  slider.setRange(0, 100);
  slider.SetNought(50);
  const auto groove = [&](int value) {
    slider.setValue(value);
    const QImage image = slider.grab().toImage();
    const auto at = [&](int x) { return image.pixelColor(x, image.height() / 2); };
    return std::pair(at(60), at(140));
  };
  const auto [left, right] = groove(50);
  EXPECT_EQ(left, right) << "dark on both sides";
  EXPECT_EQ(groove(90).first, left);
  EXPECT_NE(groove(90).second, right);
  EXPECT_NE(groove(10).first, left);
  EXPECT_EQ(groove(10).second, right);
}

TEST(DeckKeys, EachStateOfAKeyLooksDifferent) {
  ShownWindows shown;
  shown.ShowMain();
  auto* const key = qobject_cast<QPushButton*>(shown.typist.Widget("cmdRewind"));
  ASSERT_NE(key, nullptr);
  std::map<std::string, QImage> looks;
  looks["idle"] = key->grab().toImage();
  shown.typist.MoveTo(shown.typist.Middle("cmdRewind"));
  shown.typist.Rest();
  looks["hovered"] = key->grab().toImage();
  shown.typist.PressAt(shown.typist.Middle("cmdRewind"));
  shown.typist.Rest();
  looks["pressed"] = key->grab().toImage();
  shown.typist.Release();
  shown.typist.MoveTo(shown.typist.Middle("lblFileLengthHMS"));
  key->setFocus(Qt::TabFocusReason);
  shown.typist.Rest();
  looks["focused"] = key->grab().toImage();
  shown.main.cmdRewind.Enabled = false;
  shown.typist.Rest();
  looks["disabled"] = key->grab().toImage();
  for (const auto& [state, look] : looks) {
    for (const auto& [other, otherLook] : looks) {
      if (state >= other) continue;
      EXPECT_NE(look, otherLook) << state << " and " << other;
    }
  }
}

}  // namespace
}  // namespace tavlo::test
