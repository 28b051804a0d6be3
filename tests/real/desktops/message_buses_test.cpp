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

#include "support/real_bus.h"
#include "support/silent_bus.h"
#include "support/temporary_folder.h"

namespace tavlo::platform::desktop {
namespace {

using namespace std::chrono_literals;
using test::SilentBus;

constexpr const char* kSessionBus = "DBUS_SESSION_BUS_ADDRESS";
constexpr const char* kAccessibilityBus = "AT_SPI_BUS_ADDRESS";
constexpr const char* kRuntimeFolder = "XDG_RUNTIME_DIR";

/// What a bus answers to the call with the number 1: a reply without a body.
const std::string kAnswerToTheFirstCall("l\2\1\1\0\0\0\0\1\0\0\0\10\0\0\0\5\1u\0\1\0\0\0", 24);

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
  const test::RealBus bus;
  ASSERT_NE(bus.Address(), "");
  EXPECT_EQ(Leave(bus.Address(), 120s), bus.Address());
}

TEST_F(MessageBuses, ThatRefuseStay) {
  EXPECT_EQ(LeaveAnswering([](SilentBus& bus) { bus.Answer("REJECTED EXTERNAL\r\n"); }, 120s),
            address);
}

TEST_F(MessageBuses, ThatGreetAndThenFallSilentAreLeft) {
  EXPECT_EQ(LeaveAnswering([](SilentBus& bus) { bus.Answer("OK 1234\r\n"); }, 50ms), "disabled:");
}

TEST_F(MessageBuses, ThatFallSilentBetweenTwoCallsAreLeft) {
  const auto answer = [](SilentBus& bus) {
    bus.Answer("OK 1234\r\n");
    bus.GoOn(kAnswerToTheFirstCall);
  };
  EXPECT_EQ(LeaveAnswering(answer, 1s), "disabled:");
  const auto answerTwice = [](SilentBus& bus) {
    bus.Answer("OK 1234\r\n");
    bus.GoOn(kAnswerToTheFirstCall + kAnswerToTheFirstCall);
  };
  EXPECT_EQ(LeaveAnswering(answerTwice, 120s), address);
}

TEST_F(MessageBuses, ThatTalkNonsenseStay) {
  EXPECT_EQ(LeaveAnswering(
                [](SilentBus& bus) {
                  bus.Answer("OK 1234\r\n");
                  bus.GoOn(std::string(64, 'x'));
                },
                120s),
            address);
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
