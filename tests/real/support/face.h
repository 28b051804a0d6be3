#pragma once

#include <QApplication>
#include <QWidget>

#include "platform/qt/fascia_panel.h"

namespace tavlo::test {

/// Whether the picture on the face of a deck is still to come. On the toolkit's thread.
inline bool FaceIsOnItsWay() {
  for (const QWidget* const widget : QApplication::allWidgets()) {
    const auto* const face = dynamic_cast<const platform::qt::FasciaPanel*>(widget);
    if (face && face->IsReading()) return true;
  }
  return false;
}

}  // namespace tavlo::test
