#include "platform/qt/top_window.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>
#include <algorithm>
#include <utility>

#include "platform/qt/binder.h"
#include "platform/qt/desktop_limits.h"
#include "platform/qt/qt_loop.h"
#include "platform/qt/texts.h"
#include "platform/qt/theme.h"

namespace tavlo::platform::qt {
namespace {

/// The window manager answers a move in several steps; only where the window comes to rest counts.
constexpr int kSettleMilliseconds = 80;

}  // namespace

TopWindow::TopWindow(forms::Window& form, QtLoop& loop, Binder& binder, Qt::WindowFlags flags)
    : QWidget(nullptr, flags),
      form_(form),
      loop_(loop),
      binder_(binder),
      placed_(WindowsCanBePlaced()) {
  setObjectName(ToQt(form.Name));
  settle_.setSingleShot(true);
  settle_.setInterval(kSettleMilliseconds);
  connect(&settle_, &QTimer::timeout, this, [this] { Settled(); });
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this] { KeepKeyboard(); });
  KeepScreenSize();
  KeepKeyboard();
  WatchScreens();
}

void TopWindow::Bind() {
  binder_.StandsFor(*this, form_);
  binder_.Watch(form_, [this] { Show(); });
}

QRect TopWindow::Wanted() const {
  return {ToPixels(form_.Left), ToPixels(form_.Top), ToPixels(form_.Width), ToPixels(form_.Height)};
}

QRect TopWindow::WithinReach() const {
  QRect place = Wanted();
  const QScreen* const under = QGuiApplication::screenAt(place.center());
  const QRect space = (under ? under : screen())->availableGeometry();
  place.setSize(place.size().boundedTo(space.size()));
  if (!placed_) return place;
  place.moveTo(std::clamp(place.left(), space.left(), space.right() + 1 - place.width()),
               std::clamp(place.top(), space.top(), space.bottom() + 1 - place.height()));
  return place;
}

QRect TopWindow::Outer() const {
  QRect place = geometry();
  if (windowHandle()) place = place.marginsAdded(windowHandle()->frameMargins());
  // Where the desktop does not tell the place the toolkit makes one up, which must not be
  // remembered.
  if (!placed_) place.moveTopLeft(Wanted().topLeft());
  return place;
}

void TopWindow::KeepScreenSize() {
  const QRect space = screen()->geometry();
  form_.ScreenLeft = ToTwips(space.left());
  form_.ScreenTop = ToTwips(space.top());
  form_.ScreenWidth = ToTwips(space.width());
  form_.ScreenHeight = ToTwips(space.height());
}

void TopWindow::KeepKeyboard() {
  // What changes in a breath is kept when the window has settled.
  if (loop_.Breathing()) return settle_.start();
  form_.HasKeyboard = QGuiApplication::focusWindow() != nullptr;
}

void TopWindow::WatchScreens() {
  const auto changed = [this] {
    screensChanged_ = true;
    settle_.start();
  };
  const auto watch = [this, changed](const QScreen* screen) {
    connect(screen, &QScreen::geometryChanged, this, changed);
  };
  for (const QScreen* const screen : QGuiApplication::screens()) watch(screen);
  connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
  connect(qGuiApp, &QGuiApplication::screenRemoved, this, changed);
}

void TopWindow::ReturnToAScreen() {
  if (!screensChanged_) return;
  screensChanged_ = false;
  // Forgotten, the place is shown anew, and then within reach.
  if (!QGuiApplication::screenAt(Wanted().center())) shownPlace_ = QRect();
}

void TopWindow::Show() {
  if (!windowHandle()) {
    create();
    windowHandle()->installEventFilter(this);
    if (owner_) windowHandle()->setTransientParent(owner_->windowHandle());
  }
  const QString caption = ToQt(form_.Caption.Get());
  if (windowTitle() != caption) setWindowTitle(caption);
  if (form_.MousePointer == forms::Pointer::Hourglass) {
    setCursor(Qt::WaitCursor);
  } else {
    unsetCursor();
  }
  if (shownTopMost_ != form_.TopMost) {
    shownTopMost_ = form_.TopMost;
    windowHandle()->setFlag(Qt::WindowStaysOnTopHint, shownTopMost_);
    // Where nobody keeps windows on top, it at least comes there.
    if (shownTopMost_ && !WindowsAreManaged()) raise();
  }
  ShowShape();
  ShowPlace();
  ShowVisible();
  ShowFocus();
  ShowFront();
}

void TopWindow::ShowShape() {
  if (shownMinimized_ == WantsMinimized()) return;
  if (WantsMinimized() && !WindowsAreManaged()) {
    notMinimized_ = true;
    settle_.start();
    return;
  }
  shownMinimized_ = WantsMinimized();
  wentAway_ = false;
  comesBack_ = !shownMinimized_;
  if (comesBack_) {
    ComeBack();
  } else {
    setWindowState(Qt::WindowMinimized);
  }
}

void TopWindow::ComeBack() {
  // The toolkit asks for a window by mapping it. A manager that keeps what is minimized mapped
  // would never hear of that, so the window is taken from it and given to it anew. Asked to
  // activate it instead, it refuses while another window is being typed in.
  if (isVisible() && IsMapped(*windowHandle())) hide();
  setWindowState(Qt::WindowNoState);
  raise();
}

void TopWindow::ShowVisible() {
  if (isVisible() == form_.Visible) return;
  if (form_.Visible) PlaceHidden();
  // What comes back by itself must not take the keyboard from whom is typing. The toolkit would
  // remember that for each later show.
  setAttribute(Qt::WA_ShowWithoutActivating, comesBack_);
  windowHandle()->setProperty("_q_showWithoutActivating", comesBack_);
  const bool keyboardIsOurs = QGuiApplication::focusWindow() != nullptr;
  setVisible(form_.Visible);
  // Left to themselves, some window managers give the keyboard to no window when one takes the
  // place of another.
  if (form_.Visible && keyboardIsOurs && !comesBack_) activateWindow();
}

void TopWindow::ShowPlace() {
  const QMargins margins = windowHandle()->frameMargins();
  if (Wanted() == shownPlace_ && margins == shownMargins_) return;
  shownPlace_ = Wanted();
  shownMargins_ = margins;
  if (isMaximized()) setWindowState(Qt::WindowNoState);
  // A place from a larger screen would leave keys where no mouse reaches them. What the window gets
  // instead is told to the form once it has settled.
  const QRect place = WithinReach();
  if (Outer() != place) setGeometry(place.marginsRemoved(margins));
}

void TopWindow::ShowFocus() {
  if (shownFocus_ == form_.FocusVersion() || !isVisible()) return;
  shownFocus_ = form_.FocusVersion();
  QWidget* const widget = form_.Focused() ? binder_.WidgetOf(*form_.Focused()) : nullptr;
  if (widget) widget->setFocus(Qt::OtherFocusReason);
}

void TopWindow::ShowFront() {
  if (std::exchange(shownFront_, form_.FrontVersion()) == form_.FrontVersion()) return;
  if (!isVisible() || WantsMinimized()) return;
  // The one manager that gives the keyboard along with this knows no other way to the front.
  raise();
  comesBack_ = true;
  settle_.start();
}

void TopWindow::Settled() {
  if (loop_.Breathing()) {
    settle_.start();
    return;
  }
  // What happened during a breath is told now.
  KeepKeyboard();
  ShapeChanged();
  TellActivated();
  ReturnToAScreen();
  StayUnminimized();
  ComeForward();
  if (!isVisible() || isMinimized() || WantsMinimized()) return;
  // A wish of the form that is not on the screen yet goes before what the user did.
  if (Wanted() != shownPlace_ || windowHandle()->frameMargins() != shownMargins_) {
    ShowPlace();
    settle_.start();
    return;
  }
  KeepScreenSize();
  const QRect place = Outer();
  if (place != shownPlace_) {
    shownPlace_ = place;
    form_.Place(ToTwips(place.x()), ToTwips(place.y()), ToTwips(place.width()),
                ToTwips(place.height()), forms::Shape::Normal);
  }
  if (OnSettled) OnSettled();
}

void TopWindow::PlaceHidden() {
  // Some window managers leave a window that they let go where its frame began, and so it would
  // wander at each show. Whether the toolkit has heard of that is not sure, and it does not ask for
  // a place that it takes for the present one.
  if (!placed_ || isMaximized()) return;
  const QRect place = WithinReach().marginsRemoved(windowHandle()->frameMargins());
  setGeometry(place.translated(1, 0));
  setGeometry(place);
}

void TopWindow::ComeForward() {
  // Before the window manager has mapped it, it would forget what it is asked.
  if (!comesBack_ || !isVisible() || !IsMapped(*windowHandle())) return;
  comesBack_ = false;
  if (shownTopMost_) {
    // A window that was given to the manager anew may have lost this on its way.
    windowHandle()->setFlag(Qt::WindowStaysOnTopHint, false);
    windowHandle()->setFlag(Qt::WindowStaysOnTopHint, true);
  }
  StandInFront(*windowHandle());
}

void TopWindow::ShapeChanged() {
  if (isMinimized() == shownMinimized_ || loop_.Breathing()) return;
  shownMinimized_ = isMinimized();
  form_.Place(form_.Left, form_.Top, form_.Width, form_.Height,
              shownMinimized_ ? forms::Shape::Minimized : forms::Shape::Normal);
}

void TopWindow::StayUnminimized() {
  if (!std::exchange(notMinimized_, false) || !WantsMinimized()) return;
  form_.Place(form_.Left, form_.Top, form_.Width, form_.Height, forms::Shape::Normal);
}

void TopWindow::NoticeReturn() {
  if (!windowHandle()->isExposed()) {
    wentAway_ = true;
    return;
  }
  // The window has its frame now, and where that does not move the window no event tells.
  settle_.start();
  // Called back before the toolkit had heard that it was gone, it would stay minimized to the
  // toolkit for good.
  if (wentAway_ && isMinimized()) setWindowState(windowState() & ~Qt::WindowMinimized);
}

void TopWindow::TellActivated() {
  if (told_ || loop_.Breathing() || !isActiveWindow() || loop_.MessageBoxOpen()) return;
  told_ = true;
  form_.Activate();
}

void TopWindow::BoxClosed() {
  told_ = true;
  form_.Activate();
}

bool TopWindow::event(QEvent* event) {
  switch (event->type()) {
    case QEvent::WindowActivate:
      TellActivated();
      if (!told_) settle_.start();
      break;
    case QEvent::WindowDeactivate:
      if (!loop_.MessageBoxOpen()) told_ = false;
      break;
    case QEvent::WindowStateChange:
      ShapeChanged();
      settle_.start();
      break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::Show:
      settle_.start();
      break;
    default:
      break;
  }
  return QWidget::event(event);
}

bool TopWindow::eventFilter(QObject* watched, QEvent* event) {
  if (watched == windowHandle() && event->type() == QEvent::Expose) NoticeReturn();
  return QWidget::eventFilter(watched, event);
}

void TopWindow::closeEvent(QCloseEvent* event) {
  // Closing is a request; what comes of it is the form's to say.
  event->ignore();
  binder_.ByHand(form_, [this] { form_.CloseRequest(); });
}

void TopWindow::mouseMoveEvent(QMouseEvent*) {
  if (!loop_.Breathing()) form_.PointerMove();
}

}  // namespace tavlo::platform::qt
