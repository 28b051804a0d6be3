#pragma once

#include <QWidget>

#include "platform/qt/icons.h"

namespace tavlo::platform::qt {

/// The logo of a reseller on the deck, drawn in the pixels of the screen that it stands on. It has
/// no ground of its own: the face of the deck shows through, and its colours are at least as light
/// as the deck's quietest lettering, so it can be seen wherever that can be read.
class BrandLogo : public QWidget {
 public:
  BrandLogo(Brand brand, QWidget* parent);

  /// In logical pixels; the width follows from the drawing.
  void SetHeight(int height);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  const Brand brand_;
};

}  // namespace tavlo::platform::qt
