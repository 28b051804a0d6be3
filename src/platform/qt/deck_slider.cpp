#include "platform/qt/deck_slider.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QWheelEvent>
#include <cmath>

#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

/// Half the width of the largest handle with its ring, kept free at both ends.
constexpr int kReach = 12;
/// By how much the groove goes on behind the handle's last place.
constexpr int kGrooveEnd = 10;
constexpr int kThickness = 24;
constexpr int kMainThickness = 26;

}  // namespace

DeckSlider::DeckSlider(Look look, QWidget* parent)
    : QSlider(look == Look::Upright ? Qt::Vertical : Qt::Horizontal, parent), look_(look) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  if (Upright()) {
    setInvertedAppearance(true);
    setInvertedControls(true);
  }
  GrowTo(1);
}

void DeckSlider::GrowTo(double factor) {
  growth_ = factor;
  const int thickness = Grown(look_ == Look::Main ? kMainThickness : kThickness);
  if (Upright()) {
    setMinimumWidth(thickness);
  } else {
    setMinimumHeight(thickness);
  }
  update();
}

int DeckSlider::Grown(int drawn) const { return static_cast<int>(std::lround(drawn * growth_)); }

void DeckSlider::SetSpan(const forms::Span& span) {
  span_ = span;
  setRange(span.minimum, span.maximum);
  setSingleStep(span.smallStep);
  setPageStep(span.largeStep);
}

void DeckSlider::SetNought(int value) {
  nought_ = value;
  update();
}

int DeckSlider::Reach() { return kReach; }

int DeckSlider::PlaceOf(int value) const {
  const int reach = Grown(kReach);
  return reach + QStyle::sliderPositionFromValue(minimum(), maximum(), value, Length() - 2 * reach);
}

int DeckSlider::ValueAt(double place) const {
  const int reach = Grown(kReach);
  return QStyle::sliderValueFromPosition(minimum(), maximum(), static_cast<int>(place) - reach,
                                         Length() - 2 * reach);
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
  const double place = Along(event->position());
  // A press on the handle itself takes it without moving it.
  if (isSliderDown() && qAbs(place - HandlePlace()) > Grown(kReach)) MoveTo(ValueAt(place));
  update();
}

void DeckSlider::mouseMoveEvent(QMouseEvent* event) {
  if (isSliderDown()) MoveTo(ValueAt(Along(event->position())));
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

/// Where the coloured part of the groove begins: at `nought_` on a slider that runs both ways from
/// there, else at the left or lower end.
int DeckSlider::FillFrom() const {
  if (nought_) return PlaceOf(*nought_);
  const int end = Grown(kReach - kGrooveEnd);
  return Upright() ? Length() - end : end;
}

/// Off the deck the desktop says whether the ground is light or dark.
QColor DeckSlider::Accent() const {
  const bool dark = OnDeck() || palette().color(QPalette::Window).lightness() < 128;
  return dark ? theme::kTeal : theme::kTeal.darker(130);
}

void DeckSlider::PaintGroove(QPainter& painter) const {
  const bool main = look_ == Look::Main;
  const double middle = Middle();
  const double thickness = (main ? 5 : 3) * growth_;
  const double begin = Grown(kReach - kGrooveEnd);
  const QRectF groove(begin, middle - thickness / 2, Length() - 2 * begin, thickness);
  painter.setPen(Qt::NoPen);
  painter.setBrush(OnDeck() ? theme::kWell : palette().color(QPalette::Mid));
  painter.drawRoundedRect(groove, thickness / 2, thickness / 2);
  if (OnDeck()) {
    // A thread of light under the groove sets it into the face.
    painter.setBrush(theme::kKeyShine);
    painter.drawRect(QRectF(groove.left() + 2, groove.bottom(), groove.width() - 4, 1));
  }
  if (nought_) {
    painter.setBrush(palette().color(isEnabled() ? QPalette::WindowText : QPalette::Mid));
    painter.drawRect(QRectF(PlaceOf(*nought_) - 0.5, middle - 6, 1, 12));
  }
  if ((main || !OnDeck()) && isEnabled()) {
    painter.setBrush(Accent());
    const QPointF from(FillFrom(), groove.top());
    const QPointF to(HandlePlace(), groove.bottom());
    painter.drawRoundedRect(QRectF(from, to).normalized(), thickness / 2, thickness / 2);
  }
}

QColor DeckSlider::HandleColour() const {
  if (!isEnabled()) return OnDeck() ? theme::kIdleHandle : palette().color(QPalette::Mid);
  const QColor handle = !OnDeck()             ? Accent()
                        : look_ == Look::Main ? QColor(Qt::white)
                                              : theme::kHandle;
  if (isSliderDown()) return handle.darker(112);
  if (!underMouse()) return handle;
  // Away from the page that it stands on, or it would be harder to see just there.
  const bool onLight = !OnDeck() && palette().color(QPalette::Window).lightnessF() > 0.5;
  return onLight ? handle.darker(106) : handle.lighter(115);
}

void DeckSlider::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (Upright()) painter.setTransform(QTransform(0, 1, 1, 0, 0, 0), true);
  PaintGroove(painter);

  const QPointF middle(HandlePlace(), Middle());
  const auto paintHandle = [&](double rim) {
    const double longHalf = (8 + rim) * growth_;
    const double shortHalf = (4.5 + rim) * growth_;
    const double corner = (3 + rim) * growth_;
    if (look_ == Look::Main) {
      painter.drawEllipse(middle, longHalf, longHalf);
    } else {
      painter.drawRoundedRect(
          QRectF(-shortHalf, -longHalf, 2 * shortHalf, 2 * longHalf).translated(middle), corner,
          corner);
    }
  };
  if (hasFocus()) {
    painter.setPen(QPen(OnDeck() ? QColor(Qt::white) : palette().color(QPalette::Text), 2));
    painter.setBrush(OnDeck() ? theme::kKeyEdge : palette().color(QPalette::Base));
    paintHandle(3);
  }
  painter.setPen(OnDeck() ? QPen(theme::kKeyEdge, 1) : QPen(Qt::NoPen));
  painter.setBrush(HandleColour());
  paintHandle(0);
}

}  // namespace tavlo::platform::qt
