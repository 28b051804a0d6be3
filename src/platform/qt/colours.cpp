#include "platform/qt/colours.h"

#include <algorithm>
#include <cmath>

namespace tavlo::platform::qt {

double Luminance(const QColor& colour) {
  const auto linear = [](double part) {
    return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

double Contrast(const QColor& a, const QColor& b) {
  const double first = Luminance(a) + 0.05;
  const double second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

QColor Readable(QColor colour, const QColor& background) {
  const QColor end =
      Contrast(Qt::black, background) > Contrast(Qt::white, background) ? Qt::black : Qt::white;
  for (int step = 0; step < 40 && Contrast(colour, background) < kReadableContrast; ++step) {
    colour = Mixed(colour, end, 0.1);
  }
  return colour;
}

QColor Mixed(const QColor& a, const QColor& b, double share) {
  const auto mix = [share](int x, int y) {
    return static_cast<int>(std::lround(x + (y - x) * share));
  };
  return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

}  // namespace tavlo::platform::qt
