#include "platform/qt/faded_inks.h"

#include <QEvent>
#include <QGuiApplication>
#include <QWidget>

#include "platform/qt/colours.h"

namespace tavlo::platform::qt {
namespace {

constexpr double kFadedShare = 0.55;  ///< Of the letters' colour in that of disabled letters.

class FadedInks : public QObject {
 public:
  explicit FadedInks(QWidget& ground) : QObject(&ground), ground_(ground) {
    Choose();
    ground.installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::PaletteChange) Choose();
    return false;
  }

 private:
  /// What can be read on one of the desktop's grounds may not be on another.
  void Choose() {
    const QPalette desktop = QGuiApplication::palette();
    const QColor page = desktop.color(QPalette::Window);
    QColor ink = Mixed(page, desktop.color(QPalette::Active, QPalette::WindowText), kFadedShare);
    for (const auto role : {QPalette::Window, QPalette::Base, QPalette::Button}) {
      ink = Readable(ink, desktop.color(QPalette::Disabled, role));
    }
    // Only what is set here is the ground's own; everything else goes on following the desktop.
    QPalette own;
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
      own.setColor(QPalette::Disabled, role, ink);
    }
    ground_.setPalette(own);
  }

  QWidget& ground_;
};

}  // namespace

void KeepDisabledReadable(QWidget& ground) { new FadedInks(ground); }

}  // namespace tavlo::platform::qt
