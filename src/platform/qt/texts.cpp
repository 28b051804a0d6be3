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
  return text.isEmpty() ? text : "<qt>" + text.toHtmlEscaped() + "</qt>";
}

QString WithoutMnemonic(std::string_view caption) { return ToQt(caption).remove(u'&'); }

std::string FromQt(const QString& text) { return text.toStdString(); }

}  // namespace tavlo::platform::qt
