#pragma once

#include <QProgressBar>

namespace tavlo::platform::qt {

/// A progress of 0 to 100 as a thin line under the figures that say it.
class ThinBar : public QProgressBar {
 public:
  explicit ThinBar(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tavlo::platform::qt
