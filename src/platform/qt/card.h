#pragma once

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace tavlo::platform::qt {

/// A quiet sheet on a page of the configuration: what stands on it belongs together. It takes the
/// desktop's colours, a little lighter than the page.
class Card : public QWidget {
 public:
  explicit Card(QWidget* page);

  /// What stands on the card, line under line.
  QVBoxLayout& Lines() { return *lines_; }
  /// A label in semi-bold letters on the next line, for what the card is about.
  QLabel* AddHeading(const QString& words = {});
  /// Its colour, for what must be readable on it.
  QColor Sheet() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QVBoxLayout* lines_;
};

}  // namespace tavlo::platform::qt
