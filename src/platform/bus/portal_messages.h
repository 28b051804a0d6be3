#pragma once

#include <systemd/sd-bus.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "remote/global_keys.h"

namespace tavlo::platform {

inline constexpr const char* kPortalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* kPortalPath = "/org/freedesktop/portal/desktop";
inline constexpr const char* kShortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";
inline constexpr const char* kRequestInterface = "org.freedesktop.portal.Request";
inline constexpr const char* kSessionInterface = "org.freedesktop.portal.Session";

/// A shortcut as a portal tells of it.
struct PortalShortcut {
  std::string id;
  /// How the desktop calls its key, fit to be shown; empty when it does not say.
  std::string trigger;
};

/// How somebody at the desktop, or the portal for them, has answered a request.
struct PortalAnswer {
  /// What was not asked, or makes no sense, counts as no.
  bool yes = false;
  std::string sessionHandle;              ///< Empty when there is none.
  std::vector<PortalShortcut> shortcuts;  ///< As far as they make sense.
};

struct PortalKeySignal {
  std::string sessionHandle;
  std::string id;
};

struct PortalChange {
  std::string sessionHandle;
  std::vector<PortalShortcut> shortcuts;
};

/// A trigger's longest name that is shown, in characters.
inline constexpr std::size_t kLongestTrigger = 100;
/// More shortcuts than anybody wishes for; further ones of a message are not read.
inline constexpr std::size_t kMostShortcuts = 64;

// What came from a portal may be anything. What is not of the form that is agreed on gives nothing.

PortalAnswer ReadAnswer(sd_bus_message& response);
/// Of Activated and Deactivated.
std::optional<PortalKeySignal> ReadKeySignal(sd_bus_message& signal);
std::optional<PortalChange> ReadChange(sd_bus_message& signal);
/// The one object path that a message holds; empty when it holds anything else.
std::string ReadPath(sd_bus_message& message);
/// The one number that the answer about a property holds, or 0.
unsigned ReadNumber(sd_bus_message& property);

/// Adds the wishes as BindShortcuts takes them; less than 0 when they do not fit in a message.
int AppendWishes(sd_bus_message& call, const std::vector<remote::KeyWish>& wishes);

/// The action of that id; nothing when there is none.
std::optional<remote::AfarAction> ActionOf(std::string_view id);

}  // namespace tavlo::platform
