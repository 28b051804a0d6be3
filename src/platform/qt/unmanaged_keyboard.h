#pragma once

#include <QObject>
#include <QPointer>
#include <vector>

class QWindow;

namespace tavlo::platform::qt {

/// Gives windows the keyboard where no window manager does: each that appears, unless it is shown
/// without activating, each that is clicked, and when the one that had it goes, the latest of those
/// that are left. Does nothing while there is a manager.
class UnmanagedKeyboard : public QObject {
 public:
  /// Watches the application's windows for as long as it lives.
  UnmanagedKeyboard();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Forget(const QWindow* window);
  void GiveTo(QWindow* window);

  std::vector<QPointer<QWindow>> windows_;  ///< What shows; the latest to get the keyboard is last.
};

}  // namespace tavlo::platform::qt
