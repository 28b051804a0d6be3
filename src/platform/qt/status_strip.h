#pragma once

#include <QFrame>
#include <vector>

#include "forms/controls.h"

class QColor;

namespace tavlo::platform::qt {

class Binder;
class DeckScale;
class ElidingLabel;

/// The status bar under the keys: the details of the document, a panel each. While the quiet line
/// has something to say it stands in their place.
class StatusStrip : public QFrame {
 public:
  StatusStrip(forms::Pane& bar, forms::Text& notice, Binder& binder, DeckScale& scale,
              QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;

 private:
  ElidingLabel* AddLabel(const QColor& colour);
  void Show();
  void FitPanels(const DeckScale& scale);

  forms::Pane& bar_;
  forms::Text& notice_;
  Binder& binder_;
  std::vector<ElidingLabel*> panels_;
  ElidingLabel* line_ = nullptr;
};

}  // namespace tavlo::platform::qt
