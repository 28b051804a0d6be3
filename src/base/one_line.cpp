#include "base/one_line.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tavlo::base {
namespace {

constexpr std::array<std::uint32_t, 5> kLeastOfLength{0, 0, 0x80, 0x800, 0x10000};

struct Character {
  std::size_t length = 1;  ///< In bytes.
  bool valid = false;
  std::uint32_t code = 0;
};

unsigned char ByteAt(std::string_view text, std::size_t at) {
  return static_cast<unsigned char>(text[at]);
}

std::size_t LengthOf(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC0 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF8 ? 4 : 0;
}

/// The first character of a text that is not empty; a byte that begins none is one by itself.
Character FirstOf(std::string_view text) {
  const unsigned char lead = ByteAt(text, 0);
  const std::size_t length = LengthOf(lead);
  if (length == 0 || length > text.size()) return {};
  std::uint32_t code = length == 1 ? lead : lead & (0x7Fu >> length);
  for (std::size_t i = 1; i < length; ++i) {
    const unsigned char next = ByteAt(text, i);
    if ((next & 0xC0) != 0x80) return {};
    code = code << 6 | (next & 0x3Fu);
  }
  const bool surrogate = code >= 0xD800 && code < 0xE000;
  if (code < kLeastOfLength[length] || code > 0x10FFFF || surrogate) return {};
  return {.length = length, .valid = true, .code = code};
}

bool StaysInItsLine(std::uint32_t code) {
  const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
  const bool breaksLine = code == 0x2028 || code == 0x2029;
  const bool turnsDirection = code == 0x061C || code == 0x200E || code == 0x200F ||
                              (code >= 0x202A && code <= 0x202E) ||
                              (code >= 0x2066 && code <= 0x2069);
  return !control && !breaksLine && !turnsDirection;
}

void AddAsDigits(std::string& line, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    const unsigned byte = ByteAt(bytes, at);
    line.append("\\x").append({kDigits[byte >> 4], kDigits[byte & 0xF]});
  }
}

/// Calls `take` with the bytes of each character and whether they may stand in a line.
template <typename Take>
void ForEachCharacter(std::string_view text, Take take) {
  while (!text.empty()) {
    const Character first = FirstOf(text);
    take(text.substr(0, first.length), first.valid && StaysInItsLine(first.code));
    text.remove_prefix(first.length);
  }
}

}  // namespace

std::string OneLine(std::string_view text) {
  std::string line;
  ForEachCharacter(text, [&line](std::string_view bytes, bool stays) {
    if (stays) {
      line += bytes;
    } else {
      AddAsDigits(line, bytes);
    }
  });
  return line;
}

std::string ShownPart(std::string_view text) {
  std::string line;
  ForEachCharacter(text, [&line](std::string_view bytes, bool stays) {
    if (stays) line += bytes;
  });
  return line;
}

}  // namespace tavlo::base
