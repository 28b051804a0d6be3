// Looks for new work in the drop folders of a home as the program does, over the real disk; only no
// window shows. Says what the first count of all the folders takes, what a later one does, how many
// files it found, for how many milliseconds of its processor the loop was held at most, and what
// share of a processor a day of ticks and checks at the shipped interval would use, by a twentieth
// of a day that is run at once:
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

double SecondsOf(lists::WaitingFigures& figures) {
  const auto begin = std::chrono::steady_clock::now();
  figures.CountWaitingWork();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

double Median(std::vector<double> seconds) {
  std::ranges::nth_element(seconds, seconds.begin() + std::ssize(seconds) / 2);
  return seconds[seconds.size() / 2];
}

/// One that knows no folder yet lists all of them.
double MedianOfFirstCounts(AlertRooms& rooms) {
  std::vector<double> seconds;
  for (int count = 0; count < kCounts; ++count) {
    lists::WaitingFigures fresh(rooms.loop, rooms.disk, rooms.folders);
    seconds.push_back(SecondsOf(fresh));
  }
  return Median(seconds);
}

double MedianOfCounts(lists::WaitingFigures& figures) {
  std::vector<double> seconds;
  for (int count = 0; count < kCounts; ++count) seconds.push_back(SecondsOf(figures));
  return Median(seconds);
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
  bench::LoopHold hold;
  const double first = MedianOfFirstCounts(rooms);
  rooms.figures.TakeWaitingWorkAsSeen();
  const double seconds = MedianOfCounts(rooms.figures);
  const double share = ShareOfADay(rooms);
  std::printf("first=%.6f seconds=%.6f day=%.6f held=%.3f files=%d\n", first, seconds, share,
              hold.Milliseconds(),
              rooms.figures.WaitingQueueCount + rooms.figures.WaitingImportCount);
  return 0;
}
