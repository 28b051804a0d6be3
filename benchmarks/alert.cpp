// Looks for new work in the drop folders of a home as the program does, over the real disk; only no
// window shows. Says what one count of all the folders takes, how many files it found, for how many
// milliseconds of its processor the loop was held at most, and what share of a processor a day of
// ticks and checks at the shipped interval would use, by a twentieth of a day that is run at once:
//
//     bench_alert HOME
#include <time.h>

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

#include "lists/work_alert.h"
#include "loop_hold.h"
#include "quiet_rooms.h"

namespace {

using namespace tavlo;
using base::operator""ms;

constexpr int kCounts = 11;
/// Checks come each 30 seconds, each behind twenty ticks.
constexpr int kChecks = 24 * 3600 / 30 / 20;
constexpr double kSecondsOfThem = 30.0 * kChecks;

class NobodyToTell : public lists::DesktopNotifier {
  void Notify(const std::string&, const std::string&) override {}
  void Withdraw() override {}
};

struct AlertRooms : bench::QuietRooms {
  explicit AlertRooms(const std::string& home) : QuietRooms(home) {
    folders.ReloadQueuePaths({.ew2QueuePath = folders.DefaultQueuePath(store::QueuePath::Ew2),
                              .ds2QueuePath = folders.DefaultQueuePath(store::QueuePath::Ds2),
                              .wavQueuePath = folders.DefaultQueuePath(store::QueuePath::Wav),
                              .eu2QueuePath = folders.DefaultQueuePath(store::QueuePath::Eu2),
                              .viewDelay = "0"});
    form.frameFtp.Visible = false;
    config.frmConfiguration.Visible = false;
    config.txtWorkWaitingAlertMode.Value = "A";
  }

  playback::Transport transport{loop, window, document, engine, voice};
  playback::Preview preview{window, document, engine, voice};
  const playback::Playback playback{document, engine, transport, preview, voice};
  NobodyToTell nobody;
  lists::WaitingFigures figures{loop, disk, folders};
  lists::WaitingWork watch{loop, figures};
  lists::QueueList queue{loop, window, files, engine};
  lists::WorkAlert alert{{loop, window, playback, queue, watch, figures, nobody}};
};

double MedianOfCounts(lists::WaitingFigures& figures) {
  std::vector<double> seconds;
  for (int count = 0; count < kCounts; ++count) {
    const auto begin = std::chrono::steady_clock::now();
    figures.CountWaitingWork();
    seconds.push_back(
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count());
  }
  std::ranges::nth_element(seconds, seconds.begin() + kCounts / 2);
  return seconds[kCounts / 2];
}

double ProcessorSeconds() {
  timespec used{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) * 1e-9;
}

/// The ticks come as fast as the loop takes them, so what the loop needs to wake up counts each
/// time.
double ShareOfADay(AlertRooms& rooms) {
  int ticks = 0;
  const auto rule = rooms.watch.tmrWorkWaitingAlert.OnTick;
  rooms.watch.tmrWorkWaitingAlert.OnTick = [&] {
    rule();
    if (++ticks == 20 * kChecks) rooms.loop.Quit(0);
  };
  const double before = ProcessorSeconds();
  rooms.watch.RestartWith(1ms);
  rooms.loop.Run();
  return (ProcessorSeconds() - before) / kSecondsOfThem;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_alert HOME\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  AlertRooms rooms(argv[1]);
  rooms.figures.TakeWaitingWorkAsSeen();
  bench::LoopHold hold;
  const double seconds = MedianOfCounts(rooms.figures);
  const double share = ShareOfADay(rooms);
  std::printf("seconds=%.6f day=%.6f held=%.3f files=%d\n", seconds, share, hold.Milliseconds(),
              rooms.figures.WaitingQueueCount + rooms.figures.WaitingImportCount);
  return 0;
}
