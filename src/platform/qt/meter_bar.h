#pragma once

#include <QWidget>

namespace tavlo::platform::qt {

/// A row of lamps for a level from 0 to 100. It moves twenty times a second, so a change paints
/// only the lamps between the old end and the new one.
class MeterBar : public QWidget {
 public:
  explicit MeterBar(QWidget* parent = nullptr);

  void SetLevel(int level);
  int Level() const { return level_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int EndOf(int level) const;

  int level_ = 0;
};

}  // namespace tavlo::platform::qt
