#include "platform/qt/quiet_box.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QWindow>

namespace tavlo::platform::qt {
namespace {

bool IsOfAHand(const QEvent& event) {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
    case QEvent::DragEnter:
    case QEvent::DragMove:
    case QEvent::Drop:
    case QEvent::Close:
      return true;
    default:
      return false;
  }
}

}  // namespace

QuietBox::QuietBox(QDialog& dialog) : dialog_(dialog), before_(QGuiApplication::allWindows()) {
  dialog_.setWindowModality(Qt::NonModal);
  // Of a dialog without an owner some managers think that it belongs to all windows of its program,
  // and hide it when those are minimized.
  if (!dialog_.parentWidget()) {
    dialog_.setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint);
  }
  dialog_.setWindowFlag(Qt::WindowStaysOnTopHint);
}

void QuietBox::Run() {
  connect(&dialog_, &QDialog::finished, &loop_, &QEventLoop::quit);
  qGuiApp->installEventFilter(this);
  dialog_.show();
  loop_.exec();
  qGuiApp->removeEventFilter(this);
}

bool QuietBox::eventFilter(QObject* watched, QEvent* event) {
  if (!watched->isWindowType() || !before_.contains(static_cast<QWindow*>(watched))) return false;
  // Whoever comes to the deck comes to the box.
  const QEvent::Type type = event->type();
  if (type == QEvent::FocusIn || type == QEvent::MouseButtonPress || type == QEvent::KeyPress) {
    dialog_.activateWindow();
  }
  if (!IsOfAHand(*event)) return false;
  event->ignore();
  return true;
}

}  // namespace tavlo::platform::qt
