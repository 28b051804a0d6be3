#pragma once

#include <QDateTime>
#include <QPixmap>
#include <QWidget>

#include "forms/main_form.h"

namespace tavlo::platform::qt {

class Binder;

/// The deck's background, as wide as its parent: the fascia picture, or a plain dark face when
/// there is none. It consists of two halves that take clicks, and stands behind everything on the
/// deck. A picture that is too bright for the deck's lettering is darkened.
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
  QPixmap face_;  ///< The picture at the size of the panel, in pixels of the screen.
};

}  // namespace tavlo::platform::qt
