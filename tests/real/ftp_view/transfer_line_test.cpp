#include <QLabel>

#include "ftp_view/shown_ftp.h"
#include "platform/qt/thin_bar.h"

namespace tavlo::test {
namespace {

struct TransferLine : ShownFtp {
  const platform::qt::ThinBar& Bar() const {
    for (const QWidget* const widget : QApplication::allWidgets()) {
      if (const auto* const bar = dynamic_cast<const platform::qt::ThinBar*>(widget)) return *bar;
    }
    std::abort();
  }
  QString Speed() const {
    for (const QWidget* const widget : QApplication::allWidgets()) {
      const auto* const label = qobject_cast<const QLabel*>(widget);
      if (label && label->accessibleName() == "Speed") return label->text();
    }
    return "no speed";
  }
  QString Figures() const {
    return qobject_cast<const QLabel*>(shown.typist.Widget("eByteCount"))->text();
  }
  void Download(const std::string& count) {
    states.Listed(FtpStates::UsualNames());
    states.Chosen(3);
    states.Downloading(count);
    shown.typist.Rest();
  }
};

TEST_F(TransferLine, FillsItsBarByThePercentThatTheFiguresSay) {
  Download(" 1204224 bytes  52%");
  EXPECT_EQ(Figures(), "1204224 bytes  52%");
  EXPECT_TRUE(Bar().isVisible());
  EXPECT_EQ(Bar().value(), 52);
  EXPECT_EQ(Bar().accessibleName(), "Progress of the file");
}

TEST_F(TransferLine, HasNoBarWhereTheLengthIsNotKnown) {
  Download(" 1204224 bytes");
  EXPECT_EQ(Figures(), "1204224 bytes");
  EXPECT_FALSE(Bar().isVisible());
}

TEST_F(TransferLine, ItsBarTakesItsPlaceWithoutMovingAnything) {
  const QWidget* const message = shown.typist.Widget("eMessage");
  const QPoint before = message->mapToGlobal(QPoint(0, 0));
  Download(" 1204224 bytes  52%");
  EXPECT_EQ(message->mapToGlobal(QPoint(0, 0)), before);
}

TEST_F(TransferLine, SaysHowFastTheBytesComeAndThatTheyCeaseToCome) {
  Download("0");
  EXPECT_EQ(Speed(), "");
  int megabytes = 0;
  EXPECT_TRUE(shown.typist.Until([&] {
    shown.main.eByteCount.Value = " " + std::to_string(++megabytes) + "000000 bytes";
    return Speed().endsWith(" MB a second");
  })) << Speed().toStdString();
  EXPECT_TRUE(shown.typist.Until([&] { return Speed() == "waiting for the server"; }));
}

TEST_F(TransferLine, SaysNoSpeedOnceTheConnectionIsLost) {
  Download("0");
  int megabytes = 0;
  ASSERT_TRUE(shown.typist.Until([&] {
    shown.main.eByteCount.Value = " " + std::to_string(++megabytes) + "000000 bytes  10%";
    return !Speed().isEmpty();
  }));
  states.ConnectionLost();
  shown.typist.Rest();
  EXPECT_EQ(Speed(), "");
  EXPECT_FALSE(Bar().isEnabled());
}

}  // namespace
}  // namespace tavlo::test
