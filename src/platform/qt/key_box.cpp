#include "platform/qt/key_box.h"

#include <xkbcommon/xkbcommon.h>

#include <QHelpEvent>
#include <QHideEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>
#include <QToolTip>
#include <algorithm>
#include <array>

#include "platform/qt/colours.h"
#include "platform/qt/focus_keeper.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"
#include "remote/key_trigger.h"

namespace tavlo::platform::qt {
namespace {

constexpr int kBesideWords = 6;
constexpr int kAroundWords = 2;
constexpr double kQuiet = 0.7;  ///< Share of the letters' colour in what is no key.
constexpr double kLit = 0.3;    ///< Share of amber in the box of a key that is down.
constexpr qreal kLitRim = 3;
constexpr qreal kFocusRim = 2;
constexpr qreal kRimRounding = 3;
constexpr const char* kUsualKey = "Ctrl+Shift+Page Down";

using remote::KeyTrigger;

bool IsModifier(xkb_keysym_t symbol) {
  const bool isLock = symbol == XKB_KEY_Caps_Lock || symbol == XKB_KEY_Shift_Lock;
  return (symbol >= XKB_KEY_Shift_L && symbol <= XKB_KEY_Hyper_R && !isLock) ||
         (symbol >= XKB_KEY_ISO_Level2_Latch && symbol <= XKB_KEY_ISO_Level5_Lock) ||
         symbol == XKB_KEY_Mode_switch;
}

KeyTrigger WithModifiers(Qt::KeyboardModifiers modifiers) {
  return {.ctrl = modifiers.testFlag(Qt::ControlModifier),
          .alt = modifiers.testFlag(Qt::AltModifier),
          .shift = modifiers.testFlag(Qt::ShiftModifier),
          .logo = modifiers.testFlag(Qt::MetaModifier),
          .key = {}};
}

/// Modifiers that are down after this event, which may be about one of them.
Qt::KeyboardModifiers HeldAfter(const QKeyEvent& event) {
  Qt::KeyboardModifier own = Qt::NoModifier;
  switch (event.key()) {
    case Qt::Key_Control:
      own = Qt::ControlModifier;
      break;
    case Qt::Key_Alt:
      own = Qt::AltModifier;
      break;
    case Qt::Key_Shift:
      own = Qt::ShiftModifier;
      break;
    case Qt::Key_Meta:
    case Qt::Key_Super_L:
    case Qt::Key_Super_R:
      own = Qt::MetaModifier;
      break;
    default:
      break;
  }
  return event.modifiers().setFlag(own, event.type() == QEvent::KeyPress);
}

/// The name of the key in the keyboard tables; empty where they have none.
std::string NameOf(xkb_keysym_t symbol) {
  if (symbol == XKB_KEY_NoSymbol) return {};
  if (symbol == XKB_KEY_ISO_Left_Tab) symbol = XKB_KEY_Tab;
  std::array<char, 64> name{};
  const int length = xkb_keysym_get_name(xkb_keysym_to_lower(symbol), name.data(), name.size());
  return length > 0 && length < static_cast<int>(name.size()) ? name.data() : "";
}

/// Leads out of the box or closes the window.
bool IsOfTheWindow(const QKeyEvent& event) {
  const auto others = event.modifiers() & ~Qt::ShiftModifier;
  switch (event.key()) {
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return !others;
    case Qt::Key_Escape:
      return !event.modifiers();
    default:
      return false;
  }
}

bool Clears(const QKeyEvent& event) {
  const bool isAlone = !(event.modifiers() & ~Qt::KeypadModifier);
  return isAlone && (event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace);
}

}  // namespace

KeyBox::KeyBox(QWidget* parent) : QWidget(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setContextMenuPolicy(Qt::PreventContextMenu);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void KeyBox::ShowKey(const QString& words) {
  if (key_ == words) return;
  key_ = words;
  update();
}

void KeyBox::Light(bool down) {
  if (down_ == down) return;
  down_ = down;
  update();
}

void KeyBox::ShowHeld(const QString& held) {
  if (held_ == held) return;
  held_ = held;
  update();
}

QString KeyBox::Words() const {
  if (!held_.isEmpty()) return held_;
  if (!key_.isEmpty()) return key_;
  return hasFocus() ? "Press a key" : "none";
}

QRect KeyBox::WordsPlace() const {
  return rect().adjusted(kBesideWords, kAroundWords, -kBesideWords, -kAroundWords);
}

QSize KeyBox::sizeHint() const {
  ensurePolished();
  // As high as the two lines that may stand beside it.
  const QSize words(fontMetrics().horizontalAdvance(kUsualKey) + 2 * kBesideWords,
                    2 * fontMetrics().lineSpacing());
  QStyleOptionFrame box;
  box.initFrom(this);
  box.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &box, this);
  return style()->sizeFromContents(QStyle::CT_LineEdit, &box, words, this);
}

bool KeyBox::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::ShortcutOverride: {
      // While it has the keyboard no menu and no page of the window is reached by a key. The
      // window's keys go their way.
      const bool taken = !IsOfTheWindow(static_cast<QKeyEvent&>(*event));
      event->setAccepted(taken);
      return taken;
    }
    case QEvent::ToolTip:
      return ShowTooltip(static_cast<QHelpEvent*>(event)->globalPos()) || QWidget::event(event);
    default:
      return QWidget::event(event);
  }
}

void KeyBox::keyPressEvent(QKeyEvent* event) {
  if (IsOfTheWindow(*event)) return QWidget::keyPressEvent(event);
  event->accept();
  if (event->isAutoRepeat()) return;
  const xkb_keysym_t symbol = event->nativeVirtualKey();
  if (IsModifier(symbol)) return ShowHeld(ToQt(WithModifiers(HeldAfter(*event)).InWords()));
  ShowHeld({});
  if (Clears(*event)) return OnKey({});
  KeyTrigger trigger = WithModifiers(event->modifiers());
  trigger.key = NameOf(symbol);
  if (!trigger.key.empty()) OnKey(trigger.Text());
}

void KeyBox::keyReleaseEvent(QKeyEvent* event) {
  event->accept();
  if (!held_.isEmpty()) ShowHeld(ToQt(WithModifiers(HeldAfter(*event)).InWords()));
}

void KeyBox::focusInEvent(QFocusEvent* event) {
  QWidget::focusInEvent(event);
  OnKeyboard(true);
  update();
}

void KeyBox::focusOutEvent(QFocusEvent* event) {
  ShowHeld({});
  QWidget::focusOutEvent(event);
  OnKeyboard(false);
  update();
}

/// Whoever opens the window the next time has not asked for the box, which would take any key.
void KeyBox::hideEvent(QHideEvent* event) {
  if (!event->spontaneous()) FocusKeeper::TakeFrom(*this);
  QWidget::hideEvent(event);
}

bool KeyBox::ShowTooltip(const QPoint& place) {
  if (fontMetrics().horizontalAdvance(Words()) <= WordsPlace().width()) return false;
  const QString before = toolTip().isEmpty() ? QString() : toolTip() + ": ";
  QToolTip::showText(place, ToTooltip(before + Words()), this);
  return true;
}

/// No cursor blinks in it, so the rim says that it has the keyboard.
void KeyBox::PaintRim(QPainter& painter, const QColor& rim, qreal width, const QColor& ground) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(rim, width));
  painter.setBrush(ground);
  const qreal inset = width / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kRimRounding,
                          kRimRounding);
}

/// A thicker rim tells the key that is down without its colour.
void KeyBox::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QStyleOptionFrame box;
  box.initFrom(this);
  box.lineWidth = style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &box, this);
  box.midLineWidth = 0;
  box.state |= QStyle::State_Sunken;
  style()->drawPrimitive(QStyle::PE_PanelLineEdit, &box, &painter, this);
  QColor ground = palette().color(QPalette::Base);
  if (down_) ground = Mixed(ground, theme::kAmberKey, kLit);
  if (down_ || hasFocus()) {
    const QColor edge = Readable(palette().color(QPalette::Highlight), ground);
    PaintRim(painter, down_ ? theme::kAmberKey : edge, down_ ? kLitRim : kFocusRim, ground);
  }
  const QColor letters = palette().color(QPalette::Text);
  const bool isKey = held_.isEmpty() && !key_.isEmpty();
  painter.setPen(Readable(isKey ? letters : Mixed(ground, letters, kQuiet), ground));
  const QRect place = WordsPlace();
  painter.drawText(place, static_cast<int>(Qt::AlignVCenter | Qt::AlignLeft) | Qt::TextSingleLine,
                   fontMetrics().elidedText(Words(), Qt::ElideRight, place.width()));
}

}  // namespace tavlo::platform::qt
