#pragma once

#include <QWidget>

namespace tavlo::platform::qt {

/// A row of lamps for a level from 0 to 100. It moves twenty times a second, so a change paints
/// only the lamps between the old end and the new one.
class MeterBar : public QWidget {
 public:
  explicit MeterBar(QWidget* parent = nullptr);

  void SetLevel(int level);
  /// Height of the row and width of a lamp; the gap behind each is a quarter of it.
  void SetLamps(int height, int width);
  int Level() const { return level_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  int EndOf(int level) const;

  int Pitch() const;

  int level_ = 0;
  int lamp_ = 4;
};

}  // namespace tavlo::platform::qt
