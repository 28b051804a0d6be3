#include "platform/desktop/session_end.h"

#include <fcntl.h>
#include <unistd.h>

#include <QEvent>
#include <QGuiApplication>
#include <QObject>
#include <QSessionManager>
#include <QSocketNotifier>
#include <QString>
#include <QThread>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <utility>

namespace tavlo::platform::desktop {
namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};

/// What the toolkit says just before it ends the process.
constexpr std::array kScreenIsGone{"The X11 connection broke", "The Wayland connection "};

/// The pipe that wakes the watch. A signal handler is given nothing but its signal, so it must find
/// this by itself. Below 0 while there is no watch.
std::atomic<int> wakeEnd = -1;

void Wake(int) {
  const int before = errno;
  // A write into a full pipe fails, and then the watch is being woken anyway.
  [[maybe_unused]] const ssize_t written = ::write(wakeEnd, "!", 1);
  errno = before;
}

/// A call of the deck that must not fail into the toolkit. What it could not do it has told.
void Run(const std::function<void()>& call) {
  try {
    call();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "tavlodeck: The end of the session went wrong: %s\n", failure.what());
    std::_Exit(EXIT_FAILURE);
  }
}

}  // namespace

/// Takes over the signals that ask a process to end.
/// Not among the unnamed above: taken together with other sources, a class may not have a member of
/// an unnamed class.
class Signals {
 public:
  explicit Signals(std::function<void()> came) {
    if (::pipe2(ends_.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;
    notifier_ = std::make_unique<QSocketNotifier>(ends_[0], QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this, came = std::move(came)] {
                       std::array<char, 64> bytes{};
                       while (::read(ends_[0], bytes.data(), bytes.size()) > 0) {
                       }
                       came();
                     });
    wakeEnd = ends_[1];
    for (std::size_t i = 0; i < kSignals.size(); ++i) TakeOver(kSignals[i], before_[i]);
  }
  ~Signals() {
    for (std::size_t i = 0; i < kSignals.size(); ++i)
      ::sigaction(kSignals[i], &before_[i], nullptr);
    wakeEnd = -1;
    for (const int end : ends_) ::close(end);
  }
  Signals(const Signals&) = delete;

 private:
  static void TakeOver(int signal, struct sigaction& before) {
    ::sigaction(signal, nullptr, &before);
    if (before.sa_handler == SIG_IGN) return;
    struct sigaction ours = {};
    ours.sa_handler = Wake;
    ours.sa_flags = SA_RESTART;
    ::sigaction(signal, &ours, nullptr);
  }

  std::array<int, 2> ends_{-1, -1};
  std::unique_ptr<QSocketNotifier> notifier_;
  std::array<struct sigaction, kSignals.size()> before_{};
};

class SessionEnd::Watch : public QObject {
 public:
  explicit Watch(Calls calls) : calls_(std::move(calls)), signals_([this] { Run(calls_.ends); }) {
    present = this;
    messagesBefore_ = qInstallMessageHandler(HearMessage);
    // The toolkit ends the process by itself when the screen is gone, and not always with a word.
    // The call can not be taken back, so there is one for all watches.
    [[maybe_unused]] static const int registered = std::atexit([] { LoseScreen(); });
    // The toolkit's own command has options, which would be names of files to this program.
    const auto restart = [](QSessionManager& manager) {
      manager.setRestartCommand({QCoreApplication::applicationFilePath()});
    };
    connect(qGuiApp, &QGuiApplication::saveStateRequest, this, restart);
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, restart);
    // Only what comes with a session that ends: desktops ask for the state at other times too.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, [this] { Run(calls_.ends); });
    qGuiApp->installEventFilter(this);
  }
  ~Watch() override {
    qInstallMessageHandler(messagesBefore_);
    present = nullptr;
  }

 protected:
  /// The session manager's word to go. The toolkit would ask each window to close, and ours refuse.
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() != QEvent::Quit || watched != qGuiApp) return false;
    Run(calls_.ends);
    return true;
  }

 private:
  static void HearMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    const Watch* const watch = present;
    if (watch && watch->messagesBefore_) {
      watch->messagesBefore_(type, context, text);
    } else {
      std::fprintf(stderr, "%s\n", qPrintable(qFormatLogMessage(type, context, text)));
    }
    for (const char* const words : kScreenIsGone) {
      if (text.startsWith(QLatin1String(words))) LoseScreen();
    }
  }

  static void LoseScreen() {
    Watch* const watch = present;
    if (!watch) return;
    // Under Wayland a thread of the toolkit's may be the first to notice. It is about to end the
    // process, so it is kept here while the loop does what there is to do.
    if (QThread::currentThread() != watch->thread()) {
      Wake(0);
      for (;;) ::pause();
    }
    present = nullptr;
    Run(watch->calls_.screenGone);
    std::_Exit(EXIT_SUCCESS);
  }

  /// The watch that lives. The toolkit's message handler and the end of the process are given no
  /// object, so they must find it by themselves.
  static inline std::atomic<Watch*> present = nullptr;

  const Calls calls_;
  Signals signals_;
  QtMessageHandler messagesBefore_ = nullptr;
};

SessionEnd::SessionEnd(Calls calls) : watch_(std::make_unique<Watch>(std::move(calls))) {}

SessionEnd::~SessionEnd() = default;

}  // namespace tavlo::platform::desktop
