#pragma once

#include <QFrame>
#include <vector>

#include "forms/controls.h"

namespace tavlo::platform::qt {

class Binder;
class DeckScale;
class ElidingLabel;

/// The status bar under the keys: the details of the document, a panel each.
class StatusStrip : public QFrame {
 public:
  StatusStrip(forms::Pane& bar, Binder& binder, DeckScale& scale, QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  void Show();
  void FitPanels(const DeckScale& scale);

  forms::Pane& bar_;
  Binder& binder_;
  std::vector<ElidingLabel*> panels_;
};

}  // namespace tavlo::platform::qt
