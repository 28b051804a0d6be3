#include "platform/curl/server_replies.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace tavlo::platform {
namespace {

constexpr std::string_view kDigits = "0123456789";

/// The whole number that the text begins with, taken off it.
std::optional<std::int64_t> TakeNumber(std::string_view& text) {
  std::int64_t number = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  if (read.ec != std::errc{} || number < 0 || text.starts_with('-')) return {};
  text.remove_prefix(static_cast<std::size_t>(read.ptr - text.data()));
  return number;
}

std::optional<std::uint16_t> AsPort(std::int64_t number) {
  if (number < 1 || number > 65535) return {};
  return static_cast<std::uint16_t>(number);
}

bool Contains(std::string_view text, std::string_view part) {
  for (std::size_t at = 0; at + part.size() <= text.size(); ++at) {
    if (base::StartsInEitherCase(text.substr(at), part)) return true;
  }
  return false;
}

/// The value of a fact, up to its ';'.
std::string_view FactOf(std::string_view facts, std::string_view name) {
  while (!facts.empty()) {
    const std::size_t end = std::min(facts.find(';'), facts.size());
    const std::string_view fact = facts.substr(0, end);
    if (base::StartsInEitherCase(fact, name)) return fact.substr(name.size());
    facts.remove_prefix(std::min(end + 1, facts.size()));
  }
  return {};
}

bool IsFile(std::string_view type) {
  return type.size() == 4 && base::StartsInEitherCase(type, "file");
}

}  // namespace

std::optional<std::uint16_t> ExtendedPassivePort(const ServerReply& reply) {
  std::string_view text = reply.text;
  const std::size_t bracket = text.find('(');
  if (bracket == text.npos || text.size() < bracket + 5) return {};
  text.remove_prefix(bracket + 1);
  const char separator = text[0];
  if (text[1] != separator || text[2] != separator) return {};
  text.remove_prefix(3);
  const auto port = TakeNumber(text);
  if (!port || !text.starts_with(separator)) return {};
  return AsPort(*port);
}

std::optional<std::uint16_t> PassivePort(const ServerReply& reply) {
  // Some servers leave out the brackets, so the numbers are looked for behind the code.
  std::string_view text =
      std::string_view(reply.text).substr(std::min<std::size_t>(3, reply.text.size()));
  text.remove_prefix(std::min(text.find_first_of(kDigits), text.size()));
  std::int64_t numbers[6] = {};
  for (std::int64_t& number : numbers) {
    if (&number != numbers) {
      if (!text.starts_with(',')) return {};
      text.remove_prefix(1);
    }
    const auto read = TakeNumber(text);
    if (!read || *read > 255) return {};
    number = *read;
  }
  return AsPort(numbers[4] * 256 + numbers[5]);
}

std::optional<std::int64_t> SizeIn(const ServerReply& reply) {
  std::string_view text = reply.text;
  if (reply.code != 213 || text.size() < 5) return {};
  text.remove_prefix(4);
  const auto size = TakeNumber(text);
  return text.empty() || text.starts_with('\n') || text.starts_with(' ') ? size : std::nullopt;
}

std::optional<std::int64_t> FactsSizeIn(const ServerReply& reply) {
  std::string_view text = reply.text;
  if (!reply.IsGood()) return {};
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    if (!line.starts_with(' ')) continue;
    line.remove_prefix(1);
    const std::string_view facts = line.substr(0, line.find(' '));
    const std::string_view type = FactOf(facts, "type=");
    if (!type.empty() && !IsFile(type)) return {};
    std::string_view size = FactOf(facts, "size=");
    const auto number = TakeNumber(size);
    return size.empty() ? number : std::nullopt;
  }
  return {};
}

std::optional<std::int64_t> AnnouncedSize(const ServerReply& reply) {
  std::string_view text = reply.text;
  while (true) {
    const std::size_t bracket = text.find('(');
    if (bracket == text.npos) return {};
    text.remove_prefix(bracket + 1);
    std::string_view behind = text;
    const auto size = TakeNumber(behind);
    if (size && base::StartsInEitherCase(behind, " bytes")) return size;
  }
}

bool WantsProtection(const ServerReply& reply) {
  if (reply.code < 400) return false;
  return Contains(reply.text, "TLS") || Contains(reply.text, "SSL") ||
         Contains(reply.text, "encrypt");
}

bool SaysNoFiles(const ServerReply& reply) {
  return reply.code == 450 || Contains(reply.text, "no files") ||
         Contains(reply.text, "no such file") || Contains(reply.text, "not found");
}

}  // namespace tavlo::platform
