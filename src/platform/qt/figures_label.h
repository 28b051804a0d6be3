#pragma once

#include <QLabel>

namespace tavlo::platform::qt {

/// A running time. It has a name of its own, so that the toolkit does not tell a screen reader
/// about every second; asked, it says name and figures.
class FiguresLabel : public QLabel {
 public:
  using QLabel::QLabel;

  /// The figures in one line.
  QString Figures() const { return text().replace(u'\n', u' '); }
};

}  // namespace tavlo::platform::qt
