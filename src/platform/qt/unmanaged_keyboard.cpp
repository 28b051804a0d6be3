#include "platform/qt/unmanaged_keyboard.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWindow>
#include <algorithm>

#include "platform/qt/desktop_limits.h"

namespace tavlo::platform::qt {
namespace {

/// Menus and tooltips get along without.
bool TakesKeyboard(const QWindow& window) {
  const Qt::WindowType type = window.type();
  return window.isTopLevel() && type != Qt::Popup && type != Qt::ToolTip;
}

/// It came up by itself while somebody was typing elsewhere.
bool ComesQuietly(const QWindow& window) {
  return window.property("_q_showWithoutActivating").toBool();
}

}  // namespace

UnmanagedKeyboard::UnmanagedKeyboard() { qGuiApp->installEventFilter(this); }

void UnmanagedKeyboard::Forget(const QWindow* window) {
  std::erase_if(windows_, [window](const QPointer<QWindow>& known) {
    return known.isNull() || known == window;
  });
}

void UnmanagedKeyboard::GiveTo(QWindow* window) {
  Forget(window);
  windows_.emplace_back(window);
  if (QGuiApplication::focusWindow() != window && !WindowsAreManaged()) window->requestActivate();
}

bool UnmanagedKeyboard::eventFilter(QObject* watched, QEvent* event) {
  auto* const window = qobject_cast<QWindow*>(watched);
  if (!window || !TakesKeyboard(*window)) return false;
  switch (event->type()) {
    case QEvent::Expose:
      if (window->isExposed() && !ComesQuietly(*window) &&
          std::find(windows_.begin(), windows_.end(), window) == windows_.end()) {
        GiveTo(window);
      }
      break;
    case QEvent::MouseButtonPress:
      GiveTo(window);
      break;
    case QEvent::Hide:
      Forget(window);
      if (!windows_.empty()) GiveTo(windows_.back());
      break;
    default:
      break;
  }
  return false;
}

}  // namespace tavlo::platform::qt
