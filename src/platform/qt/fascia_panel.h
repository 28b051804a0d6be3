#pragma once

#include <QPixmap>
#include <QWidget>

#include "forms/main_form.h"
#include "platform/qt/picture_reader.h"

namespace tavlo::platform::qt {

class Binder;

/// The deck's background, as wide as its parent: the fascia picture, or a plain dark face when
/// there is none. It consists of two halves that take clicks, and stands behind everything on the
/// deck. A picture is read beside the loop and shows when it has come; one that is too bright for
/// the deck's lettering is darkened. The face stays as it is where a picture cannot be read.
class FasciaPanel : public QWidget {
 public:
  FasciaPanel(forms::MainForm& form, Binder& binder, QWidget* deck);

  /// Whether a picture is on its way.
  bool IsReading() const { return reader_.IsReading(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  class Half;

  void Read();
  void Show(const QImage& picture);

  forms::MainForm& form_;
  PictureReader reader_;
  Half* left_;
  Half* right_;
  QPixmap picture_;
  QPixmap face_;  ///< The picture at the size of the panel, in pixels of the screen.
};

}  // namespace tavlo::platform::qt
