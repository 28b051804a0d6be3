// Scans the Queue of a home twice, as the program does at its start and at a refresh, and says how
// long each scan took: the list, the name parser, the disk and the measuring of lengths are the
// real ones; only no window shows.
#include <QApplication>
#include <chrono>
#include <cstdio>

#include "lists/queue_list.h"
#include "quiet_rooms.h"

namespace {

using namespace tavlo;

double SecondsOf(lists::QueueList& queue) {
  const auto begin = std::chrono::steady_clock::now();
  queue.RefreshQueueList();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_scan HOME\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  bench::QuietRooms rooms(argv[1]);
  lists::QueueList queue(rooms.loop, rooms.window, rooms.files, rooms.engine);

  const double first = SecondsOf(queue);
  const double again = SecondsOf(queue);
  if (queue.QueueCount == 0) {
    std::fprintf(stderr, "bench_scan: no documents in %s\n", rooms.folders.InQueuePath.c_str());
    return 1;
  }
  std::printf("first=%.6f again=%.6f\n", first, again);
  return 0;
}
