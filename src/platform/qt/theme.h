#pragma once

#include <QColor>
#include <QFont>
#include <cmath>

#include "forms/controls.h"

/// The deck's colours and measures. Everything under the deck keeps the desktop's own palette.
namespace tavlo::platform::qt {

namespace theme {
inline constexpr QColor kDeckTop{0x2B, 0x34, 0x3F};
inline constexpr QColor kDeckBottom{0x18, 0x1E, 0x26};
inline constexpr QColor kWell{0x0A, 0x0E, 0x12};
inline constexpr QColor kWellEdge{0x2A, 0x32, 0x3B};
inline constexpr QColor kStrip{0x10, 0x15, 0x1C};
inline constexpr QColor kText{0xE8, 0xED, 0xF2};
inline constexpr QColor kQuietText{0xA9, 0xB4, 0xC0};
inline constexpr QColor kDisabledText{0x74, 0x7E, 0x89};
inline constexpr QColor kAmber{0xFF, 0xB0, 0x4A};
inline constexpr QColor kDimAmber{0xA8, 0x7C, 0x40};
inline constexpr QColor kTeal{0x2E, 0xC4, 0xB6};
inline constexpr QColor kQuietKey{0x43, 0x4E, 0x5A};
inline constexpr QColor kAmberKey{0xF5, 0x9F, 0x36};
inline constexpr QColor kDisabledKey{0xFF, 0xFF, 0xFF, 0x12};
inline constexpr QColor kKeyEdge{0x0B, 0x0F, 0x14};
inline constexpr QColor kKeyShine{0xFF, 0xFF, 0xFF, 0x2C};
inline constexpr QColor kHandle{0xC9, 0xD2, 0xDB};
inline constexpr QColor kIdleHandle{0x5A, 0x64, 0x70};
inline constexpr QColor kMeterAmber{0xF4, 0xC1, 0x5C};
inline constexpr QColor kMeterRed{0xE8, 0x6A, 0x4E};
inline constexpr QColor kRed{0xFF, 0x6B, 0x5E};
inline constexpr QColor kOnBright{0x10, 0x18, 0x1C};
}  // namespace theme

inline constexpr int kTwipsInPixel = 15;

inline int ToPixels(forms::Twips length) {
  return static_cast<int>(std::lround(static_cast<double>(length) / kTwipsInPixel));
}
inline forms::Twips ToTwips(int pixels) { return pixels * kTwipsInPixel; }

/// The deck's lettering at a size in logical pixels.
QFont DeckFont(int pixelSize, QFont::Weight weight = QFont::Normal);
/// Letters of equal width, for figures that must not dance.
QFont FiguresFont(int pixelSize);

}  // namespace tavlo::platform::qt
