#include "platform/qt/thin_bar.h"

#include <QPainter>

#include "platform/qt/colours.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kTrackShare = 0.14;  ///< Of the letters' colour in what is not filled yet.
constexpr double kIdleShare = 0.5;    ///< The same in what was filled when it stopped.

}  // namespace

ThinBar::ThinBar(QWidget* parent) : QProgressBar(parent) {
  setRange(0, 100);
  setTextVisible(false);
}

void ThinBar::paintEvent(QPaintEvent*) {
  const QColor page = palette().color(QPalette::Window);
  const QColor ink = palette().color(QPalette::Active, QPalette::WindowText);
  const QColor track = Mixed(page, ink, kTrackShare);
  const double round = height() / 2.0;
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(track);
  painter.drawRoundedRect(rect(), round, round);
  if (value() <= 0) return;
  painter.setBrush(isEnabled() ? Readable(theme::kTeal, track) : Mixed(page, ink, kIdleShare));
  // The first percent is a dot already.
  const double filled = height() + (width() - height()) * value() / 100.0;
  painter.drawRoundedRect(QRectF(0, 0, filled, height()), round, round);
}

}  // namespace tavlo::platform::qt
