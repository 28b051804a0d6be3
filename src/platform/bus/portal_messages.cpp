#include "platform/bus/portal_messages.h"

#include <algorithm>
#include <utility>

#include "base/one_line.h"
#include "base/text.h"
#include "remote/afar_action.h"

namespace tavlo::platform {
namespace {

/// Entries of one dictionary that are looked at.
constexpr int kMostEntries = 64;
/// A longer text is cut before anything else is done with it.
constexpr std::size_t kMostBytes = 4096;

std::string Shown(std::string_view text) {
  const std::string shown = base::ShownPart(base::FirstBytes(text, kMostBytes));
  return std::string(base::FirstCharacters(shown, kLongestTrigger));
}

/// What became of the value of an entry.
enum class Value { Read, Left, Broken };

/// Reads a dictionary of texts and variants that comes next. `take` gets each key with the type of
/// its value, which comes next then. False when the rest of the message can not be read any more.
template <typename Take>
bool ReadDictionary(sd_bus_message& message, Take take) {
  if (sd_bus_message_enter_container(&message, 'a', "{sv}") <= 0) return false;
  for (int entries = 0; sd_bus_message_enter_container(&message, 'e', "sv") > 0; ++entries) {
    const char* key = nullptr;
    const char* type = nullptr;
    if (entries == kMostEntries) return false;
    if (sd_bus_message_read_basic(&message, 's', &key) <= 0) return false;
    if (sd_bus_message_peek_type(&message, nullptr, &type) <= 0) return false;
    const std::string held = type;
    if (sd_bus_message_enter_container(&message, 'v', held.c_str()) <= 0) return false;
    const Value value = take(std::string_view(key), std::string_view(held));
    if (value == Value::Broken) return false;
    if (value == Value::Left && sd_bus_message_skip(&message, nullptr) < 0) return false;
    if (sd_bus_message_exit_container(&message) < 0) return false;
    if (sd_bus_message_exit_container(&message) < 0) return false;
  }
  return sd_bus_message_exit_container(&message) >= 0;
}

/// Reads a text, or an object path.
bool ReadText(sd_bus_message& message, char type, std::string& into) {
  const char* text = nullptr;
  if (sd_bus_message_read_basic(&message, type, &text) <= 0) return false;
  into = text;
  return true;
}

Value AsValue(bool read) { return read ? Value::Read : Value::Broken; }

/// Reads a list of shortcuts that comes next. False when the rest of the message is not to be read
/// any more.
bool ReadShortcuts(sd_bus_message& message, std::vector<PortalShortcut>& into) {
  if (sd_bus_message_enter_container(&message, 'a', "(sa{sv})") <= 0) return false;
  while (sd_bus_message_enter_container(&message, 'r', "sa{sv}") > 0) {
    PortalShortcut shortcut;
    if (into.size() == kMostShortcuts || !ReadText(message, 's', shortcut.id)) return false;
    std::string trigger;
    const bool whole = ReadDictionary(message, [&](std::string_view key, std::string_view type) {
      if (key != "trigger_description" || type != "s") return Value::Left;
      return AsValue(ReadText(message, 's', trigger));
    });
    shortcut.trigger = Shown(trigger);
    into.push_back(std::move(shortcut));
    if (!whole || sd_bus_message_exit_container(&message) < 0) return false;
  }
  return sd_bus_message_exit_container(&message) >= 0;
}

}  // namespace

PortalAnswer ReadAnswer(sd_bus_message& response) {
  PortalAnswer answer;
  std::uint32_t number = 1;
  if (sd_bus_message_has_signature(&response, "ua{sv}") <= 0 ||
      sd_bus_message_read_basic(&response, 'u', &number) <= 0) {
    return answer;
  }
  answer.yes = number == 0;
  ReadDictionary(response, [&](std::string_view key, std::string_view type) {
    if (key == "shortcuts" && type == "a(sa{sv})") {
      return AsValue(ReadShortcuts(response, answer.shortcuts));
    }
    // It is described as a path and commonly sent as a text.
    if (key != "session_handle" || (type != "o" && type != "s")) return Value::Left;
    std::string handle;
    if (!ReadText(response, type.front(), handle)) return Value::Broken;
    if (sd_bus_object_path_is_valid(handle.c_str()) > 0) answer.sessionHandle = handle;
    return Value::Read;
  });
  return answer;
}

std::optional<PortalKeySignal> ReadKeySignal(sd_bus_message& signal) {
  PortalKeySignal told;
  if (sd_bus_message_has_signature(&signal, "osta{sv}") <= 0) return std::nullopt;
  if (!ReadText(signal, 'o', told.sessionHandle) || !ReadText(signal, 's', told.id)) {
    return std::nullopt;
  }
  return told;
}

std::optional<PortalChange> ReadChange(sd_bus_message& signal) {
  PortalChange told;
  if (sd_bus_message_has_signature(&signal, "oa(sa{sv})") <= 0) return std::nullopt;
  if (!ReadText(signal, 'o', told.sessionHandle)) return std::nullopt;
  ReadShortcuts(signal, told.shortcuts);
  return told;
}

std::string ReadPath(sd_bus_message& message) {
  std::string path;
  if (sd_bus_message_has_signature(&message, "o") > 0) ReadText(message, 'o', path);
  return path;
}

unsigned ReadNumber(sd_bus_message& property) {
  std::uint32_t number = 0;
  return sd_bus_message_read(&property, "v", "u", &number) > 0 ? number : 0;
}

int AppendWishes(sd_bus_message& call, const std::vector<remote::KeyWish>& wishes) {
  int outcome = sd_bus_message_open_container(&call, 'a', "(sa{sv})");
  for (const remote::KeyWish& wish : wishes) {
    const remote::AfarActionName& name = remote::kAfarActions[remote::IndexOf(wish.action)];
    if (outcome < 0) return outcome;
    outcome = sd_bus_message_append(&call, "(sa{sv})", std::string(name.id).c_str(), 2,
                                    "description", "s", std::string(name.description).c_str(),
                                    "preferred_trigger", "s", wish.trigger.c_str());
  }
  return outcome < 0 ? outcome : sd_bus_message_close_container(&call);
}

std::optional<remote::AfarAction> ActionOf(std::string_view id) {
  const auto found = std::ranges::find(remote::kAfarActions, id, &remote::AfarActionName::id);
  if (found == remote::kAfarActions.end()) return std::nullopt;
  return found->action;
}

}  // namespace tavlo::platform
