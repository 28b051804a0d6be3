#pragma once

#include <systemd/sd-bus.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/bus/bus_slot.h"
#include "platform/wake/descriptor_waits.h"

namespace tavlo::test {

using Texts = std::vector<std::string>;

inline bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// Another program on the bus, which calls the player and hears what it tells. Its answers come
/// while the loop turns that it was given.
class BusCaller {
 public:
  /// Turns the loop until the condition holds; false when it never does.
  using Turn = std::function<bool(const std::function<bool()>& condition)>;

  /// Connects, which a healthy bus does at once.
  BusCaller(const std::string& address, platform::DescriptorWaits& waits, Turn turn);
  ~BusCaller();
  BusCaller(const BusCaller&) = delete;

  /// From here on what the player tells by signals is kept in `heard`, as
  /// `PropertiesChanged {"Rate": d 1.5}`.
  void Listen();

  /// Each returns what was answered as text, see `TextOf`, or the name of the error.
  template <typename... Values>
  std::string Call(const char* interface, const char* method, const char* types = "",
                   Values... values) {
    return Ask(interface, method,
               [&](sd_bus_message* call) { sd_bus_message_append(call, types, values...); });
  }
  template <typename... Values>
  std::string CallPlayer(const char* method, const char* types = "", Values... values) {
    return Call("org.mpris.MediaPlayer2.Player", method, types, values...);
  }
  std::string Get(const char* interface, const char* property) {
    return Call("org.freedesktop.DBus.Properties", "Get", "ss", interface, property);
  }
  std::string GetOfPlayer(const char* property) {
    return Get("org.mpris.MediaPlayer2.Player", property);
  }
  template <typename Value>
  std::string Set(const char* property, const char* type, Value value) {
    return Call("org.freedesktop.DBus.Properties", "Set", "ssv", "org.mpris.MediaPlayer2.Player",
                property, type, value);
  }
  /// The names on the bus that belong to players, in the order of the alphabet.
  Texts Players();
  /// Takes a name for itself; false when somebody has it.
  bool TakeName(const std::string& name);

  /// Whom it calls.
  std::string player = "org.mpris.MediaPlayer2.tavlodeck";
  Texts heard;

 private:
  std::string Ask(const char* interface, const char* method,
                  const std::function<void(sd_bus_message*)>& fill);
  void Hear();

  sd_bus* bus_ = nullptr;
  platform::BusSlot properties_;
  platform::BusSlot seeks_;
  std::unique_ptr<platform::DescriptorWait> wait_;
  const Turn turn_;
};

}  // namespace tavlo::test
