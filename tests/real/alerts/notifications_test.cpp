#include "platform/desktop/notifications.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <functional>
#include <memory>
#include <string>
#include <utility>

#include "alerts/notification_service.h"
#include "support/patience.h"
#include "support/real_bus.h"

namespace tavlo::test {
namespace {

constexpr int kMany = 1000;

/// The toolkit keeps one connection to the session bus, so each test is a process of its own.
struct NotificationsTest : testing::Test {
  NotificationsTest() {
    ::setenv("DBUS_SESSION_BUS_ADDRESS", bus.Address().c_str(), 1);
    application = std::make_unique<QCoreApplication>(argumentCount, arguments);
    notifications = std::make_unique<platform::desktop::Notifications>();
  }
  void SetUp() override {
    static bool first = true;
    ASSERT_TRUE(std::exchange(first, false)) << "each of these tests wants a process of its own";
    ASSERT_NE(bus.Address(), "");
  }

  void StartService() {
    service = std::make_unique<NotificationService>(bus.Address());
    ASSERT_TRUE(service->Up());
  }
  static bool Until(const std::function<bool()>& condition) {
    return Comes([&] {
      QCoreApplication::processEvents();
      return condition();
    });
  }
  bool Called(const QString& method, int times) {
    return Until([&] { return service->Count(method) >= times; });
  }
  /// Asks until the service has shown something newer, which a service that has just come may not
  /// do at the first try.
  bool ShowsAgain() {
    const int before = service->Count("Notify");
    return Until([&] {
      notifications->Notify("later", "again");
      return service->Count("Notify") > before;
    });
  }
  std::string Text() { return service->Last("Notify").value(4).toString().toStdString(); }

  int argumentCount = 1;
  char name[5] = "test";
  char* arguments[2] = {name, nullptr};
  RealBus bus;
  std::unique_ptr<QCoreApplication> application;
  std::unique_ptr<platform::desktop::Notifications> notifications;
  std::unique_ptr<NotificationService> service;
};

TEST_F(NotificationsTest, SaysWhoItIsAndHowUrgent) {
  StartService();
  notifications->Notify("New work", "Grüße aus\nder Ablage");
  ASSERT_TRUE(Called("Notify", 1));
  const QVariantList said = service->Last("Notify");
  EXPECT_EQ(said.value(0).toString(), "Tavlo Deck");
  EXPECT_EQ(said.value(1), QVariant(0U));
  EXPECT_EQ(said.value(2).toString(), "tavlodeck");
  EXPECT_EQ(said.value(3).toString(), "New work");
  EXPECT_EQ(Text(), "Grüße aus\nder Ablage");
  EXPECT_EQ(said.value(5).toStringList(), QStringList());
  const QVariantMap hints = qdbus_cast<QVariantMap>(said.value(6));
  EXPECT_EQ(hints.value("desktop-entry").toString(), "tavlodeck");
  EXPECT_EQ(hints.value("urgency").metaType(), QMetaType::fromType<uchar>());
  EXPECT_EQ(hints.value("urgency").toInt(), 1);
  EXPECT_EQ(said.value(7), QVariant(-1));
}

TEST_F(NotificationsTest, EscapesTheTextWhereTheServiceTakesMarkup) {
  StartService();
  notifications->Notify("one", "a <b> & c");
  ASSERT_TRUE(Called("Notify", 1));
  EXPECT_EQ(Text(), "a <b> & c");
  service->abilities << "body-markup";
  notifications->Notify("two", "a <b> & c");
  ASSERT_TRUE(Called("Notify", 2));
  EXPECT_EQ(Text(), "a &lt;b&gt; &amp; c");
}

TEST_F(NotificationsTest, OneTakesThePlaceOfTheOneBeforeUntilItIsWithdrawn) {
  StartService();
  service->lastNumber = 6;
  notifications->Notify("one", "");
  ASSERT_TRUE(Called("Notify", 1));
  notifications->Notify("two", "");
  ASSERT_TRUE(Called("Notify", 2));
  EXPECT_EQ(service->Last("Notify").value(1), QVariant(7U));
  notifications->Withdraw();
  ASSERT_TRUE(Called("CloseNotification", 1));
  EXPECT_EQ(service->Last("CloseNotification").value(0), QVariant(7U));
  notifications->Withdraw();
  notifications->Notify("three", "");
  ASSERT_TRUE(Called("Notify", 3));
  EXPECT_EQ(service->Last("Notify").value(1), QVariant(0U));
  EXPECT_EQ(service->Count("CloseNotification"), 1);
}

TEST_F(NotificationsTest, WithdrawnBeforeItShowsItNeverDoes) {
  StartService();
  notifications->Notify("one", "");
  notifications->Withdraw();
  ASSERT_TRUE(ShowsAgain());
  EXPECT_EQ(service->Count("Notify"), 1);
  EXPECT_EQ(service->Last("Notify").value(3).toString(), "later");
}

TEST_F(NotificationsTest, WithdrawnWhileTheServiceShowsItItIsClosed) {
  StartService();
  service->answer = [this](const QDBusMessage& call) {
    return call.member() == "Notify" ? QDBusMessage() : service->Healthy(call);
  };
  notifications->Notify("one", "");
  ASSERT_TRUE(Called("Notify", 1));
  notifications->Withdraw();
  service->AnswerLast();
  ASSERT_TRUE(Called("CloseNotification", 1));
  EXPECT_EQ(service->Last("CloseNotification").value(0), QVariant(1U));
}

TEST_F(NotificationsTest, WithoutAServiceNothingHappensUntilThereIsOne) {
  for (int time = 0; time < kMany; ++time) notifications->Notify("one", "");
  notifications->Withdraw();
  StartService();
  EXPECT_TRUE(ShowsAgain());
}

TEST_F(NotificationsTest, AServiceThatNeverAnswersIsAskedOnceAndShowsTheLatestWhenItGoesOn) {
  StartService();
  service->answer = [](const QDBusMessage&) { return QDBusMessage(); };
  for (int time = 0; time < kMany; ++time) {
    notifications->Notify("hung", std::to_string(time));
    QCoreApplication::processEvents();
  }
  ASSERT_TRUE(Called("GetCapabilities", 1));
  EXPECT_EQ(service->calls.size(), 1U);
  service->answer = [this](const QDBusMessage& call) { return service->Healthy(call); };
  service->AnswerLast();
  ASSERT_TRUE(Called("Notify", 1));
  EXPECT_EQ(Text(), std::to_string(kMany - 1));
  EXPECT_EQ(service->calls.size(), 2U);
}

TEST_F(NotificationsTest, AServiceThatGoesWithoutAnAnswerIsForgotten) {
  StartService();
  service->answer = [](const QDBusMessage&) { return QDBusMessage(); };
  notifications->Notify("one", "");
  ASSERT_TRUE(Called("GetCapabilities", 1));
  service.reset();
  StartService();
  EXPECT_TRUE(ShowsAgain());
}

TEST_F(NotificationsTest, ANewServiceIsNotAskedToReplaceWhatTheOldOneShowed) {
  StartService();
  notifications->Notify("one", "");
  ASSERT_TRUE(Called("Notify", 1));
  // Whose answer came shows when the next one is replaced.
  notifications->Notify("two", "");
  ASSERT_TRUE(Called("Notify", 2));
  EXPECT_EQ(service->Last("Notify").value(1), QVariant(1U));
  service.reset();
  StartService();
  ASSERT_TRUE(ShowsAgain());
  EXPECT_EQ(service->Last("Notify").value(1), QVariant(0U));
}

TEST_F(NotificationsTest, RefusalsAndAnswersThatMakeNoSenseAreDropped) {
  StartService();
  const std::vector<std::function<QDBusMessage(const QDBusMessage&)>> faults = {
      [](const QDBusMessage& call) { return call.createErrorReply(QDBusError::Failed, "no"); },
      [](const QDBusMessage& call) { return call.createReply("not a list"); },
      [](const QDBusMessage& call) { return call.createReply(); },
      [](const QDBusMessage& call) {
        return call.createReply(QVariantList{1, 2, "three"});
      }};
  for (const auto& fault : faults) {
    for (const char* const method : {"GetCapabilities", "Notify"}) {
      service->answer = [&](const QDBusMessage& call) {
        return call.member() == method ? fault(call) : service->Healthy(call);
      };
      const int before = service->Count(method);
      notifications->Notify("one", "");
      ASSERT_TRUE(Called(method, before + 1));
      service->answer = [this](const QDBusMessage& call) { return service->Healthy(call); };
      ASSERT_TRUE(ShowsAgain());
    }
  }
}

TEST_F(NotificationsTest, ABusThatHangsHoldsNobodyAndGathersNothing) {
  StartService();
  bus.Freeze();
  for (int time = 0; time < kMany; ++time) {
    notifications->Notify("frozen", std::to_string(time));
    notifications->Withdraw();
    QCoreApplication::processEvents();
  }
  notifications->Notify("last", "last");
  EXPECT_TRUE(service->calls.empty());
  bus.Thaw();
  ASSERT_TRUE(Called("Notify", 1));
  EXPECT_EQ(Text(), "last");
  EXPECT_EQ(service->Count("GetCapabilities"), 1);
}

TEST_F(NotificationsTest, ABusThatDiesHoldsNobody) {
  StartService();
  notifications->Notify("one", "");
  ASSERT_TRUE(Called("Notify", 1));
  bus.Kill();
  for (int time = 0; time < kMany; ++time) {
    notifications->Notify("dead", "");
    notifications->Withdraw();
    QCoreApplication::processEvents();
  }
}

TEST(NotificationsWithoutABus, NothingHappens) {
  ::setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", 1);
  int count = 1;
  char name[] = "test";
  char* arguments[] = {name, nullptr};
  const QCoreApplication application(count, arguments);
  platform::desktop::Notifications notifications;
  for (int time = 0; time < kMany; ++time) {
    notifications.Notify("one", "");
    notifications.Withdraw();
    QCoreApplication::processEvents();
  }
}

}  // namespace
}  // namespace tavlo::test
