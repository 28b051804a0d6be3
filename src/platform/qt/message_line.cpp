#include "platform/qt/message_line.h"

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "forms/accessible_name.h"
#include "platform/qt/accessible_parts.h"
#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/state_speaker.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBesideMessage = 9;
constexpr int kAboveMessage = 5;
constexpr double kMessageRounding = 4;
constexpr double kMessageTint = 0.08;  ///< Share of the deck's colour in the box.
constexpr double kMessageEdge = 0.45;  ///< The same in its edge.

}  // namespace

MessageLine::MessageLine(forms::Text& message, Binder& binder, QWidget* parent)
    : ElidingLabel(parent), message_(message), binder_(binder) {
  setContentsMargins(kBesideMessage, kAboveMessage, kBesideMessage, kAboveMessage);
  SetHeardDescription(*this, ToOneLine(forms::AccessibleName(message)));
  binder.Show(message, *this);
  // What goes on behind another view is not said.
  new StateSpeaker([this] { return isVisible() ? message_.Value.Get() : std::string(); },
                   {&message}, binder, this);
}

/// It keeps its height while it says nothing.
QSize MessageLine::minimumSizeHint() const {
  return {0, fontMetrics().height() + 2 * kAboveMessage};
}

bool MessageLine::event(QEvent* event) {
  if (event->type() != QEvent::ToolTip) return ElidingLabel::event(event);
  QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), ToTooltip(text()), this);
  return true;
}

void MessageLine::paintEvent(QPaintEvent* event) {
  const QColor page = palette().color(QPalette::Base);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Mixed(page, theme::kTeal, kMessageEdge), 1));
  painter.setBrush(Mixed(page, theme::kTeal, kMessageTint));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kMessageRounding,
                          kMessageRounding);
  painter.end();
  ElidingLabel::paintEvent(event);
}

void MessageLine::mouseDoubleClickEvent(QMouseEvent*) {
  binder_.ByHand(message_, [this] { message_.DoubleClick(); });
}

}  // namespace tavlo::platform::qt
