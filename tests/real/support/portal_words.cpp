#include "support/portal_words.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace tavlo::test {

sd_bus* Connect(const std::string& address) {
  sd_bus* bus = nullptr;
  EXPECT_GE(sd_bus_new(&bus), 0);
  EXPECT_GE(sd_bus_set_address(bus, address.c_str()), 0);
  EXPECT_GE(sd_bus_set_bus_client(bus, 1), 0);
  EXPECT_GE(sd_bus_start(bus), 0);
  return bus;
}

/// Reads a dictionary that holds texts alone.
Texts ReadTexts(sd_bus_message* message) {
  Texts texts;
  EXPECT_GT(sd_bus_message_enter_container(message, 'a', "{sv}"), 0);
  while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
    const char* key = nullptr;
    const char* text = nullptr;
    EXPECT_GT(sd_bus_message_read(message, "sv", &key, "s", &text), 0);
    if (key && text) texts[key] = text;
    sd_bus_message_exit_container(message);
  }
  sd_bus_message_exit_container(message);
  return texts;
}

std::string ReadText(sd_bus_message* message, char type) {
  const char* text = nullptr;
  EXPECT_GT(sd_bus_message_read_basic(message, type, &text), 0);
  return text ? text : "";
}

std::vector<WishedShortcut> ReadWishes(sd_bus_message* call) {
  std::vector<WishedShortcut> wishes;
  EXPECT_GT(sd_bus_message_enter_container(call, 'a', "(sa{sv})"), 0);
  while (sd_bus_message_enter_container(call, 'r', "sa{sv}") > 0) {
    WishedShortcut wish{.id = ReadText(call, 's')};
    Texts texts = ReadTexts(call);
    wish.description = texts["description"];
    wish.trigger = texts["preferred_trigger"];
    wishes.push_back(wish);
    sd_bus_message_exit_container(call);
  }
  sd_bus_message_exit_container(call);
  return wishes;
}

void EmitAsStranger(const std::string& busAddress, const std::string& client,
                    const SignalName& name,
                    const std::function<void(sd_bus_message& signal)>& words) {
  sd_bus* const bus = Connect(busAddress);
  sd_bus_message* signal = nullptr;
  ASSERT_GE(sd_bus_message_new_signal(bus, &signal, name.path, name.interface, name.member), 0);
  sd_bus_message_set_destination(signal, client.c_str());
  words(*signal);
  EXPECT_GE(sd_bus_send(bus, signal, nullptr), 0);
  sd_bus_message_unref(signal);
  // The bus answers in order.
  EXPECT_GE(sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                               "org.freedesktop.DBus", "GetId", nullptr, nullptr, nullptr),
            0);
  sd_bus_flush_close_unref(bus);
}

void AppendKey(sd_bus_message& signal, const std::string& session, const std::string& id) {
  sd_bus_message_append(&signal, "osta{sv}", session.c_str(), id.c_str(), std::uint64_t{1}, 0);
}

void AppendShortcut(sd_bus_message& signal, const std::string& session, const std::string& id,
                    const std::string& trigger) {
  sd_bus_message_append(&signal, "oa(sa{sv})", session.c_str(), 1, id.c_str(), 1,
                        "trigger_description", "s", trigger.c_str());
}

}  // namespace tavlo::test
