#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <functional>
#include <string>
#include <vector>

namespace tavlo::test {

/// A service for notifications on a bus of the test's own, which keeps what it is asked. Its calls
/// come while the test turns the toolkit's loop.
class NotificationService : public QDBusVirtualObject {
 public:
  explicit NotificationService(const std::string& busAddress)
      : name_(QStringLiteral("service %1").arg(quintptr(this))),
        bus_(QDBusConnection::connectToBus(QString::fromStdString(busAddress), name_)) {
    bus_.registerVirtualObject("/org/freedesktop/Notifications", this);
    up_ = bus_.registerService("org.freedesktop.Notifications");
  }
  ~NotificationService() override {
    bus_.unregisterService("org.freedesktop.Notifications");
    QDBusConnection::disconnectFromBus(name_);
  }
  NotificationService(const NotificationService&) = delete;

  bool Up() const { return up_; }
  int Count(const QString& method) const {
    int count = 0;
    for (const QDBusMessage& call : calls) count += call.member() == method;
    return count;
  }
  /// The last call of that name.
  QVariantList Last(const QString& method) const {
    for (auto call = calls.rbegin(); call != calls.rend(); ++call) {
      if (call->member() == method) return call->arguments();
    }
    return {};
  }

  /// Everything that it was asked, in its order.
  std::vector<QDBusMessage> calls;
  QStringList abilities{"body"};
  uint lastNumber = 0;
  /// How it answers a call; an empty message is none.
  std::function<QDBusMessage(const QDBusMessage&)> answer = [this](const QDBusMessage& call) {
    return Healthy(call);
  };

  QDBusMessage Healthy(const QDBusMessage& call) {
    if (call.member() == "GetCapabilities") return call.createReply(abilities);
    if (call.member() == "CloseNotification") return call.createReply();
    const uint before = call.arguments().at(1).toUInt();
    return call.createReply(before != 0 ? before : ++lastNumber);
  }
  /// Answers what it has left open, as one that hung and goes on.
  void AnswerLast() { bus_.send(Healthy(calls.back())); }

  bool handleMessage(const QDBusMessage& call, const QDBusConnection& bus) override {
    calls.push_back(call);
    call.setDelayedReply(true);
    const QDBusMessage said = answer(call);
    if (said.type() != QDBusMessage::InvalidMessage) bus.send(said);
    return true;
  }
  QString introspect(const QString&) const override { return {}; }

 private:
  const QString name_;
  QDBusConnection bus_;
  bool up_ = false;
};

}  // namespace tavlo::test
