#pragma once

#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {

/// The key off the deck that a view is there for: it wears the deck's colour.
class MainKey : public RoomyKey {
 public:
  explicit MainKey(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tavlo::platform::qt
