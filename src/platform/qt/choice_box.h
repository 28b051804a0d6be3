#pragma once

#include <QComboBox>

namespace tavlo::platform::qt {

/// A choice that has the same width whatever it holds: room for the name of a server, as most are.
/// A text that does not fit ends in an ellipsis and stands whole under its tooltip.
class ChoiceBox : public QComboBox {
 public:
  explicit ChoiceBox(QWidget* parent);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  QString Fitting() const;
};

}  // namespace tavlo::platform::qt
