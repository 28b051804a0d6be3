#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "lists/desktop_notifier.h"

namespace tavlo::test {

/// A desktop that shows each notification at once and keeps it until it is withdrawn.
class SimulatedNotifier : public lists::DesktopNotifier {
 public:
  struct Notification {
    std::string title;
    std::string text;
  };
  /// Everything that it was asked to show, in its order.
  std::vector<Notification> notified;
  /// What shows now.
  std::optional<Notification> shown;
  std::function<void(const Notification&)> OnNotified;
  /// How often it was asked to take one away, whether one showed or not.
  int withdrawals = 0;

  void Notify(const std::string& title, const std::string& text) override {
    notified.push_back({title, text});
    shown = notified.back();
    if (OnNotified) OnNotified(*shown);
  }
  void Withdraw() override {
    ++withdrawals;
    shown.reset();
  }
};

}  // namespace tavlo::test
