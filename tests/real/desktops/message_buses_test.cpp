#include "platform/desktop/message_buses.h"

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <thread>

#include "support/silent_bus.h"
#include "support/temporary_folder.h"

namespace tavlo::platform::desktop {
namespace {

using namespace std::chrono_literals;
using test::SilentBus;

constexpr const char* kSessionBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kAccessibilityBus = "AT_SPI_BUS_ADDRESS";
constexpr const char* kRuntimeFolder = "XDG_RUNTIME_DIR";

/// Looks at the buses in an environment of its own and puts the old one back.
struct MessageBuses : testing::Test {
  MessageBuses() {
    for (const char* name : {kSessionBus, kAccessibilityBus, kRuntimeFolder}) {
      const char* const value = std::getenv(name);
      if (value) before[name] = value;
      ::unsetenv(name);
    }
  }
  ~MessageBuses() override {
    for (const char* name : {kSessionBus, kAccessibilityBus, kRuntimeFolder}) {
      before.contains(name) ? ::setenv(name, before[name].c_str(), 1) : ::unsetenv(name);
    }
  }

  static std::string Value(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "unset";
  }
  /// What the session bus's address has become.
  static std::string Leave(const std::string& address, std::chrono::milliseconds patience = 50ms) {
    ::setenv(kSessionBus, address.c_str(), 1);
    LeaveSilentBuses(patience);
    return Value(kSessionBus);
  }
  /// The same, with a bus at `address` that does something once it is looked at.
  std::string LeaveAnswering(const std::function<void(SilentBus&)>& answer,
                             std::chrono::milliseconds patience) {
    SilentBus bus(path);
    std::thread server([&] { answer(bus); });
    const std::string left = Leave(address, patience);
    server.join();
    ::unlink(path.c_str());
    return left;
  }

  std::map<std::string, std::string> before;
  test::TemporaryFolder folder;
  const std::string path = folder.Path() + "/a bus";
  const std::string address = "unix:path=" + folder.Path() + "/a%20bus";
};

TEST_F(MessageBuses, AreLeftWhereTheyTakeConnectionsAndStaySilent) {
  const SilentBus silent(path);
  EXPECT_EQ(Leave(address), "disabled:");
  EXPECT_EQ(Leave("unix:guid=1f,path=" + path), "disabled:");
  EXPECT_EQ(Leave("unix:path=/nowhere;" + address), "disabled:");
}

TEST_F(MessageBuses, AreLeftWhereNotEvenAConnectionIsTaken) {
  const SilentBus silent(path, 0);
  const int first = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  ASSERT_TRUE(silent.Connect(first));
  EXPECT_EQ(Leave(address), "disabled:");
  ::close(first);
}

TEST_F(MessageBuses, AreLeftWhereTheirNameIsAbstract) {
  const std::string name = "silent" + path;
  const SilentBus silent('\0' + name);
  EXPECT_EQ(Leave("unix:abstract=" + name), "disabled:");
}

TEST_F(MessageBuses, AreAlsoFoundWhereLibrariesLookWithoutAnAddress) {
  const SilentBus silent(folder.Path() + "/bus");
  ::setenv(kRuntimeFolder, folder.Path().c_str(), 1);
  LeaveSilentBuses(50ms);
  EXPECT_EQ(Value(kSessionBus), "disabled:");
}

TEST_F(MessageBuses, OfScreenReadersAreTakenAwaySoThatTheDesktopIsAskedForAnother) {
  const SilentBus silent(path);
  ::setenv(kAccessibilityBus, address.c_str(), 1);
  LeaveSilentBuses(50ms);
  EXPECT_EQ(Value(kAccessibilityBus), "unset");
  EXPECT_EQ(Value(kSessionBus), "unset");
}

TEST_F(MessageBuses, ThatAreNotThereAreTheToolkitsToMiss) {
  for (const std::string& other :
       {std::string("unix:path=/nowhere"), "unix:path=" + std::string(300, 'x'),
        std::string("unix:path="), std::string("unix:"), std::string("tcp:host=localhost,port=1"),
        std::string(";;,=:"), std::string("%"), std::string("garbage \xFF"), std::string("")}) {
    EXPECT_EQ(Leave(other), other);
  }
}

TEST_F(MessageBuses, ThatAnswerStay) {
  for (const char* answer : {"OK 1234\r\n", "REJECTED EXTERNAL\r\n"}) {
    EXPECT_EQ(LeaveAnswering([&](SilentBus& bus) { bus.Answer(answer); }, 120s), address);
  }
}

TEST_F(MessageBuses, ThatHangUpStay) {
  EXPECT_EQ(LeaveAnswering(
                [](SilentBus& bus) {
                  bus.Answer("");
                  bus.HangUp();
                },
                120s),
            address);
}

TEST_F(MessageBuses, ThatFallSilentInTheMiddleOfALineAreLeft) {
  EXPECT_EQ(LeaveAnswering([](SilentBus& bus) { bus.Answer("OK 12"); }, 50ms), "disabled:");
}

}  // namespace
}  // namespace tavlo::platform::desktop
