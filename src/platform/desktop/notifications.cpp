#include "platform/desktop/notifications.h"

#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusPendingCallWatcher>
#include <QStringList>
#include <QVariantMap>
#include <limits>
#include <utility>

#include "platform/qt/texts.h"

namespace tavlo::platform::desktop {
namespace {

constexpr const char* kService = "org.freedesktop.Notifications";
constexpr const char* kObject = "/org/freedesktop/Notifications";
/// The name of the icon and of the desktop entry.
constexpr const char* kEntry = "tavlodeck";
constexpr unsigned char kNormalUrgency = 1;
constexpr int kAsLongAsTheServiceLikes = -1;
/// The bus tells when a service goes without an answer, so nobody needs a limit.
constexpr int kWithoutALimit = std::numeric_limits<int>::max();

QDBusMessage Call(const QString& service, const char* method) {
  return QDBusMessage::createMethodCall(service, kObject, kService, method);
}

/// The one value of an answer; nothing when it is a refusal, or says something else.
template <typename Value>
std::optional<Value> OnlyValue(const QDBusMessage& answer) {
  const QVariantList values = answer.arguments();
  if (answer.type() != QDBusMessage::ReplyMessage || values.size() != 1) return std::nullopt;
  if (values.front().metaType() != QMetaType::fromType<Value>()) return std::nullopt;
  return values.front().value<Value>();
}

}  // namespace

Notifications::Notifications() : bus_(QDBusConnection::sessionBus()) {}

void Notifications::Notify(const std::string& title, const std::string& text) {
  if (!bus_.isConnected()) return;
  wish_ = Wish{.title = title, .text = text};
  GoOn();
}

void Notifications::Withdraw() {
  wish_.reset();
  withdrawn_ = true;
  GoOn();
}

void Notifications::GoOn() {
  if (asks_) return;
  if (wish_) return AskForAbilities();
  if (std::exchange(withdrawn_, false)) Close();
}

void Notifications::AskForAbilities() {
  // Asked each time, since another service may have taken the place of the one before.
  Ask(Call(kService, "GetCapabilities"), [this](const QDBusMessage& answer) {
    const auto wish = std::exchange(wish_, std::nullopt);
    if (wish && OnlyValue<QStringList>(answer)) Show(*wish, answer);
  });
}

void Notifications::Show(const Wish& wish, const QDBusMessage& abilities) {
  const QString service = abilities.service();
  const bool takesMarkup = OnlyValue<QStringList>(abilities)->contains("body-markup");
  const QString text = qt::ToQt(wish.text);
  const std::uint32_t before = shown_ && shown_->service == service ? shown_->number : 0;
  QDBusMessage question = Call(service, "Notify");
  question << "Tavlo Deck" << before << kEntry << qt::ToQt(wish.title)
           << (takesMarkup ? text.toHtmlEscaped() : text) << QStringList()
           << QVariantMap{{"desktop-entry", kEntry},
                          {"urgency", QVariant::fromValue(kNormalUrgency)}}
           << kAsLongAsTheServiceLikes;
  withdrawn_ = false;
  Ask(question, [this](const QDBusMessage& answer) {
    if (const auto number = OnlyValue<std::uint32_t>(answer)) {
      shown_ = Shown{.service = answer.service(), .number = *number};
    }
  });
}

void Notifications::Close() {
  if (!shown_) return;
  QDBusMessage wish = Call(shown_->service, "CloseNotification");
  wish << shown_->number;
  // A service that has gone is not started for this.
  wish.setAutoStartService(false);
  shown_.reset();
  bus_.send(wish);
}

void Notifications::Ask(const QDBusMessage& question,
                        std::function<void(const QDBusMessage&)> take) {
  asks_ = true;
  auto* const watcher =
      new QDBusPendingCallWatcher(bus_.asyncCall(question, kWithoutALimit), &answers_);
  QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &answers_,
                   [this, take = std::move(take)](QDBusPendingCallWatcher* answered) {
                     asks_ = false;
                     take(answered->reply());
                     answered->deleteLater();
                     GoOn();
                   });
}

}  // namespace tavlo::platform::desktop
