#include "platform/qt/busy_sign.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

#include "platform/qt/binder.h"
#include "platform/qt/colours.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kTop = 10;
constexpr int kSignSide = 14;
constexpr int kSignPadding = 6;

}  // namespace

BusySign::BusySign(forms::FtpFrame& form, Binder& binder, QWidget* lists)
    : QWidget(lists), form_(form) {
  setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* const row = new QHBoxLayout(this);
  row->setContentsMargins(kSignSide, kSignPadding, kSignSide, kSignPadding);
  for (forms::Text* const text : {&form.lblFtpParsing, &form.lblFtpWait}) {
    auto* const label = new QLabel(this);
    row->addWidget(label);
    binder.Show(*text, *label);
    binder.Watch(*text, [this, &form] {
      setVisible(form.lblFtpParsing.Visible || form.lblFtpWait.Visible);
      StandInPlace();
    });
  }
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  row->itemAt(0)->widget()->setFont(bold);
  lists->installEventFilter(this);
}

void BusySign::StandInPlace() {
  if (!isVisibleTo(parentWidget())) return;
  const QSize size = sizeHint().boundedTo(parentWidget()->size());
  // Over the lists of servers' files, which are hidden meanwhile, all of their place is free.
  const int top = form_.frameFtp.Visible ? parentWidget()->height() * 2 / 5 : kTop;
  setGeometry(QRect(QPoint((parentWidget()->width() - size.width()) / 2, top), size));
  raise();
}

bool BusySign::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize) StandInPlace();
  return QWidget::eventFilter(watched, event);
}

bool BusySign::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest) StandInPlace();
  return QWidget::event(event);
}

void BusySign::paintEvent(QPaintEvent*) {
  const QColor page = palette().color(QPalette::Base);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(theme::kTeal.darker(130), 1));
  painter.setBrush(Mixed(page, theme::kTeal, 0.16));
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), height() / 2.0,
                          height() / 2.0);
}

}  // namespace tavlo::platform::qt
