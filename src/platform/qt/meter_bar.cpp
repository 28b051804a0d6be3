#include "platform/qt/meter_bar.h"

#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <array>

#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

struct Zone {
  int from;
  int to;
  QColor colour;
};

/// A level is 100 plus decibels below full scale: clear speech stays in the first zone, the last
/// one is close to clipping.
constexpr std::array<Zone, 3> kZones{
    {{0, 80, theme::kTeal}, {80, 92, theme::kMeterAmber}, {92, 100, QColor(0xE8, 0x6A, 0x4E)}}};

}  // namespace

MeterBar::MeterBar(QWidget* parent) : QWidget(parent) {
  setFixedHeight(9);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

int MeterBar::EndOf(int level) const { return 1 + (width() - 2) * level / 100; }

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
  for (const Zone& zone : kZones) {
    const int from = EndOf(zone.from);
    const int to = std::min(end, EndOf(zone.to));
    if (to > from) painter.fillRect(QRect(from, 1, to - from, height() - 2), zone.colour);
  }
}

}  // namespace tavlo::platform::qt
