// What the Completed folder of a home costs, over the real disk; only no window shows:
//
//     bench_completed scan HOME         builds the list twice, and says how long each time took
//     bench_completed purge HOME DAYS   deletes what is older, and says how long that took, how
//     much
//                                       of it was the flush of the log, how many files stay, and
//                                       for how many milliseconds of its processor the loop was
//                                       held
#include <QApplication>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>

#include "flush_time.h"
#include "lists/completed_list.h"
#include "lists/completed_purge.h"
#include "loop_hold.h"
#include "quiet_rooms.h"

namespace {

using namespace tavlo;

class NoFigures : public lists::WorkFigures {
  void TakeWaitingWorkAsSeen() override {}
};

struct CompletedRooms : bench::QuietRooms {
  explicit CompletedRooms(const std::string& home) : QuietRooms(home) {}

  playback::Transport transport{loop, window, document, engine, voice};
  playback::Preview preview{window, document, engine, voice};
  const playback::Playback playback{document, engine, transport, preview, voice};
  NoFigures figures;
  lists::WaitingWork waitingWork{loop, figures};
  std::string selectedImportFile;
  lists::Opening opening{loop, window, files, playback, waitingWork, selectedImportFile};
  lists::CompletedList completed{loop, window, files, playback, opening};
  lists::CompletedPurge purge{loop, files};
};

double SecondsOf(const std::function<void()>& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

int Scan(CompletedRooms& rooms) {
  const double first = SecondsOf([&] { rooms.completed.RefreshCompletedList(); });
  const double again = SecondsOf([&] { rooms.completed.RefreshCompletedList(); });
  std::printf("first=%.6f again=%.6f files=%d\n", first, again, rooms.completed.CompletedCount);
  return 0;
}

int Purge(CompletedRooms& rooms, std::uint8_t days) {
  bench::LoopHold hold;
  const double flushedBefore = bench::FlushSeconds();
  const double seconds = SecondsOf([&] { rooms.purge.PurgeCompletedFiles(days); });
  const double held = hold.Milliseconds();
  const store::Listing left = rooms.disk.ListPlainFiles(rooms.folders.CompletedPath());
  std::printf("seconds=%.6f flush=%.6f held=%.3f files=%zu\n", seconds,
              bench::FlushSeconds() - flushedBefore, held, left.names.size());
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  const bool scans = what == "scan" && argc == 3;
  if (!scans && (what != "purge" || argc != 4)) {
    std::fprintf(stderr, "usage: bench_completed scan HOME | purge HOME DAYS\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  CompletedRooms rooms(argv[2]);
  return scans ? Scan(rooms) : Purge(rooms, static_cast<std::uint8_t>(std::atoi(argv[3])));
}
