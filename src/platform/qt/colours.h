#pragma once

#include <QColor>

namespace tavlo::platform::qt {

/// Luminance of a colour: its red, green and blue weighted as the eye does.
double Luminance(const QColor& colour);

/// From 1 for equal colours to 21 for black on white.
double Contrast(const QColor& a, const QColor& b);

/// What small letters need at least, with a little to spare for rounding.
inline constexpr double kReadableContrast = 4.6;

/// The same hue, made just dark or light enough to be read on the background.
QColor Readable(QColor colour, const QColor& background);

/// `share` of `b` on `a`, from 0 to 1.
QColor Mixed(const QColor& a, const QColor& b, double share);

}  // namespace tavlo::platform::qt
