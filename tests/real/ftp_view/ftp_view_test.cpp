#include <QAbstractButton>
#include <QComboBox>
#include <QHelpEvent>
#include <QLabel>
#include <QToolTip>

#include "ftp_view/shown_ftp.h"
#include "look/desktop_letters.h"
#include "platform/qt/colours.h"
#include "platform/qt/icons.h"
#include "support/keys.h"
#include "support/tooltip.h"

namespace tavlo::test {
namespace {

using FtpView = ShownFtp;

constexpr const char* kOfTheFtpView[] = {"frameFtp",
                                         "comboFtpServerNames",
                                         "comboFtpFileTypesToList",
                                         "bList",
                                         "bConnect",
                                         "frameFtpFilename",
                                         "listFtpList",
                                         "cmdFtpListToDownload",
                                         "cmdFtpDownloadToList",
                                         "frameFtpDownloadList",
                                         "listFtpDownloadList",
                                         "frameFtpConnectionStatus",
                                         "eMessage",
                                         "eByteCount",
                                         "bDownload"};

QPalette DarkDesktop() {
  QPalette dark(QColor(0x35, 0x35, 0x35));
  dark.setColor(QPalette::Base, QColor(0x2A, 0x2A, 0x2A));
  return dark;
}

TEST_F(FtpView, HasAPlaceForEveryControlOfItsForm) {
  Listed();
  shown.typist.Picture("ftp_listed");
  for (const char* const name : kOfTheFtpView) {
    const QWidget* const widget = shown.typist.Widget(name);
    ASSERT_NE(widget, nullptr) << name;
    EXPECT_GE(widget->width(), widget->minimumSizeHint().width()) << name;
    EXPECT_GE(widget->height(), widget->minimumSizeHint().height()) << name;
    EXPECT_TRUE(IsWhole(name)) << name;
  }
}

TEST_F(FtpView, StaysWholeWithLettersOfTwiceTheSize) {
  const DesktopLetters letters(20);
  Listed();
  shown.typist.Picture("ftp_letters_200");
  for (const char* const name : kOfTheFtpView) EXPECT_TRUE(IsWhole(name)) << name;
}

TEST_F(FtpView, TabLeadsOverItInReadingOrder) {
  states.Listed(FtpStates::UsualNames());
  states.Chosen(3);
  shown.main.frmMain.FocusOn(shown.main.sldVol);
  shown.typist.Rest();
  std::string order;
  for (int press = 0; press < 9; ++press) {
    shown.typist.Keys({keys::kTab});
    order += QGuiApplication::focusObject()->objectName().toStdString() + " ";
  }
  EXPECT_EQ(order,
            "cmdEQ comboFtpFileTypesToList bList bConnect listFtpList cmdFtpListToDownload "
            "cmdFtpDownloadToList listFtpDownloadList bDownload ");
}

TEST_F(FtpView, ItsKeysHaveLettersOfTheirOwnAndHaltAnotherThanDownload) {
  std::string pressed;
  shown.main.bConnect.OnPress = [&] { pressed += "connect "; };
  shown.main.bList.OnPress = [&] { pressed += "list "; };
  shown.main.bDownload.OnPress = [&] { pressed += shown.main.bDownload.Caption.Get() + " "; };
  states.Listed(FtpStates::UsualNames());
  states.Chosen(3);
  shown.typist.Rest();
  const auto hasPressed = [&](const std::string& keys) {
    return shown.typist.Until([&] { return pressed.size() >= keys.size(); }) && pressed == keys;
  };
  shown.typist.Keys({keys::kAlt, 'o'});
  shown.typist.Keys({keys::kAlt, 'l'});
  shown.typist.Keys({keys::kAlt, 'd'});
  EXPECT_TRUE(hasPressed("connect list Download ")) << pressed;
  states.Downloading("0");
  shown.typist.Rest();
  shown.typist.Keys({keys::kAlt, 'd'});
  shown.typist.Keys({keys::kAlt, 'h'});
  EXPECT_TRUE(hasPressed("connect list Download Halt ")) << pressed;
}

TEST_F(FtpView, ItsMovingKeysMoveAllAndSayWhatTheyDo) {
  std::string pressed;
  shown.main.cmdFtpListToDownload.OnPress = [&] { pressed += "all "; };
  shown.main.cmdFtpDownloadToList.OnPress = [&] { pressed += "back "; };
  states.Listed(FtpStates::UsualNames());
  states.Chosen(3);
  shown.typist.Rest();
  shown.typist.Click("cmdFtpListToDownload");
  shown.typist.Click("cmdFtpDownloadToList");
  EXPECT_TRUE(shown.typist.Until([&] { return pressed == "all back "; })) << pressed;
  const QWidget* const key = shown.typist.Widget("cmdFtpListToDownload");
  EXPECT_EQ(key->accessibleName(), "Move all files to the download list");
  EXPECT_EQ(key->toolTip(), "Move all files to the download list");
}

TEST_F(FtpView, NothingMovesWhenCaptionsChangeAndPartsAreHidden) {
  Listed();
  std::map<std::string, QRect> places;
  const auto placeOf = [&](const std::string& name) {
    const QWidget* const widget = shown.typist.Widget(QString::fromStdString(name));
    return QRect(widget->mapToGlobal(QPoint(0, 0)), widget->size());
  };
  for (const char* const name : kOfTheFtpView) {
    if (std::string_view(name) != "eByteCount") places[name] = placeOf(name);
  }
  states.Chosen(2);
  states.Downloading(" 120 bytes  3%");
  shown.typist.Rest();
  for (const auto& [name, place] : places) EXPECT_EQ(placeOf(name), place) << name;
  states.Sorting();
  shown.typist.Rest();
  EXPECT_TRUE(shown.main.lblFtpParsing.Visible);
  for (const char* const name : {"comboFtpServerNames", "bConnect"}) {
    EXPECT_EQ(placeOf(name), places[name]) << name;
  }
  states.Idle();
  shown.typist.Rest();
  for (const auto& [name, place] : places) EXPECT_EQ(placeOf(name), place) << name;
}

TEST_F(FtpView, SaysThatFilesAreSortedWhereTheListsWere) {
  Listed();
  const QWidget* const left = shown.typist.Widget("frameFtpFilename");
  const QWidget* const right = shown.typist.Widget("frameFtpDownloadList");
  const QRect lists(left->mapToGlobal(QPoint(0, 0)),
                    right->mapToGlobal(QPoint(right->width(), right->height())));
  states.Sorting();
  shown.typist.Rest();
  const auto* const words = qobject_cast<QLabel*>(shown.typist.Widget("lblFtpParsing"));
  ASSERT_NE(words, nullptr);
  EXPECT_EQ(words->text(), "Processing files...");
  EXPECT_TRUE(lists.contains(QRect(words->mapToGlobal(QPoint(0, 0)), words->size())));
}

TEST_F(FtpView, AMessageThatDoesNotFitStandsLetterForLetterUnderThePointer) {
  const std::string words = "Downloading <b>" + std::string(300, 'x') + "</b>";
  shown.main.eMessage.Value = words;
  shown.main.eMessage.Tooltip = words;
  shown.typist.Rest();
  QWidget* const box = shown.typist.Widget("eMessage");
  QHelpEvent question(QEvent::ToolTip, QPoint(20, 8), box->mapToGlobal(QPoint(20, 8)));
  QApplication::sendEvent(box, &question);
  EXPECT_EQ(TooltipLetters(),
            "<qt>Downloading &lt;b&gt;" + std::string(300, 'x') + "&lt;/b&gt;</qt>");
  EXPECT_LT(box->width(), box->window()->width());
}

TEST_F(FtpView, ADoubleClickOnTheMessageIsTheControls) {
  int doubled = 0;
  shown.main.eMessage.OnDoubleClick = [&] { ++doubled; };
  shown.main.eMessage.Value = "No files found";
  shown.typist.Rest();
  shown.typist.ClickAt(shown.typist.Middle("eMessage"));
  EXPECT_EQ(doubled, 0);
  shown.typist.MoveTo(shown.typist.Middle("eMessage") + QPoint(40, 0));
  shown.typist.DoubleClickAt(shown.typist.Middle("eMessage") + QPoint(40, 0));
  EXPECT_TRUE(shown.typist.Until([&] { return doubled == 1; }));
}

TEST_F(FtpView, DisabledWordsCanBeReadOnALightDesktopAndOnADarkOne) {
  const QPalette desktop = QApplication::palette();
  for (const QPalette& palette : {desktop, DarkDesktop()}) {
    QApplication::setPalette(palette);
    shown.typist.Rest();
    for (const char* const name : {"bDownload", "comboFtpFileTypesToList", "listFtpList"}) {
      const QWidget* const widget = shown.typist.Widget(name);
      ASSERT_FALSE(widget->isEnabled()) << name;
      const QPalette& own = widget->palette();
      for (const auto& [ink, ground] : {std::pair(QPalette::ButtonText, QPalette::Button),
                                        std::pair(QPalette::WindowText, QPalette::Window),
                                        std::pair(QPalette::Text, QPalette::Base)}) {
        EXPECT_GE(platform::qt::Contrast(own.color(QPalette::Disabled, ink),
                                         own.color(QPalette::Disabled, ground)),
                  4.5)
            << name << " " << ink;
      }
      EXPECT_NE(own.color(QPalette::Disabled, QPalette::WindowText),
                own.color(QPalette::Active, QPalette::WindowText));
    }
  }
  QApplication::setPalette(desktop);
}

TEST_F(FtpView, AServersNameThatIsTooLongKeepsTheHeadingAndStandsWholeUnderThePointer) {
  QWidget* const box = shown.typist.Widget("comboFtpServerNames");
  const int width = box->width();
  shown.main.comboFtpServerNames.Clear();
  shown.main.comboFtpServerNames.Add(std::string(120, 'M'));
  shown.main.comboFtpServerNames.ListIndex = 0;
  shown.typist.Rest();
  EXPECT_EQ(box->width(), width);
  QHelpEvent question(QEvent::ToolTip, QPoint(20, 8), box->mapToGlobal(QPoint(20, 8)));
  QApplication::sendEvent(box, &question);
  EXPECT_EQ(TooltipLetters(), "<qt>Choose the server: " + std::string(120, 'M') + "</qt>");
}

TEST(FtpIcons, AreDrawnInTheInkThatIsAskedForAndDiffer) {
  using platform::qt::Glyph;
  std::vector<QImage> drawings;
  for (const Glyph glyph :
       {Glyph::AllToTheRight, Glyph::AllToTheLeft, Glyph::File, Glyph::Fetching}) {
    const QImage image = platform::qt::GlyphPixmap(glyph, 32, Qt::red, 1).toImage();
    int inked = 0;
    for (int y = 0; y < image.height(); ++y) {
      for (int x = 0; x < image.width(); ++x) {
        const QColor colour = image.pixelColor(x, y);
        inked += colour == QColor(Qt::red);
        EXPECT_TRUE(colour.alpha() < 255 || colour == QColor(Qt::red));
      }
    }
    EXPECT_GT(inked, 32 * 32 / 16) << static_cast<int>(glyph);
    for (const QImage& other : drawings) EXPECT_NE(image, other);
    drawings.push_back(image);
  }
}

}  // namespace
}  // namespace tavlo::test
