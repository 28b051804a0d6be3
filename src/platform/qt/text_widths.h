#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QHash>
#include <QString>

namespace tavlo::platform::qt {

/// Letters end between two pixels, and at a scale that is no whole number they are drawn a little
/// wider than they are measured. So many pixels more have room for them.
inline constexpr int kLetterRounding = 2;

/// How wide texts are, in pixels, remembered: to shape the letters of a page of a list takes longer
/// than all else that is done to show it, and most of its texts have been there before.
class TextWidths {
 public:
  /// In the font that was asked for last, which is forgotten with all its widths for another.
  int Of(const QString& text, const QFont& font) {
    if (font != font_ || widths_.size() >= kMost) {
      font_ = font;
      widths_.clear();
    }
    const auto known = widths_.constFind(text);
    if (known != widths_.constEnd()) return *known;
    return *widths_.insert(text, QFontMetrics(font).horizontalAdvance(text));
  }

 private:
  static constexpr qsizetype kMost = 10'000;

  QFont font_;
  QHash<QString, int> widths_;
};

}  // namespace tavlo::platform::qt
