#include "reports/column_text.h"

#include <algorithm>
#include <array>

#include "base/text.h"

namespace tavlo::reports {
namespace {

/// What ends a line in some readers, or turns the direction of all that follows in it.
constexpr std::array<std::string_view, 14> kLineOrDirection{
    "\u2028", "\u2029", "\u061C", "\u200E", "\u200F", "\u202A", "\u202B",
    "\u202C", "\u202D", "\u202E", "\u2066", "\u2067", "\u2068", "\u2069"};

constexpr std::string_view kNotText = "\xEF\xBF\xBD";

bool IsPlain(char c) { return c >= ' ' && c <= '~'; }

unsigned ByteAt(std::string_view character, std::size_t at) {
  return static_cast<unsigned char>(character[at]);
}

/// The second byte of a long character tells forms that UTF-8 forbids: longer than they need be,
/// half of a pair, or past the last character.
bool IsForbidden(std::string_view character) {
  const unsigned second = ByteAt(character, 1);
  switch (ByteAt(character, 0)) {
    case 0xE0:
      return second < 0xA0;
    case 0xED:
      return second >= 0xA0;
    case 0xF0:
      return second < 0x90;
    case 0xF4:
      return second >= 0x90;
    default:
      return false;
  }
}

/// What a reader of plain text takes for the end of a line, or for a command.
bool IsControl(std::string_view character) {
  if (character.size() == 1) return !IsPlain(character[0]);
  if (ByteAt(character, 0) == 0xC2 && ByteAt(character, 1) < 0xA0) return true;
  return std::ranges::find(kLineOrDirection, character) != kLineOrDirection.end();
}

/// The character as it may stand in a line.
std::string_view Harmless(std::string_view character) {
  const bool stray = character.size() == 1 && ByteAt(character, 0) >= 0x80;
  if (stray || (character.size() > 2 && IsForbidden(character))) return kNotText;
  return IsControl(character) ? "?" : character;
}

}  // namespace

void ColumnText::Put(std::string_view text) {
  while (!text.empty()) {
    const auto plain =
        static_cast<std::size_t>(std::ranges::find_if_not(text, IsPlain) - text.begin());
    text_ += text.substr(0, plain);
    column_ += plain;
    text.remove_prefix(plain);
    if (text.empty()) return;
    const std::string_view character = base::FirstCharacters(text, 1);
    text_ += Harmless(character);
    ++column_;
    text.remove_prefix(character.size());
  }
}

void ColumnText::PutAt(std::size_t column, std::string_view text) {
  if (column_ > column) EndLine();
  text_.append(column - column_, ' ');
  column_ = column;
  Put(text);
}

void ColumnText::EndLine() {
  text_ += '\n';
  column_ = 1;
}

}  // namespace tavlo::reports
