#include "faults.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>
#include <QPainter>
#include <QStandardItemModel>
#include <QTableView>
#include <algorithm>
#include <optional>
#include <string_view>

#include "contrast.h"
#include "platform/qt/eliding_label.h"

namespace tavlo::test {
namespace {

constexpr int kHeadingPadding = 14;  ///< Both sides of a heading's title together.

/// A window that no display shows, painted into a picture and judged by it.
class JudgedWindow : public testing::Test {
 protected:
  JudgedWindow() {
    window_.emplace();
    window_->resize(300, 120);
    QPalette colours = window_->palette();
    colours.setColor(QPalette::Window, Qt::white);
    colours.setColor(QPalette::WindowText, Qt::black);
    window_->setPalette(colours);
  }

  QLabel& Label(const QString& text, const QRect& place, const QColor& colour = Qt::black) {
    auto* const label = new QLabel(text, &*window_);
    QPalette colours = label->palette();
    colours.setColor(QPalette::WindowText, colour);
    label->setPalette(colours);
    label->setObjectName(text);
    label->setGeometry(place);
    return *label;
  }

  QTableView& Table(QAbstractItemModel& model) {
    auto* const table = new QTableView(&*window_);
    table->setModel(&model);
    table->setGeometry(window_->rect());
    return *table;
  }

  std::vector<std::string> Faults() {
    window_->show();
    QImage picture(window_->size(), QImage::Format_RGB32);
    window_->render(&picture);
    return FaultsOf(*window_, {picture, QPoint(0, 0), 1});
  }

  bool Complains(std::string_view words) {
    const std::vector<std::string> faults = Faults();
    return std::any_of(faults.begin(), faults.end(), [words](const std::string& fault) {
      return fault.find(words) != std::string::npos;
    });
  }

 private:
  int count_ = 3;
  char name_[9] = "pictures";
  char option_[10] = "-platform";
  char platform_[10] = "offscreen";
  char* arguments_[3] = {name_, option_, platform_};
  QApplication application_{count_, arguments_};

 protected:
  std::optional<QWidget> window_;
  ~JudgedWindow() override { window_.reset(); }
};

constexpr QRect kRoomy{10, 10, 260, 30};

TEST_F(JudgedWindow, HasNoFaultWithABlackTextOnWhite) {
  Label("The steady hand", kRoomy);
  EXPECT_EQ(Faults(), std::vector<std::string>());
}

TEST_F(JudgedWindow, IsFaultedForATextThatIsTooPale) {
  Label("The steady hand", kRoomy, QColor(0x8A, 0x8A, 0x8A));
  EXPECT_TRUE(Complains("\"The steady hand\" has a contrast of 3.4"));
}

TEST_F(JudgedWindow, MayShowALargeTextPaler) {
  QLabel& label = Label("Hand", {10, 10, 260, 60}, QColor(0x8A, 0x8A, 0x8A));
  QFont large = label.font();
  large.setPixelSize(30);
  label.setFont(large);
  EXPECT_EQ(Faults(), std::vector<std::string>());
}

TEST_F(JudgedWindow, MayShowADisabledTextPale) {
  Label("The steady hand", kRoomy, QColor(0xC0, 0xC0, 0xC0)).setEnabled(false);
  EXPECT_EQ(Faults(), std::vector<std::string>());
}

TEST_F(JudgedWindow, IsFaultedForATextThatDoesNotShowAtAll) {
  Label("The steady hand", kRoomy, Qt::white);
  EXPECT_TRUE(Complains("has a contrast of 1.00"));
}

TEST_F(JudgedWindow, IsFaultedForABoxWhoseEdgeCannotBeSeen) {
  auto* const box = new QCheckBox(&*window_);
  QPalette colours = box->palette();
  for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
    colours.setColor(role, Qt::white);
  }
  box->setStyleSheet("QCheckBox::indicator { width: 16px; height: 16px; background: #f4f4f4; }");
  box->setPalette(colours);
  box->setObjectName("chkPale");
  box->setGeometry(kRoomy);
  EXPECT_TRUE(Complains("chkPale has a contrast of 1"));
}

TEST_F(JudgedWindow, IsFaultedForATextThatIsCutOff) {
  Label("The steady hand", {10, 10, 50, 30});
  EXPECT_TRUE(Complains("\"The steady hand\" is cut off and no tooltip tells the rest"));
}

TEST_F(JudgedWindow, IsFaultedForAHeadingThatLacksAPixel) {
  QStandardItemModel columns;
  columns.setHorizontalHeaderLabels({"System"});
  QTableView& list = Table(columns);
  const QHeaderView& heading = *list.horizontalHeader();
  const auto whole = [&](int width) {
    return heading.fontMetrics().elidedText("System", Qt::ElideRight, width) == "System";
  };
  int width = 1;
  while (!whole(width + 1)) ++width;
  list.setColumnWidth(0, width + 1 + kHeadingPadding);
  EXPECT_FALSE(Complains("\"System\" is cut off"));
  list.setColumnWidth(0, width + kHeadingPadding);
  EXPECT_TRUE(Complains("\"System\" is cut off"));
}

TEST_F(JudgedWindow, MayCutATextOffThatItsTooltipTells) {
  Label("The steady hand", {10, 10, 50, 30}).setToolTip("Own line: The steady hand");
  EXPECT_EQ(Faults(), std::vector<std::string>());
}

TEST_F(JudgedWindow, IsFaultedForATextThatIsTooHigh) {
  Label("The steady hand", {10, 10, 260, 8});
  EXPECT_TRUE(Complains("is cut off: it is"));
}

TEST_F(JudgedWindow, IsFaultedForControlsThatLieOnEachOther) {
  Label("Above", {10, 10, 100, 30});
  Label("Below", {10, 35, 100, 30});
  EXPECT_TRUE(Complains("Above lies on Below"));
}

TEST_F(JudgedWindow, IsFaultedForAControlThatReachesOverItsEdge) {
  Label("Hand", {250, 10, 100, 30});
  EXPECT_TRUE(Complains("Hand reaches out of"));
}

TEST(Contrast, IsTheOneOfTheGuidelines) {
  EXPECT_NEAR(ContrastOf(Qt::black, Qt::white), 21, 0.01);
  EXPECT_NEAR(ContrastOf(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
  EXPECT_NEAR(ContrastOf(Qt::white, QColor(0x77, 0x77, 0x77)), 4.48, 0.01);
}

TEST(Contrast, IsMeasuredWhereTheStrokesAreStrongest) {
  QImage picture(40, 20, QImage::Format_RGB32);
  picture.fill(QColor(0x10, 0x20, 0x30));
  for (int y = 4; y < 16; ++y) {
    picture.setPixelColor(9, y, QColor(0x70, 0x70, 0x70));
    picture.setPixelColor(10, y, QColor(0xE0, 0xD0, 0xC0));
    picture.setPixelColor(11, y, QColor(0x70, 0x70, 0x70));
  }
  const Inking seen = Measure(picture, picture.rect());
  EXPECT_EQ(seen.ground, QColor(0x10, 0x20, 0x30));
  EXPECT_EQ(seen.ink, QColor(0xE0, 0xD0, 0xC0));
}

}  // namespace
}  // namespace tavlo::test
