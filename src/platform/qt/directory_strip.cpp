#include "platform/qt/directory_strip.h"

#include <QHelpEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "platform/qt/colours.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBetweenCells = 3;
constexpr int kCellRounding = 4;
constexpr int kCellSide = 3;       ///< Room beside the letters of a cell, at each side.
constexpr int kCellPitch = 3;      ///< Room above and below them.
constexpr double kSmaller = 0.85;  ///< The letters of a count beside those of its directory.
constexpr int kLeastInOneLine = 5;
constexpr int kThousand = 1000;

/// A number that has room in a cell: thousands are rounded down.
QString Short(const QString& count) {
  const int files = count.toInt();
  return files < kThousand ? count : QString::number(files / kThousand) + "k";
}

}  // namespace

DirectoryStrip::DirectoryStrip(QWidget* parent)
    : DeckSlider(Look::Level, parent), hovered_(minimum() - 1) {
  setMouseTracking(true);
  QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Minimum);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
}

void DirectoryStrip::SetCounts(const std::vector<std::string>& counts) {
  counts_.clear();
  for (const std::string& count : counts) counts_.append(ToQt(count));
  update();
}

QFont DirectoryStrip::CountLetters() const {
  QFont letters = font();
  letters.setPointSizeF(letters.pointSizeF() * kSmaller);
  letters.setWeight(QFont::DemiBold);
  return letters;
}

int DirectoryStrip::LeastCellWidth() const {
  const int number = fontMetrics().horizontalAdvance(QString::number(Cells()));
  const int count = QFontMetrics(CountLetters()).horizontalAdvance("999");
  return std::max(number, count) + 2 * kCellSide;
}

int DirectoryStrip::CellHeight(int width) const {
  const int number = fontMetrics().height() + 2 * kCellPitch;
  return Lines(width) > 1 ? number : number + QFontMetrics(CountLetters()).height();
}

/// The lines are equally long, as far as that can be.
int DirectoryStrip::InOneLine(int width) const {
  int most = (width + kBetweenCells) / (LeastCellWidth() + kBetweenCells);
  if (most >= Cells()) return Cells();
  // In several lines a count stands beside its number, where it takes less height.
  most = std::max(1, (width + kBetweenCells) / (2 * LeastCellWidth() + kBetweenCells));
  const int lines = (Cells() + most - 1) / most;
  return (Cells() + lines - 1) / lines;
}

int DirectoryStrip::Lines(int width) const {
  const int inOneLine = InOneLine(width);
  return (Cells() + inOneLine - 1) / inOneLine;
}

int DirectoryStrip::heightForWidth(int width) const {
  const int lines = Lines(width);
  return lines * CellHeight(width) + (lines - 1) * kBetweenCells;
}

QSize DirectoryStrip::sizeHint() const {
  const int width = Cells() * (LeastCellWidth() + kBetweenCells);
  return {width, heightForWidth(width)};
}

QSize DirectoryStrip::minimumSizeHint() const {
  return {kLeastInOneLine * (2 * LeastCellWidth() + kBetweenCells), fontMetrics().height()};
}

QRect DirectoryStrip::CellOf(int value) const {
  const int inOneLine = InOneLine(width());
  const int place = value - minimum();
  const int column = place % inOneLine;
  // Cells share the width to the pixel, so that the strip ends where the list below it ends.
  const auto left = [&](int at) { return at * (width() + kBetweenCells) / inOneLine; };
  const int height = CellHeight(width());
  const int top = place / inOneLine * (height + kBetweenCells);
  return {left(column), top, left(column + 1) - kBetweenCells - left(column), height};
}

int DirectoryStrip::ValueAt(QPoint place) const {
  for (int value = minimum(); value <= maximum(); ++value) {
    if (CellOf(value).contains(place)) return value;
  }
  return minimum() - 1;
}

QString DirectoryStrip::InWords(int value) const {
  const int place = value - minimum();
  QString words = "Directory " + QString::number(place);
  const QString count = counts_.value(place);
  if (count == "0") return words + " is empty";
  if (count.isEmpty()) return words;
  return words + (count == "1" ? ": 1 file" : ": " + count + " files");
}

void DirectoryStrip::HoverOver(int value) {
  if (hovered_ == value) return;
  hovered_ = value;
  update();
}

bool DirectoryStrip::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return DeckSlider::event(event);
  const auto* const help = static_cast<QHelpEvent*>(event);
  const int value = ValueAt(help->pos());
  if (value < minimum()) return DeckSlider::event(event);
  QToolTip::showText(help->globalPos(), toolTip() + "\n" + InWords(value), this, CellOf(value));
  return true;
}

void DirectoryStrip::mousePressEvent(QMouseEvent* event) {
  const int chosen = ValueAt(event->position().toPoint());
  if (event->button() != Qt::LeftButton || chosen < minimum()) {
    event->ignore();
    return;
  }
  if (OnPress) OnPress();
  setValue(chosen);
  if (OnMove) OnMove(chosen);
  if (OnRelease) OnRelease();
}

void DirectoryStrip::mouseMoveEvent(QMouseEvent* event) {
  HoverOver(ValueAt(event->position().toPoint()));
  event->ignore();
}

void DirectoryStrip::mouseReleaseEvent(QMouseEvent*) {}

void DirectoryStrip::leaveEvent(QEvent* event) {
  DeckSlider::leaveEvent(event);
  HoverOver(minimum() - 1);
}

void DirectoryStrip::changeEvent(QEvent* event) {
  DeckSlider::changeEvent(event);
  if (event->type() == QEvent::FontChange) updateGeometry();
}

void DirectoryStrip::PaintCell(QPainter& painter, int value) const {
  const QColor page = palette().color(QPalette::Base);
  const QColor ink =
      palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText);
  const bool chosen = value == this->value();
  const QColor accent = theme::kTeal.darker(150);
  QColor face = chosen ? accent : page;
  if (!chosen && value == hovered_ && isEnabled()) face = Mixed(page, theme::kTeal, 0.16);
  const QRect cell = CellOf(value);
  painter.setPen(QPen(chosen ? accent : Mixed(page, ink, 0.2), 1));
  painter.setBrush(face);
  painter.drawRoundedRect(QRectF(cell).adjusted(0.5, 0.5, -0.5, -0.5), kCellRounding,
                          kCellRounding);

  const int place = value - minimum();
  QRect number(cell.left(), cell.top() + kCellPitch, cell.width(), fontMetrics().height());
  QRect files(cell.left(), number.bottom() + 1, cell.width(),
              cell.bottom() - kCellPitch - number.bottom());
  if (InOneLine(width()) < Cells()) {
    number = cell.adjusted(0, 0, -cell.width() / 2, 0);
    files = cell.adjusted(cell.width() / 2, 0, 0, 0);
  }
  painter.setFont(font());
  painter.setPen(chosen ? QColor(Qt::white) : ink);
  painter.drawText(number, Qt::AlignCenter, QString::number(place));
  const QString count = counts_.value(place);
  const bool waits = !count.isEmpty() && count != "0";
  painter.setFont(CountLetters());
  painter.setPen(chosen  ? QColor(Qt::white)
                 : waits ? Readable(theme::kTeal, face)
                         : Mixed(face, ink, 0.45));
  painter.drawText(files, Qt::AlignCenter, count == "0" ? QString(QChar(0x2013)) : Short(count));
  if (!chosen || !hasFocus()) return;
  painter.setPen(QPen(Qt::white, 2));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(cell).adjusted(3, 3, -3, -3), kCellRounding - 2,
                          kCellRounding - 2);
}

void DirectoryStrip::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  for (int value = minimum(); value <= maximum(); ++value) PaintCell(painter, value);
}

}  // namespace tavlo::platform::qt
