#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/curl/reply_reader.h"

namespace tavlo::platform {

/// The port in an answer to EPSV, "(|||6446|)". Nothing when there is none.
std::optional<std::uint16_t> ExtendedPassivePort(const ServerReply& reply);
/// The port in an answer to PASV, "(192,168,1,2,25,46)". Its address is not looked at.
std::optional<std::uint16_t> PassivePort(const ServerReply& reply);

/// The length in an answer to SIZE, "213 1048576".
std::optional<std::int64_t> SizeIn(const ServerReply& reply);
/// The length in an answer to MLST, " type=file;size=1048576;modify=... note.wav", of a plain file.
std::optional<std::int64_t> FactsSizeIn(const ServerReply& reply);
/// The length that a server may announce with a file, "150 Opening data connection (1048576
/// bytes)".
std::optional<std::int64_t> AnnouncedSize(const ServerReply& reply);

/// The server takes no log-in but over TLS, as far as its refusal says so.
bool WantsProtection(const ServerReply& reply);
/// A refused list that only says that there are no files.
bool SaysNoFiles(const ServerReply& reply);

}  // namespace tavlo::platform
