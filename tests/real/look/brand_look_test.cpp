#include <gtest/gtest.h>

#include <QAccessible>
#include <QDir>
#include <QHelpEvent>
#include <QImage>
#include <QLabel>
#include <QSet>
#include <QTemporaryDir>
#include <QToolTip>
#include <QWidget>
#include <algorithm>
#include <cstdint>
#include <map>
#include <string>

#include "platform/qt/colours.h"
#include "platform/qt/icons.h"
#include "platform/qt/theme.h"
#include "support/face.h"
#include "support/shown_windows.h"

namespace tavlo::test {
namespace {

using platform::qt::Brand;
using platform::qt::Contrast;
using platform::qt::Luminance;
namespace theme = platform::qt::theme;

constexpr double kLettersNeed = 4.5;
constexpr int kAlone = -1;  ///< No brand.

QColor BrightestOf(const QImage& picture) {
  QSet<QRgb> colours;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, y));
  }
  QColor brightest = Qt::black;
  double most = 0;
  for (const QRgb colour : colours) {
    const double light = Luminance(QColor(colour));
    if (light <= most) continue;
    most = light;
    brightest = QColor(colour);
  }
  return brightest;
}

/// The same grain every time, in blocks of so many pixels, black and white and all colours.
QImage Noise(int block) {
  QImage noise(1920, 480, QImage::Format_RGB32);
  std::uint32_t state = 12345;
  for (int y = 0; y < noise.height() / block; ++y) {
    for (int x = 0; x < noise.width() / block; ++x) {
      state = state * 1664525U + 1013904223U;
      const QRgb colour = state >> 31 ? 0xFFFFFFFFU : 0xFF000000U | state >> 7;
      for (int row = 0; row < block; ++row) {
        for (int column = 0; column < block; ++column) {
          noise.setPixel(x * block + column, y * block + row, colour);
        }
      }
    }
  }
  return noise;
}

/// The real deck with a brand, at the scale that the process was started with.
struct BrandLook : testing::Test {
  void SetUp() override { shown.ShowMain(); }

  void Show(int brand) {
    shown.main.picBriselBitMap.Visible = brand == static_cast<int>(Brand::Brisel);
    shown.main.lblBriselName.Visible = brand == static_cast<int>(Brand::Brisel);
    shown.main.picSorelLogo.Visible = brand == static_cast<int>(Brand::Sorel);
    shown.typist.Rest();
  }
  void OwnLine(const std::string& line) {
    shown.main.lblCustomDisplay.Value = line;
    shown.main.lblCustomDisplay.Visible = true;
    shown.typist.Rest();
  }
  void Face(const QString& file) {
    for (forms::Pane* const half : {&shown.main.imageFaciaA, &shown.main.imageFaciaB}) {
      half->Picture = file.toStdString();
      half->MarkChanged();
    }
    shown.typist.Rest();
    EXPECT_TRUE(shown.typist.Until([] { return !FaceIsOnItsWay(); }));
  }
  void Face(const QImage& picture) {
    const QString file = folder.filePath("face.png");
    ASSERT_TRUE(picture.save(file));
    Face(file);
  }
  QWidget* Deck() const { return shown.typist.Widget("framePlayer"); }
  QWidget* LogoOf(Brand brand) const {
    return shown.typist.Widget(brand == Brand::Brisel ? "picBriselBitMap" : "picSorelLogo");
  }
  QImage FaceNow() const {
    return shown.typist.Widget("imageFaciaA")->parentWidget()->grab().toImage();
  }
  QRect PlaceOf(const QString& name) const {
    const QWidget* const widget = shown.typist.Widget(name);
    return {widget->mapTo(Deck(), QPoint(0, 0)), widget->size()};
  }

  /// The least light of what the logo is painted with, softened edges left out.
  static QColor Faintest(const QImage& drawing) {
    QColor faintest = Qt::white;
    for (int y = 0; y < drawing.height(); ++y) {
      for (int x = 0; x < drawing.width(); ++x) {
        const QColor colour = drawing.pixelColor(x, y);
        if (colour.alpha() == 255 && Luminance(colour) < Luminance(faintest)) faintest = colour;
      }
    }
    return faintest;
  }
  QImage DrawingOf(Brand brand) const {
    const QWidget* const logo = LogoOf(brand);
    return platform::qt::BrandPixmap(brand, logo->height(), logo->devicePixelRatioF())
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
  }
  void ExpectLegible(const std::string& on) {
    const QColor ground = BrightestOf(FaceNow());
    for (const Brand brand : {Brand::Brisel, Brand::Sorel}) {
      Show(static_cast<int>(brand));
      EXPECT_GE(Contrast(Faintest(DrawingOf(brand)), ground), kLettersNeed) << on;
    }
    EXPECT_GE(Contrast(theme::kText, ground), kLettersNeed) << on;
  }

  QTemporaryDir folder;
  ShownWindows shown;
};

TEST_F(BrandLook, StandsOutFromEachPixelOfEachFaceThatShips) {
  const QDir faces(TAVLO_FASCIA);
  for (const QString& name : faces.entryList(QDir::Files, QDir::Name)) {
    Face(faces.filePath(name));
    ExpectLegible(name.toStdString());
    for (const Brand brand : {Brand::Brisel, Brand::Sorel}) {
      Show(static_cast<int>(brand));
      const std::string shot = brand == Brand::Brisel ? "brisel-" : "sorel-";
      shown.typist.Picture("brand-" + shot + name.toStdString());
    }
  }
}

TEST_F(BrandLook, StandsOutFromAWhitePictureAndFromANoisyOneOfOnesOwn) {
  QImage white(400, 100, QImage::Format_RGB32);
  white.fill(Qt::white);
  Face(white);
  ExpectLegible("white");
  Face(Noise(32));
  ExpectLegible("noise");
}

TEST_F(BrandLook, IsDrawnInTheScreensOwnPixels) {
  QImage dark(400, 100, QImage::Format_RGB32);
  dark.fill(QColor(0x20, 0x10, 0x30));
  Face(dark);
  for (const Brand brand : {Brand::Brisel, Brand::Sorel}) {
    Show(static_cast<int>(brand));
    const QImage seen = LogoOf(brand)->grab().toImage();
    const QImage drawn = DrawingOf(brand);
    ASSERT_EQ(seen.size(), drawn.size());
    int whole = 0;
    int met = 0;
    for (int y = 0; y < drawn.height(); ++y) {
      for (int x = 0; x < drawn.width(); ++x) {
        if (drawn.pixelColor(x, y).alpha() != 255) continue;
        ++whole;
        met += drawn.pixelColor(x, y).rgb() == seen.pixelColor(x, y).rgb();
      }
    }
    EXPECT_GT(whole, drawn.width() * drawn.height() / 10);
    EXPECT_EQ(met, whole);
  }
}

TEST_F(BrandLook, LeavesDisplayStatusLineAndPositionWhereTheyAre) {
  OwnLine("Tavlo Deck        ...the steady hand!");
  shown.main.lblFilePositionHMS.Visible = true;
  shown.main.StatusBar1.Panels =
      std::vector<std::string>{"Pri", "1234", "Brown", "2", "17", "cardio", "03/09/2004"};
  for (const bool lists : {true, false}) {
    shown.main.frameFiles.Visible = lists;
    Show(kAlone);
    std::map<QString, QRect> places;
    const QString names[] = {"lblFilePositionHMS", "lblFileLengthHMS", "MeterLeft", "MeterRight",
                             "slPosition",         "cmdPlay",          "cmdEQ",     "StatusBar1"};
    for (const QString& name : names) places[name] = PlaceOf(name);
    const int height = Deck()->height();
    for (const Brand brand : {Brand::Brisel, Brand::Sorel}) {
      Show(static_cast<int>(brand));
      for (const QString& name : names) {
        EXPECT_EQ(PlaceOf(name), places[name]) << name.toStdString();
      }
      EXPECT_EQ(Deck()->height(), height);
    }
  }
}

TEST_F(BrandLook, LongLineOfOnesOwnGivesWayToTheLogoAndStandsWholeInItsTooltip) {
  const QString words = "The transcription pool of the third floor, " + QString(120, 'W');
  OwnLine(words.toStdString());
  for (const bool lists : {true, false}) {
    shown.main.frameFiles.Visible = lists;
    for (const Brand brand : {Brand::Brisel, Brand::Sorel}) {
      Show(static_cast<int>(brand));
      auto* const line = qobject_cast<QLabel*>(shown.typist.Widget("lblCustomDisplay"));
      ASSERT_NE(line, nullptr);
      EXPECT_LT(line->width(), line->fontMetrics().horizontalAdvance(words));
      EXPECT_GT(line->width(), 60);
      const QString logo = LogoOf(brand)->objectName();
      EXPECT_EQ(LogoOf(brand)->size(), platform::qt::BrandSize(brand, LogoOf(brand)->height()));
      EXPECT_TRUE(Deck()->rect().contains(PlaceOf(logo)));
      EXPECT_FALSE(PlaceOf(logo).intersects(PlaceOf("lblCustomDisplay")));
      EXPECT_FALSE(PlaceOf(logo).intersects(PlaceOf("MeterLeft")));
      QHelpEvent question(QEvent::ToolTip, line->rect().center(),
                          line->mapToGlobal(line->rect().center()));
      QApplication::sendEvent(line, &question);
      EXPECT_TRUE(QToolTip::text().contains(words)) << QToolTip::text().toStdString();
      QToolTip::hideText();
    }
  }
}

TEST_F(BrandLook, NameBesideTheMarkIsNeverCut) {
  OwnLine(std::string(200, 'W'));
  Show(static_cast<int>(Brand::Brisel));
  const auto* const name = qobject_cast<QLabel*>(shown.typist.Widget("lblBriselName"));
  ASSERT_NE(name, nullptr);
  EXPECT_EQ(name->text(), "Brisel");
  EXPECT_GE(name->width(), name->fontMetrics().horizontalAdvance(name->text()));
}

TEST_F(BrandLook, LineOfOnesOwnIsShownLetterForLetter) {
  OwnLine("<b>Ward</b> 7");
  const auto* const line = qobject_cast<QLabel*>(shown.typist.Widget("lblCustomDisplay"));
  ASSERT_NE(line, nullptr);
  EXPECT_EQ(line->textFormat(), Qt::PlainText);
  EXPECT_GE(line->width(), line->fontMetrics().horizontalAdvance("<b>Ward</b> 7"));
}

TEST_F(BrandLook, LogoTellsItsNameToPointerAndScreenReader) {
  const std::pair<Brand, QString> logos[] = {{Brand::Brisel, "Brisel"}, {Brand::Sorel, "SorelTek"}};
  for (const auto& [brand, name] : logos) {
    Show(static_cast<int>(brand));
    QWidget* const logo = LogoOf(brand);
    EXPECT_EQ(logo->toolTip(), name);
    const QAccessibleInterface* const heard = QAccessible::queryAccessibleInterface(logo);
    ASSERT_NE(heard, nullptr);
    EXPECT_EQ(heard->text(QAccessible::Name), name);
    EXPECT_EQ(heard->role(), QAccessible::Graphic);
  }
}

}  // namespace
}  // namespace tavlo::test
