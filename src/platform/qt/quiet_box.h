#pragma once

#include <QEventLoop>
#include <QObject>
#include <QWindowList>

class QDialog;

namespace tavlo::platform::qt {

/// Shows a box that comes up by itself: it stands above all windows, also where all others of the
/// program are minimized, and takes no key from whoever types in another program if it is told so
/// (Qt::WA_ShowWithoutActivating). It waits until it is clicked, or somebody comes to one of the
/// program's windows. The toolkit gives each modal window the keyboard, so this box is none; what
/// hands do at the windows that stood before it is refused here.
class QuietBox : public QObject {
 public:
  /// The dialog must not have been shown yet, and outlives this.
  explicit QuietBox(QDialog& dialog);

  /// Shows the dialog and turns the event loop until it is answered.
  void Run();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QDialog& dialog_;
  const QWindowList before_;  ///< For comparing alone: one of them may have gone.
  QEventLoop loop_;
};

}  // namespace tavlo::platform::qt
