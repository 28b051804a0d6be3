#pragma once

#include <QApplication>

namespace tavlo::test {

/// A desktop with letters of that size in points, until it goes.
class DesktopLetters {
 public:
  explicit DesktopLetters(int points) { Resize(points); }
  ~DesktopLetters() { QApplication::setFont(usual_); }
  DesktopLetters(const DesktopLetters&) = delete;

  void Resize(int points) {
    QFont own = usual_;
    own.setPointSize(points);
    QApplication::setFont(own);
  }

 private:
  const QFont usual_ = QApplication::font();
};

}  // namespace tavlo::test
