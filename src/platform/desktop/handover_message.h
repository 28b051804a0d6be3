#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "shell/file_handover.h"

/// What a start sends to the deck that runs: a mark, then each path with a zero byte behind it,
/// which no path holds. Any thread.
namespace tavlo::platform::desktop {

/// More than the system lets a start be given; whoever sends more means no good.
inline constexpr std::size_t kMostBytesOfMessage = std::size_t{8} * 1024 * 1024;
inline constexpr std::size_t kMostPathsOfMessage = 100'000;

/// What the deck that runs answers when it has taken the message.
inline constexpr char kMessageTaken = '+';

std::string MessageOf(const shell::FileHandover::Paths& paths);

/// The paths of a whole message. Nothing when it is none, holds none, or passes a limit.
std::optional<shell::FileHandover::Paths> PathsOfMessage(std::string_view message);

}  // namespace tavlo::platform::desktop
