#include "platform/qt/desk_style.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

#include "platform/qt/colours.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kLightestEdge = 0.6;  ///< Share of the letters' colour in the edge of a box.

QPainterPath Tick(const QRectF& box) {
  QPainterPath tick(box.topLeft() + QPointF(box.width() * 0.24, box.height() * 0.52));
  tick.lineTo(box.topLeft() + QPointF(box.width() * 0.43, box.height() * 0.72));
  tick.lineTo(box.topLeft() + QPointF(box.width() * 0.78, box.height() * 0.3));
  return tick;
}

}  // namespace

DeskStyle::DeskStyle() : QProxyStyle("fusion") {}

void DeskStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  const bool round = element == PE_IndicatorRadioButton;
  const bool enabled = option->state & State_Enabled;
  const bool on = option->state & State_On;
  const QPalette& colours = option->palette;
  const QColor page = colours.color(QPalette::Base);
  const QColor accent = theme::kTeal.darker(150);
  QColor edge = Mixed(page, colours.color(QPalette::Active, QPalette::Text), kLightestEdge);
  if (!enabled) edge = Mixed(page, edge, 0.5);
  const QColor filled = enabled ? accent : edge;

  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  const QRectF box = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
  const double corner = round ? box.width() / 2 : 3;
  painter->setPen(QPen(on ? filled : edge, 1));
  painter->setBrush(on ? filled : option->state & State_Sunken ? Mixed(page, edge, 0.2) : page);
  painter->drawRoundedRect(box, corner, corner);
  if (on && round) {
    painter->setPen(Qt::NoPen);
    painter->setBrush(Qt::white);
    painter->drawEllipse(box.center(), box.width() * 0.2, box.height() * 0.2);
  } else if (on) {
    painter->setBrush(Qt::NoBrush);
    painter->setPen(QPen(Qt::white, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->drawPath(Tick(box));
  }
  painter->restore();
}

}  // namespace tavlo::platform::qt
