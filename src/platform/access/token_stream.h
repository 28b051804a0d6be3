#pragma once

#include <charconv>
#include <optional>
#include <string>
#include <string_view>

/// How the program that reads Access files tells what it found: tokens of any bytes, each with its
/// length in front ("4:text,"). A "table" is followed by its name, a "row" stands before each row,
/// and a "field" is followed by its name and its value. A row is whole once "rowend" has come.
namespace tavlo::platform::tokens {

inline constexpr std::string_view kTable = "table";
inline constexpr std::string_view kField = "field";
inline constexpr std::string_view kRowEnd = "rowend";

inline std::string Written(std::string_view token) {
  return std::to_string(token.size()) + ":" + std::string(token) + ",";
}

/// Takes the first token off the text; nothing when none stands there whole.
inline std::optional<std::string_view> Take(std::string_view& text) {
  std::size_t size = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), size);
  if (error != std::errc()) return {};
  const auto digits = static_cast<std::size_t>(end - text.data());
  const std::string_view rest = text.substr(digits);
  if (!rest.starts_with(':') || size > rest.size() || rest.size() - size < 2) return {};
  if (rest[size + 1] != ',') return {};
  const std::string_view token = rest.substr(1, size);
  text = rest.substr(size + 2);
  return token;
}

}  // namespace tavlo::platform::tokens
