#pragma once

#include "platform/qt/roomy_key.h"

namespace tavlo::platform::qt {

/// The key off the deck that a view is there for: it wears the deck's colour.
class MainKey : public RoomyKey {
 public:
  explicit MainKey(QWidget* parent);

  /// Whether the key stops what it began: then it looks as the deck's Stop does.
  void SetStops(bool stops);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool stops_ = false;
};

}  // namespace tavlo::platform::qt
