#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tavlo::test {

// The tests' own words for what portals and programs say to each other.

inline constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* kShortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";

/// A shortcut that somebody wishes for.
struct WishedShortcut {
  std::string id;
  std::string description;
  std::string trigger;
  bool operator==(const WishedShortcut&) const = default;
};

/// A connection to that bus, for the calling thread.
sd_bus* Connect(const std::string& address);

using Texts = std::map<std::string, std::string>;
/// Reads a dictionary that holds texts alone.
Texts ReadTexts(sd_bus_message* message);
/// Reads a text or a path, as the type says.
std::string ReadText(sd_bus_message* message, char type);
std::vector<WishedShortcut> ReadWishes(sd_bus_message* call);

/// A signal's path, interface and name.
struct SignalName {
  const char* path = kPortalPath;
  const char* interface = kShortcutsInterface;
  const char* member = "";
};

/// Sends a signal to `client` alone, from a connection that is not the portal's. The bus has handed
/// it on when this returns.
void EmitAsStranger(const std::string& busAddress, const std::string& client,
                    const SignalName& name,
                    const std::function<void(sd_bus_message& signal)>& words);

/// Adds what a signal about a key holds.
void AppendKey(sd_bus_message& signal, const std::string& session, const std::string& id);
/// Adds one shortcut as `ShortcutsChanged` tells of it.
void AppendShortcut(sd_bus_message& signal, const std::string& session, const std::string& id,
                    const std::string& trigger);

}  // namespace tavlo::test
