#pragma once

#include <QDateTime>
#include <QPixmap>
#include <QWidget>

#include "forms/main_form.h"

namespace tavlo::platform::qt {

class Binder;

/// The deck's background, as wide as its parent: the fascia picture (or the plain dark face when
/// there is none), in two halves that a click changes. Stands behind everything on the deck, and is
/// darkened where the deck's lettering would not be readable on it.
class FasciaPanel : public QWidget {
 public:
  FasciaPanel(forms::MainForm& form, Binder& binder, QWidget* deck);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Half;

  void Show();

  forms::MainForm& form_;
  Half* left_;
  Half* right_;
  QString path_;
  QDateTime stamp_;
  QPixmap picture_;
  QPixmap face_;  ///< What is painted, ready in the screen's own pixels.
};

}  // namespace tavlo::platform::qt
