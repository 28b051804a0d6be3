#include "platform/qt/meter_bar.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>

#include "platform/qt/colours.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kUnlit = 0.16;  ///< Share of its colour in a lamp that is off.

/// A level is 100 plus decibels below full scale: clear speech stays in the first zone, the last
/// one is close to clipping.
QColor ZoneColour(int level) {
  if (level < 80) return theme::kTeal;
  return level < 92 ? theme::kMeterAmber : theme::kMeterRed;
}

}  // namespace

MeterBar::MeterBar(QWidget* parent) : QWidget(parent) { setAttribute(Qt::WA_OpaquePaintEvent); }

void MeterBar::SetLamps(int height, int width) {
  setFixedHeight(height);
  lamp_ = width;
  update();
}

int MeterBar::Pitch() const { return lamp_ + std::max(1, lamp_ / 4); }

int MeterBar::EndOf(int level) const { return 1 + (width() - 2) / Pitch() * level / 100 * Pitch(); }

void MeterBar::SetLevel(int level) {
  const int before = EndOf(level_);
  level_ = std::clamp(level, 0, 100);
  const int after = EndOf(level_);
  if (after != before) update(std::min(before, after), 0, std::abs(after - before), height());
}

void MeterBar::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.fillRect(event->rect(), theme::kWell);
  const int end = EndOf(level_);
  for (int x = 1; x + lamp_ < width(); x += Pitch()) {
    const QRect lamp(x, 1, lamp_, height() - 2);
    if (!lamp.intersects(event->rect())) continue;
    const QColor colour = ZoneColour(100 * x / width());
    painter.fillRect(lamp, x < end ? colour : Mixed(theme::kWell, colour, kUnlit));
  }
}

}  // namespace tavlo::platform::qt
