#include "platform/qt/focus_keeper.h"

#include <QApplication>

namespace tavlo::platform::qt {
namespace {

bool TakesTab(const QWidget& widget, const QWidget& window) {
  return (widget.focusPolicy() & Qt::TabFocus) != 0 && widget.isEnabled() &&
         widget.isVisibleTo(&window) && window.isAncestorOf(&widget);
}

}  // namespace

FocusKeeper::FocusKeeper(QWidget* window) : QWidget(window) {
  setFixedSize(0, 0);
  setFocus();
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
    if (now != this || !before || !this->window()->isAncestorOf(before)) return;
    if ((before->focusPolicy() & Qt::TabFocus) != 0) giver_ = before;
  });
}

void FocusKeeper::TakeFrom(const QWidget& widget) {
  const QWidget* const window = widget.window();
  const QWidget* const holder = window->focusWidget();
  if (!holder || (holder != &widget && !widget.isAncestorOf(holder))) return;
  for (QObject* const child : window->children()) {
    if (auto* const keeper = dynamic_cast<FocusKeeper*>(child)) keeper->setFocus();
  }
}

bool FocusKeeper::focusNextPrevChild(bool next) {
  if (!giver_) return QWidget::focusNextPrevChild(next);
  QWidget* to = next ? giver_->nextInFocusChain() : giver_.data();
  while (to != this && !TakesTab(*to, *window())) {
    to = next ? to->nextInFocusChain() : to->previousInFocusChain();
    if (to == giver_) break;
  }
  // The keeper stands last: past it the order begins anew.
  if (to == this || !TakesTab(*to, *window())) return QWidget::focusNextPrevChild(next);
  to->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

}  // namespace tavlo::platform::qt
