#include "platform/qt/deck_scale.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>
#include <cmath>
#include <utility>

namespace tavlo::platform::qt {
namespace {

constexpr double kPointsInInch = 72;
/// Height of the desktop's letters beside which the deck was drawn: ten points at 96 to the inch.
constexpr double kUsualLetters = 10 * 96 / kPointsInInch;
constexpr double kSteps = 20;
/// A whole number of steps may come out of the arithmetic a little too small.
constexpr double kSlightlyMore = 1e-6;

double LettersOfTheDesktop() {
  const QFont font = QApplication::font();
  if (font.pixelSize() > 0) return font.pixelSize();
  return font.pointSizeF() * QGuiApplication::primaryScreen()->logicalDotsPerInchY() /
         kPointsInInch;
}

}  // namespace

void DeckScale::Follow(QSize drawn, QSize room) {
  const double fits = std::min(static_cast<double>(room.width()) / drawn.width(),
                               static_cast<double>(room.height()) / drawn.height());
  const double asked = std::min(LettersOfTheDesktop() / kUsualLetters, fits);
  const double factor = std::max(1.0, std::floor(asked * kSteps + kSlightlyMore) / kSteps);
  if (factor == factor_ && letters_ == QApplication::font()) return;
  factor_ = factor;
  letters_ = QApplication::font();
  for (const auto& measure : measures_) measure();
}

int DeckScale::operator()(int drawn) const {
  return static_cast<int>(std::lround(drawn * factor_));
}

QSize DeckScale::operator()(QSize drawn) const {
  return {(*this)(drawn.width()), (*this)(drawn.height())};
}

QRect DeckScale::operator()(const QRect& drawn) const {
  return {(*this)(drawn.x()), (*this)(drawn.y()), (*this)(drawn.width()), (*this)(drawn.height())};
}

QMargins DeckScale::operator()(const QMargins& drawn) const {
  return {(*this)(drawn.left()), (*this)(drawn.top()), (*this)(drawn.right()),
          (*this)(drawn.bottom())};
}

void DeckScale::Fit(std::function<void()> measure) {
  measure();
  measures_.push_back(std::move(measure));
}

}  // namespace tavlo::platform::qt
