#pragma once

#include <QColor>
#include <QImage>
#include <QRect>

namespace tavlo::test {

/// What a place of a picture is drawn in, as the eye gets it.
struct Inking {
  QColor ground;        ///< The colour that most of the place has.
  QColor ink;           ///< The mean of the strongest strokes on it.
  double contrast = 1;  ///< Between the two, from 1 (nothing is drawn there) to 21.
};

/// Ratio of the luminances of two colours after WCAG 2.1, from 1 to 21.
double ContrastOf(const QColor& a, const QColor& b);

/// Measures what is drawn in that rectangle of the picture, in its pixels. Soft edges of letters
/// lie between ink and ground, so the ink is taken where the strokes are strongest.
Inking Measure(const QImage& picture, const QRect& place);

}  // namespace tavlo::test
