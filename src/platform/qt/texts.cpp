#include "platform/qt/texts.h"

#include <algorithm>

namespace tavlo::platform::qt {
namespace {

bool TurnsDirection(char16_t c) {
  return c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

QChar Visible(QChar character) {
  const char16_t c = character.unicode();
  if (c < 0x20) return QChar(static_cast<char16_t>(0x2400 + c));
  if (c == 0x7F) return QChar(u'\u2421');
  const bool breaksLine = c == 0x85 || c == 0x2028 || c == 0x2029;
  const bool control = c > 0x7F && c < 0xA0;
  return breaksLine || control || TurnsDirection(c) ? QChar(QChar::ReplacementCharacter)
                                                    : character;
}

/// Of a text that is longer than this so much is shown of its beginning and of its end.
constexpr qsizetype kMostShown = 1200;
constexpr qsizetype kBeginning = 800;
constexpr qsizetype kEnd = 300;
/// Characters without a place to break that fit any screen.
constexpr int kLongestWord = 120;

QString WithoutMiddle(const QString& text) {
  // No character is cut through that takes two places.
  const qsizetype begin = text[kBeginning].isLowSurrogate() ? kBeginning - 1 : kBeginning;
  const qsizetype end = text[text.size() - kEnd].isLowSurrogate() ? kEnd - 1 : kEnd;
  return text.first(begin) + QStringLiteral(u" \u2026 ") + text.last(end);
}

QString WithPlacesToBreak(const QString& text) {
  QString broken;
  int word = 0;
  for (const QChar character : text) {
    const bool breaks = character.isSpace() || character == u'/';
    if (word >= kLongestWord && !breaks && !character.isLowSurrogate()) {
      broken += QChar(u'\u200B');
      word = 0;
    }
    broken += character;
    word = breaks ? 0 : word + 1;
  }
  return broken;
}

}  // namespace

QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

QString ToOneLine(std::string_view text) {
  QString shown = ToQt(text);
  std::transform(shown.cbegin(), shown.cend(), shown.begin(), Visible);
  return shown;
}

QString ToTooltip(const QString& text) {
  return text.isEmpty() ? text : "<qt>" + ToScreen(text).toHtmlEscaped() + "</qt>";
}

QString ToScreen(const QString& text) {
  return WithPlacesToBreak(text.size() > kMostShown ? WithoutMiddle(text) : text);
}

QString WithoutMnemonic(std::string_view caption) { return ToQt(caption).remove(u'&'); }

std::string FromQt(const QString& text) { return text.toStdString(); }

}  // namespace tavlo::platform::qt
