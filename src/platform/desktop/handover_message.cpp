#include "platform/desktop/handover_message.h"

namespace tavlo::platform::desktop {
namespace {

/// Another build may one day say more, or say it otherwise.
constexpr std::string_view kMessageMark{"TavloDeckFiles1\0", 16};

}  // namespace

using Paths = shell::FileHandover::Paths;

std::string MessageOf(const Paths& paths) {
  std::string message(kMessageMark);
  for (const std::string& path : paths) message.append(path).push_back('\0');
  return message;
}

std::optional<Paths> PathsOfMessage(std::string_view message) {
  const bool whole = message.size() > kMessageMark.size() && message.ends_with('\0') &&
                     message.size() <= kMostBytesOfMessage;
  if (!whole || !message.starts_with(kMessageMark)) return std::nullopt;
  message.remove_prefix(kMessageMark.size());
  Paths paths;
  while (!message.empty()) {
    const std::string_view path = message.substr(0, message.find('\0'));
    if (path.empty() || paths.size() == kMostPathsOfMessage) return std::nullopt;
    paths.emplace_back(path);
    message.remove_prefix(path.size() + 1);
  }
  return paths;
}

}  // namespace tavlo::platform::desktop
