#include "platform/qt/focus_keeper.h"

#include <QApplication>

namespace tavlo::platform::qt {

FocusKeeper::FocusKeeper(QWidget* window) : QWidget(window) {
  setFixedSize(0, 0);
  setFocus();
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* before, QWidget* now) {
    if (now == this && before) StandBehind(before);
  });
}

void FocusKeeper::StandBehind(QWidget* before) {
  const bool reachedByTab = (before->focusPolicy() & Qt::TabFocus) != 0;
  if (reachedByTab && window()->isAncestorOf(before)) setTabOrder(before, this);
}

}  // namespace tavlo::platform::qt
