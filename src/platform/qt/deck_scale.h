#pragma once

#include <QFont>
#include <QMargins>
#include <QRect>
#include <QSize>
#include <functional>
#include <vector>

namespace tavlo::platform::qt {

/// How large the deck is beside the size that it was drawn in. It grows with the desktop's letters
/// as far as the screen has room for it, and as a whole, so that what fits as it was drawn fits at
/// every size. It never shrinks.
class DeckScale {
 public:
  /// Takes the size that the desktop's letters ask for, or the largest below it at which `drawn`
  /// fits into `room`, in steps of a twentieth. All in logical pixels.
  void Follow(QSize drawn, QSize room);

  double Factor() const { return factor_; }
  bool Grown() const { return factor_ > 1; }

  /// A measure of the deck as it was drawn, at the size that it has now.
  double operator()(double drawn) const { return drawn * factor_; }
  int operator()(int drawn) const;
  QSize operator()(QSize drawn) const;
  QRect operator()(const QRect& drawn) const;
  QMargins operator()(const QMargins& drawn) const;

  /// Runs now, and again whenever letters or size may have changed.
  void Fit(std::function<void()> measure);

 private:
  double factor_ = 1;
  QFont letters_;
  std::vector<std::function<void()>> measures_;
};

}  // namespace tavlo::platform::qt
