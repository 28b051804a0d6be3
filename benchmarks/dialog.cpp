// The real program, whose configuration is opened, changed and closed again:
//
//     bench_dialog TIMES
//
// prints for each time how long it took from the press on its entry of the menu until the window
// was painted, and from the press on Close until that had done its work, less what the disk took to
// flush it: "open=SECONDS save=SECONDS flush=SECONDS".
#include <QApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "driven_program.h"
#include "flush_time.h"

namespace {

using namespace tavlo;
using base::operator""ms;
using Clock = std::chrono::steady_clock;

double SecondsSince(Clock::time_point begin) {
  return std::chrono::duration<double>(Clock::now() - begin).count();
}

[[noreturn]] void Fail(const char* why) {
  std::fprintf(stderr, "bench_dialog: %s\n", why);
  std::_Exit(1);
}

/// Sees when something of the configuration window is painted.
class PaintWatch : public QObject {
 public:
  PaintWatch() { qApp->installEventFilter(this); }

  /// Until it stands on the screen whole.
  void AwaitPainted(base::Loop& loop) {
    painted_ = false;
    while (!painted_ || !window_->windowHandle()->isExposed()) loop.Yield();
    QGuiApplication::sync();
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint && watched->isWidgetType()) {
      QWidget* const window = static_cast<QWidget*>(watched)->window();
      if (window->objectName() == "frmConfiguration") {
        window_ = window;
        painted_ = true;
      }
    }
    return false;
  }

 private:
  QWidget* window_ = nullptr;
  bool painted_ = false;
};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_dialog TIMES\n");
    return 2;
  }
  const int times = std::atoi(argv[1]);
  bench::DrivenProgram driven(argc, argv);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    forms::MainForm& form = driven.program.Deck().windows.main;
    forms::ConfigurationForm& config = driven.program.Deck().windows.configuration;
    PaintWatch watch;
    for (int time = 0; time < times; ++time) {
      const Clock::time_point asked = Clock::now();
      form.mnuConfiguration.Press(forms::By::Hand);
      watch.AwaitPainted(loop);
      const double opened = SecondsSince(asked);
      config.sliderWindIncrement.Change(1 + time % 60);
      loop.Wait(100ms);
      const double flushedBefore = bench::FlushSeconds();
      const Clock::time_point closed = Clock::now();
      config.mnuClose.Press(forms::By::Hand);
      const double took = SecondsSince(closed);
      const double flush = bench::FlushSeconds() - flushedBefore;
      if (config.frmConfiguration.Visible || flush <= 0) Fail("nothing was saved");
      std::printf("open=%.5f save=%.5f flush=%.5f\n", opened, took - flush, flush);
      std::fflush(stdout);
      loop.Wait(300ms);
    }
    std::_Exit(0);
  };
  return driven.program.Run();
}
