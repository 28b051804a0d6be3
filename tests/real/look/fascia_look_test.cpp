#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QSet>
#include <QTemporaryDir>
#include <QWidget>
#include <fstream>
#include <string>

#include "platform/qt/colours.h"
#include "platform/qt/theme.h"
#include "support/face.h"
#include "support/shown_windows.h"
#include "support/unread_pipe.h"

namespace tavlo::test {
namespace {

using platform::qt::Contrast;
namespace theme = platform::qt::theme;

/// The colour on which the deck's quietest lettering is hardest to read.
QColor WorstGround(const QImage& picture) {
  QSet<QRgb> colours;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, y));
  }
  QColor worst = Qt::black;
  for (const QRgb colour : colours) {
    const bool worse =
        Contrast(theme::kQuietText, QColor(colour)) < Contrast(theme::kQuietText, worst);
    if (worse) worst = QColor(colour);
  }
  return worst;
}

const QColor kDark(0x20, 0x10, 0x30);

/// The deck with a picture of one colour as its face.
struct FasciaLook : testing::Test {
  void SetUp() override { shown.ShowMain(); }

  void Paint(const QColor& colour, const QString& name = "face.png") {
    QImage picture(400, 100, QImage::Format_RGB32);
    picture.fill(colour);
    ASSERT_TRUE(picture.save(folder.filePath(name)));
  }
  void Load(const QString& name = "face.png") {
    for (forms::Pane* const half : {&shown.main.imageFaciaA, &shown.main.imageFaciaB}) {
      half->Picture = folder.filePath(name).toStdString();
      half->MarkChanged();
    }
    shown.typist.Rest();
    EXPECT_TRUE(shown.typist.Until([] { return !FaceIsOnItsWay(); }));
  }
  QImage Face() const {
    return shown.typist.Widget("imageFaciaA")->parentWidget()->grab().toImage();
  }

  QTemporaryDir folder;
  ShownWindows shown;
};

TEST(FasciaPictures, ShipAtLeastSixOnWhichTheQuietestLetteringIsReadable) {
  const QDir folder(TAVLO_FASCIA);
  const QStringList names = folder.entryList(QDir::Files, QDir::Name);
  EXPECT_GE(names.size(), 6);
  for (const QString& name : names) {
    const QImage picture(folder.filePath(name));
    ASSERT_FALSE(picture.isNull()) << name.toStdString();
    EXPECT_GE(picture.width(), 1840) << name.toStdString();
    EXPECT_GE(Contrast(theme::kQuietText, WorstGround(picture)), 4.5) << name.toStdString();
  }
}

TEST_F(FasciaLook, DarkPictureIsShownAsItIs) {
  Paint(QColor(0x20, 0x10, 0x30));
  Load();
  EXPECT_EQ(Face().pixelColor(5, 5), QColor(0x20, 0x10, 0x30));
}

TEST_F(FasciaLook, BrightPictureIsDarkenedUntilTheLetteringIsReadable) {
  Paint(Qt::white);
  Load();
  const double contrast = Contrast(theme::kQuietText, WorstGround(Face()));
  EXPECT_GE(contrast, 4.5);
  EXPECT_LT(contrast, 6) << "darker than it need be";
}

TEST_F(FasciaLook, FileThatIsNoPictureLeavesTheFaceAsItIs) {
  Paint(QColor(0x20, 0x10, 0x30));
  Load();
  QFile rubbish(folder.filePath("rubbish.png"));
  ASSERT_TRUE(rubbish.open(QIODevice::WriteOnly));
  rubbish.write("no picture");
  rubbish.close();
  Load("rubbish.png");
  EXPECT_EQ(Face().pixelColor(5, 5), QColor(0x20, 0x10, 0x30));
}

TEST_F(FasciaLook, PipeInThePlaceOfThePictureLeavesTheFaceAsItIsAndIsNotWaitedFor) {
  Paint(kDark);
  Load();
  const UnreadPipe pipe(folder.filePath("face.png").toStdString());
  Load();
  EXPECT_FALSE(pipe.HeldSomebody());
  EXPECT_EQ(Face().pixelColor(5, 5), kDark);
}

TEST_F(FasciaLook, PipeThatADrawingNamesIsNotWaitedFor) {
  Paint(kDark);
  Load();
  const std::string inside = folder.filePath("inside.png").toStdString();
  const UnreadPipe pipe(inside);
  std::ofstream(folder.filePath("drawing.svg").toStdString())
      << R"(<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink")"
      << R"( width="400" height="100"><image width="9" height="9" xlink:href=")" << inside
      << R"("/></svg>)";
  Load("drawing.svg");
  EXPECT_FALSE(pipe.HeldSomebody());
  EXPECT_EQ(Face().pixelColor(5, 5), kDark);
}

TEST_F(FasciaLook, EndlessOrHugeFileLeavesTheFaceAsItIs) {
  Paint(kDark);
  Load();
  ASSERT_TRUE(QFile::link("/dev/zero", folder.filePath("endless.png")));
  Load("endless.png");
  EXPECT_EQ(Face().pixelColor(5, 5), kDark);
  Paint(QColor(0x10, 0x30, 0x20), "huge.png");
  ASSERT_TRUE(QFile::resize(folder.filePath("huge.png"), qint64{1} << 32));
  Load("huge.png");
  EXPECT_EQ(Face().pixelColor(5, 5), kDark);
}

TEST_F(FasciaLook, LinkToAPictureIsFollowed) {
  Paint(kDark, "dark.png");
  ASSERT_TRUE(QFile::link(folder.filePath("dark.png"), folder.filePath("face.png")));
  Load();
  EXPECT_EQ(Face().pixelColor(5, 5), kDark);
}

TEST_F(FasciaLook, PictureThatWasPaintedOverAppearsAtTheNextLoad) {
  Paint(QColor(0x20, 0x10, 0x30));
  Load();
  Paint(QColor(0x10, 0x30, 0x20));
  Load();
  EXPECT_EQ(Face().pixelColor(5, 5), QColor(0x10, 0x30, 0x20));
}

TEST_F(FasciaLook, LastOfManyPicturesThatAreAskedForInOneGoIsShown) {
  const QColor last(0x10, 0x30, 0x20);
  for (int number = 0; number < 20; ++number) Paint(kDark, QString::number(number) + ".png");
  Paint(last, "last.png");
  for (int number = 0; number < 20; ++number) {
    shown.main.imageFaciaA.Picture =
        folder.filePath(QString::number(number) + ".png").toStdString();
    shown.loop.Yield();
  }
  Load("last.png");
  EXPECT_EQ(Face().pixelColor(5, 5), last);
}

TEST_F(FasciaLook, ClickBesideTheKeysReachesTheHalfUnderIt) {
  std::string clicks;
  shown.main.imageFaciaA.OnClick = [&] { clicks += "left "; };
  shown.main.imageFaciaB.OnClick = [&] { clicks += "right "; };
  const QWidget& left = *shown.typist.Widget("imageFaciaA");
  const QWidget& right = *shown.typist.Widget("imageFaciaB");
  shown.typist.ClickAt(left.mapToGlobal(QPoint(6, 6)));
  shown.typist.ClickAt(right.mapToGlobal(QPoint(right.width() - 6, 6)));
  EXPECT_EQ(clicks, "left right ");
}

}  // namespace
}  // namespace tavlo::test
