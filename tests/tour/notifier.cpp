// The notification service of a tour's desk. What it shows stands in ~/notification.
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QScreen>

namespace {

constexpr const char* kName = "org.freedesktop.Notifications";
constexpr const char* kPlace = "/org/freedesktop/Notifications";
constexpr uint kNumber = 1;
constexpr int kMargin = 12;

/// The one notification that shows at a time, in the upper right corner of the screen, before all
/// windows and without the keyboard.
class Bubble : public QDBusVirtualObject {
 public:
  Bubble()
      : label_(nullptr, Qt::ToolTip | Qt::BypassWindowManagerHint | Qt::WindowDoesNotAcceptFocus),
        note_(QDir::homePath() + "/notification") {
    label_.setStyleSheet("background: #26323e; color: #f2f5f7; padding: 12px; font-size: 13px");
    label_.setTextFormat(Qt::RichText);
  }

  QString introspect(const QString&) const override { return {}; }
  bool handleMessage(const QDBusMessage& question, const QDBusConnection& bus) override {
    const QString member = question.member();
    if (member == "GetCapabilities") {
      return bus.send(question.createReply(QStringList{"body"}));
    }
    if (member == "Notify") {
      Show(question.arguments().value(3).toString(), question.arguments().value(4).toString());
      return bus.send(question.createReply(kNumber));
    }
    if (member != "CloseNotification") return false;
    Close();
    return bus.send(question.createReply());
  }

 private:
  void Show(const QString& title, const QString& text) {
    QFile file(note_);
    if (file.open(QFile::WriteOnly)) file.write((title + "\n" + text + "\n").toUtf8());
    label_.setText("<b>" + title.toHtmlEscaped() + "</b><br>" + text.toHtmlEscaped());
    label_.adjustSize();
    const QRect screen = QApplication::primaryScreen()->geometry();
    label_.move(screen.right() - label_.width() - kMargin, screen.top() + kMargin);
    label_.show();
    label_.raise();
  }
  void Close() {
    label_.hide();
    QFile::remove(note_);
  }

  QLabel label_;
  const QString note_;
};

}  // namespace

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  Bubble bubble;
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.registerVirtualObject(kPlace, &bubble) || !bus.registerService(kName)) return 1;
  return QApplication::exec();
}
