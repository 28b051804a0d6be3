#include "ftp/server_address.h"

#include <algorithm>
#include <charconv>

#include "base/text.h"

namespace tavlo::ftp {
namespace {

struct Scheme {
  std::string_view prefix;
  Protection protection;
  int port;
};

constexpr Scheme kSchemes[] = {
    {"ftps://", Protection::ImplicitTls, 990},
    {"ftpes://", Protection::ExplicitTls, 21},
    {"ftp://", Protection::None, 21},
};

constexpr std::string_view kBlanks = " \t";

std::string_view WithoutBlanksAround(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

bool IsOfAHost(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '-' || character == '.' ||
         character == '_';
}

bool IsOfAnIpv6Address(char character) {
  return (character >= 'a' && character <= 'f') || (character >= 'A' && character <= 'F') ||
         (character >= '0' && character <= '9') || character == ':' || character == '.';
}

bool IsHost(std::string_view host) {
  return !host.empty() && host.front() != '-' && std::ranges::all_of(host, IsOfAHost);
}

bool IsIpv6Address(std::string_view host) {
  return std::ranges::count(host, ':') >= 2 && std::ranges::all_of(host, IsOfAnIpv6Address);
}

std::optional<int> ReadPort(std::string_view digits) {
  int port = 0;
  const char* const end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, port);
  if (read.ec != std::errc{} || read.ptr != end || port < 1 || port > 65535) return {};
  return port;
}

}  // namespace

std::optional<ServerAddress> ReadServerAddress(std::string_view text) {
  ServerAddress address;
  text = WithoutBlanksAround(text);
  for (const Scheme& scheme : kSchemes) {
    if (!base::StartsInEitherCase(text, scheme.prefix)) continue;
    text.remove_prefix(scheme.prefix.size());
    address.protection = scheme.protection;
    address.port = scheme.port;
    break;
  }
  if (text.ends_with('/')) text.remove_suffix(1);
  std::string_view port;
  if (text.starts_with('[')) {
    const std::size_t bracket = text.find(']');
    if (bracket == text.npos) return {};
    address.host = text.substr(1, bracket - 1);
    port = text.substr(bracket + 1);
    if (!IsIpv6Address(address.host)) return {};
  } else if (IsIpv6Address(text)) {
    address.host = text;
  } else {
    address.host = text.substr(0, text.find(':'));
    port = text.substr(address.host.size());
    if (!IsHost(address.host)) return {};
  }
  if (port.empty()) return address;
  const std::optional<int> named = port.front() == ':' ? ReadPort(port.substr(1)) : std::nullopt;
  if (!named) return {};
  address.port = *named;
  return address;
}

}  // namespace tavlo::ftp
