#pragma once

#include <QDBusConnection>
#include <QObject>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "lists/desktop_notifier.h"

class QDBusMessage;

namespace tavlo::platform::desktop {

/// Notifications by the service that the desktop has for them on its session bus. Where there is no
/// bus or no service, or it refuses or answers what makes no sense, nothing shows and nobody is
/// told.
///
/// One question at a time is under way, without a limit. What is asked for meanwhile takes the
/// place of what was asked for before, so a service that hangs holds nobody and gathers nothing;
/// once it goes on it shows the latest. Answers come while the loop turns, in breaths too; no rule
/// hears of them.
class Notifications : public lists::DesktopNotifier {
 public:
  /// Takes the connection to the session bus that the toolkit has made for itself by now. So it is
  /// to be made once the QApplication stands, and soon after: to make a connection, the toolkit
  /// waits for a bus that hangs.
  Notifications();
  Notifications(const Notifications&) = delete;

  void Notify(const std::string& title, const std::string& text) override;
  void Withdraw() override;

 private:
  struct Wish {
    std::string title;
    std::string text;
  };
  /// A notification that shows: which of whose. The service may start anew and count from one.
  struct Shown {
    QString service;
    std::uint32_t number = 0;
  };

  void GoOn();
  void AskForAbilities();
  void Show(const Wish& wish, const QDBusMessage& abilities);
  void Close();
  /// Sends a question; its answer comes to `take` on this thread.
  void Ask(const QDBusMessage& question, std::function<void(const QDBusMessage&)> take);

  QDBusConnection bus_;
  std::optional<Wish> wish_;  ///< What is to be shown and has not been sent.
  std::optional<Shown> shown_;
  bool asks_ = false;       ///< A question has no answer yet.
  bool withdrawn_ = false;  ///< What was sent last is to be taken away.
  QObject answers_;         ///< Owns what waits for an answer; the first to go.
};

}  // namespace tavlo::platform::desktop
