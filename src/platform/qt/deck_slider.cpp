#include "platform/qt/deck_slider.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>

#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kReach = 9;  ///< Half the width of the largest handle, kept free at both ends.

}  // namespace

DeckSlider::DeckSlider(Look look, QWidget* parent) : QSlider(Qt::Horizontal, parent), look_(look) {
  setFocusPolicy(Qt::StrongFocus);
  setMinimumHeight(look == Look::Main ? 26 : 24);
}

int DeckSlider::HandleX() const {
  return kReach +
         QStyle::sliderPositionFromValue(minimum(), maximum(), value(), width() - 2 * kReach);
}

int DeckSlider::ValueAt(double x) const {
  return QStyle::sliderValueFromPosition(minimum(), maximum(), static_cast<int>(x) - kReach,
                                         width() - 2 * kReach);
}

void DeckSlider::MoveTo(int value) {
  const int before = this->value();
  setValue(value);
  if (this->value() != before && OnMove) OnMove(this->value());
}

void DeckSlider::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  setSliderDown(true);
  if (OnPress) OnPress();
  const double x = event->position().x();
  // A press on the handle itself takes it without moving it.
  if (isSliderDown() && qAbs(x - HandleX()) > kReach) MoveTo(ValueAt(x));
  update();
}

void DeckSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) MoveTo(ValueAt(event->position().x()));
}

void DeckSlider::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !isSliderDown()) return;
  setSliderDown(false);
  if (OnRelease) OnRelease();
  update();
}

void DeckSlider::keyPressEvent(QKeyEvent* event) {
  if (isSliderDown()) return;
  const int before = value();
  QSlider::keyPressEvent(event);
  if (value() != before && OnStep) OnStep(value());
}

void DeckSlider::StepTo(int value) {
  const int before = this->value();
  if (isSliderDown()) return;
  setValue(value);
  if (this->value() != before && OnStep) OnStep(this->value());
}

void DeckSlider::wheelEvent(QWheelEvent* event) { event->ignore(); }

void DeckSlider::changeEvent(QEvent* event) {
  const bool wasDown = isSliderDown();
  QSlider::changeEvent(event);
  if (wasDown && !isSliderDown() && OnRelease) OnRelease();
}

void DeckSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool onDeck = palette().color(QPalette::Window).lightness() < 128;
  const bool main = look_ == Look::Main;
  const double middle = height() / 2.0;
  const double thickness = main ? 5 : 3;
  const QRectF groove(kReach - 7, middle - thickness / 2, width() - 2 * (kReach - 7), thickness);
  painter.setPen(Qt::NoPen);
  painter.setBrush(onDeck ? theme::kWell : palette().color(QPalette::Mid));
  painter.drawRoundedRect(groove, thickness / 2, thickness / 2);

  const double x = HandleX();
  if (main && isEnabled()) {
    painter.setBrush(theme::kTeal);
    painter.drawRoundedRect(QRectF(groove.left(), groove.top(), x - groove.left(), thickness),
                            thickness / 2, thickness / 2);
  }
  const QColor lively = onDeck ? QColor(Qt::white) : theme::kTeal.darker(130);
  const QColor idle = onDeck ? QColor(0x5A, 0x64, 0x70) : palette().color(QPalette::Mid);
  painter.setBrush(!isEnabled() ? idle : main || !onDeck ? lively : QColor(0xC9, 0xD2, 0xDB));
  if (hasFocus()) painter.setPen(QPen(theme::kAmber, 2));
  if (main) {
    painter.drawEllipse(QPointF(x, middle), 8, 8);
  } else {
    painter.drawRoundedRect(QRectF(x - 4.5, middle - 8, 9, 16), 3, 3);
  }
}

}  // namespace tavlo::platform::qt
