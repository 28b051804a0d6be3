#include "contrast.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace tavlo::test {
namespace {

/// Colours that differ by less are one colour to the histogram.
constexpr int kStepBits = 3;
constexpr int kSteps = 256 >> kStepBits;
/// What is closer to the ground than this is no stroke.
constexpr double kFaintest = 1.15;
/// One pixel in so many of the strokes is as strong as they get.
constexpr std::size_t kStrongest = 40;
constexpr std::size_t kFewest = 3;

struct Mean {
  int count = 0;
  int red = 0;
  int green = 0;
  int blue = 0;

  void Add(QRgb colour) {
    ++count;
    red += qRed(colour);
    green += qGreen(colour);
    blue += qBlue(colour);
  }
  QColor Colour() const {
    return count == 0 ? QColor() : QColor(red / count, green / count, blue / count);
  }
};

std::size_t StepOf(QRgb colour) {
  const int red = qRed(colour) >> kStepBits;
  const int green = qGreen(colour) >> kStepBits;
  const int blue = qBlue(colour) >> kStepBits;
  return static_cast<std::size_t>((red * kSteps + green) * kSteps + blue);
}

/// The light of each step of a colour's part. A picture has millions of pixels, and the program
/// stands still while it is measured.
std::array<double, 256> MakeLights() {
  std::array<double, 256> lights{};
  for (std::size_t step = 0; step < lights.size(); ++step) {
    const double part = static_cast<double>(step) / 255;
    lights[step] = part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
  }
  return lights;
}

double Luminance(const QColor& colour) {
  static const std::array<double, 256> lights = MakeLights();
  const auto light = [](int part) { return lights[static_cast<std::size_t>(part)]; };
  return 0.2126 * light(colour.red()) + 0.7152 * light(colour.green()) +
         0.0722 * light(colour.blue());
}

QColor CommonestOf(const std::vector<QRgb>& pixels) {
  std::vector<Mean> steps(static_cast<std::size_t>(kSteps) * kSteps * kSteps);
  for (const QRgb pixel : pixels) steps[StepOf(pixel)].Add(pixel);
  const auto most = std::max_element(
      steps.begin(), steps.end(), [](const Mean& a, const Mean& b) { return a.count < b.count; });
  return most->Colour();
}

}  // namespace

double ContrastOf(const QColor& a, const QColor& b) {
  const double first = Luminance(a) + 0.05;
  const double second = Luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

Inking Measure(const QImage& picture, const QRect& place) {
  const QRect inside = place.intersected(picture.rect());
  if (inside.isEmpty()) return {};
  std::vector<QRgb> pixels;
  for (int y = inside.top(); y <= inside.bottom(); ++y) {
    for (int x = inside.left(); x <= inside.right(); ++x) pixels.push_back(picture.pixel(x, y));
  }
  Inking seen{.ground = CommonestOf(pixels)};
  struct Stroke {
    double contrast;
    QRgb colour;
  };
  std::vector<Stroke> strokes;
  for (const QRgb pixel : pixels) {
    const double contrast = ContrastOf(pixel, seen.ground);
    if (contrast >= kFaintest) strokes.push_back({contrast, pixel});
  }
  if (strokes.empty()) return seen;
  const std::size_t count =
      std::min(strokes.size(), std::max(kFewest, strokes.size() / kStrongest));
  std::partial_sort(strokes.begin(), strokes.begin() + static_cast<std::ptrdiff_t>(count),
                    strokes.end(),
                    [](const Stroke& a, const Stroke& b) { return a.contrast > b.contrast; });
  Mean ink;
  for (std::size_t i = 0; i < count; ++i) ink.Add(strokes[i].colour);
  seen.ink = ink.Colour();
  seen.contrast = ContrastOf(seen.ink, seen.ground);
  return seen;
}

}  // namespace tavlo::test
