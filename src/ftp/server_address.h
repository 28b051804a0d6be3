#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace tavlo::ftp {

/// How what travels to a server and back is protected.
enum class Protection {
  None,         ///< Plain FTP: the password travels as it is.
  ImplicitTls,  ///< TLS from the first byte on.
  ExplicitTls,  ///< TLS is asked for before the log-in, and required.
};

/// What stands in a profile as the server.
struct ServerAddress {
  std::string host;  ///< A name or an address, without the brackets of an IPv6 address.
  int port = 21;
  Protection protection = Protection::None;
};

/// Reads a host name or address, with a port behind a colon where it is not the usual one (21, with
/// implicit TLS 990). "ftps://" before it asks for implicit and "ftpes://" for explicit TLS;
/// "ftp://" says nothing more. Blanks around it and one "/" behind it do not count. Nothing when it
/// is no address.
std::optional<ServerAddress> ReadServerAddress(std::string_view text);

}  // namespace tavlo::ftp
