#include "platform/qt/card.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "platform/qt/colours.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kPadding = 12;
constexpr int kCardLineSpacing = 10;
constexpr double kCornerRadius = 6;
constexpr double kEdge = 0.16;   ///< Share of the letters' colour in the edge.
constexpr double kLight = 0.06;  ///< Share of white in the sheet of a dark desktop.
constexpr double kSheet = 0.6;   ///< Share of the desktop's paper in the sheet of a light one.

}  // namespace

Card::Card(QWidget* page) : QWidget(page), lines_(new QVBoxLayout(this)) {
  lines_->setContentsMargins(kPadding + 2, kPadding, kPadding + 2, kPadding);
  lines_->setSpacing(kCardLineSpacing);
}

QLabel* Card::AddHeading(const QString& words) {
  auto* const heading = new QLabel(words, this);
  heading->setTextFormat(Qt::PlainText);
  QFont bold = heading->font();
  bold.setWeight(QFont::DemiBold);
  heading->setFont(bold);
  lines_->addWidget(heading);
  return heading;
}

QColor Card::Sheet() const {
  const QColor page = palette().color(QPalette::Window);
  const bool dark = Luminance(palette().color(QPalette::WindowText)) > Luminance(page);
  return dark ? Mixed(page, Qt::white, kLight)
              : Mixed(page, palette().color(QPalette::Base), kSheet);
}

void Card::paintEvent(QPaintEvent*) {
  const QColor page = palette().color(QPalette::Window);
  const QColor ink = palette().color(QPalette::WindowText);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Mixed(page, ink, kEdge), 1));
  painter.setBrush(Sheet());
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius,
                          kCornerRadius);
}

}  // namespace tavlo::platform::qt
