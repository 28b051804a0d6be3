#pragma once

#include <QLineEdit>

namespace tavlo::platform::qt {

/// A box for a password. Each character shows as an asterisk at once, and what stands in it can be
/// neither copied nor asked for, by a screen reader or by an input method.
class SecretBox : public QLineEdit {
 public:
  explicit SecretBox(QWidget* parent);

  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
};

}  // namespace tavlo::platform::qt
