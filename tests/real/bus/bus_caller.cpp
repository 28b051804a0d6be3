#include "bus/bus_caller.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "bus/message_text.h"

namespace tavlo::test {
namespace {

constexpr const char* kPlayerPath = "/org/mpris/MediaPlayer2";

int KeepAnswer(sd_bus_message* answer, void* kept, sd_bus_error*) {
  const sd_bus_error* const error = sd_bus_message_get_error(answer);
  *static_cast<std::optional<std::string>*>(kept) = error ? error->name : TextOf(answer);
  return 1;
}

int KeepSignal(sd_bus_message* signal, void* kept, sd_bus_error*) {
  const std::string text = std::string(sd_bus_message_get_member(signal)) + " " + TextOf(signal);
  static_cast<Texts*>(kept)->push_back(text);
  return 0;
}

}  // namespace

BusCaller::BusCaller(const std::string& address, platform::DescriptorWaits& waits, Turn turn)
    : turn_(std::move(turn)) {
  sd_bus_new(&bus_);
  sd_bus_set_address(bus_, address.c_str());
  sd_bus_set_bus_client(bus_, 1);
  EXPECT_GE(sd_bus_start(bus_), 0);
  const char* own = nullptr;
  EXPECT_GE(sd_bus_get_unique_name(bus_, &own), 0);
  wait_ = waits.WaitFor(sd_bus_get_fd(bus_), "caller", [this] { Hear(); });
}

BusCaller::~BusCaller() {
  wait_.reset();
  properties_.reset();
  seeks_.reset();
  sd_bus_close_unref(bus_);
}

/// A call that is waited for puts aside what comes before its answer, and no descriptor tells of
/// that.
void BusCaller::Hear() {
  while (sd_bus_process(bus_, nullptr) > 0) continue;
}

void BusCaller::Listen() {
  sd_bus_slot* slot = nullptr;
  sd_bus_match_signal(bus_, &slot, nullptr, kPlayerPath, "org.freedesktop.DBus.Properties",
                      "PropertiesChanged", KeepSignal, &heard);
  properties_.reset(std::exchange(slot, nullptr));
  sd_bus_match_signal(bus_, &slot, nullptr, kPlayerPath, "org.mpris.MediaPlayer2.Player", "Seeked",
                      KeepSignal, &heard);
  seeks_.reset(slot);
  Hear();
}

Texts BusCaller::Players() {
  char** names = nullptr;
  sd_bus_list_names(bus_, &names, nullptr);
  Texts players;
  for (char** name = names; name && *name; ++name) {
    if (std::string(*name).starts_with("org.mpris.")) players.emplace_back(*name);
    std::free(*name);
  }
  std::free(names);
  std::ranges::sort(players);
  Hear();
  return players;
}

bool BusCaller::TakeName(const std::string& name) {
  const bool taken = sd_bus_request_name(bus_, name.c_str(), 0) >= 0;
  Hear();
  return taken;
}

std::string BusCaller::Ask(const char* interface, const char* method,
                           const std::function<void(sd_bus_message*)>& fill) {
  sd_bus_message* call = nullptr;
  sd_bus_message_new_method_call(bus_, &call, player.c_str(), kPlayerPath, interface, method);
  fill(call);
  std::optional<std::string> answer;
  sd_bus_slot* slot = nullptr;
  sd_bus_call_async(bus_, &slot, call, KeepAnswer, &answer, 0);
  const platform::BusSlot asked(slot);
  sd_bus_message_unref(call);
  sd_bus_flush(bus_);
  const bool came = turn_([&] { return answer.has_value(); });
  return came ? *answer : "(no answer)";
}

}  // namespace tavlo::test
