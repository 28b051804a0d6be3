#pragma once

#include <QFrame>
#include <vector>

#include "forms/controls.h"

class QLabel;

namespace tavlo::platform::qt {

class Binder;

/// The status bar under the keys: the details of the document, a panel each.
class StatusStrip : public QFrame {
 public:
  StatusStrip(forms::Pane& bar, Binder& binder, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void Show();

  forms::Pane& bar_;
  Binder& binder_;
  std::vector<QLabel*> panels_;
};

}  // namespace tavlo::platform::qt
