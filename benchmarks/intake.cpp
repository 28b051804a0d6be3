// Brings work into a home as the program does, over the real disk and the real conversion libraries
// of that home; only no window shows:
//
//     bench_intake retrieve HOME [EW2_FOLDER]   runs all passes over the drop folders
//     bench_intake import HOME                  builds the list of the first import directory
//
// and says how long that took, how much of it was waiting for flushes of the disk, how many files
// the Queue or the list holds then, and for how many milliseconds of its processor the loop was
// held at most.
#include <unistd.h>

#include <QApplication>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

#include "flush_time.h"
#include "intake/import_list.h"
#include "intake/retrieval_passes.h"
#include "intake/window_front.h"
#include "loop_hold.h"
#include "platform/convert/plugin_conversion_libraries.h"
#include "quiet_rooms.h"

namespace {

using namespace tavlo;

class NoAutoImport : public intake::ImportChain {
  void AutoImportAll() override {}
};

struct IntakeRooms : bench::QuietRooms {
  explicit IntakeRooms(const std::string& home) : QuietRooms(home) {
    folders.ReloadQueuePaths({.ew2QueuePath = folders.DefaultQueuePath(store::QueuePath::Ew2),
                              .ds2QueuePath = folders.DefaultQueuePath(store::QueuePath::Ds2),
                              .wavQueuePath = folders.DefaultQueuePath(store::QueuePath::Wav),
                              .eu2QueuePath = folders.DefaultQueuePath(store::QueuePath::Eu2),
                              .viewDelay = "0"});
    form.txtWavImportSubdirectory.Value = "0";
    importList.MakeColumns();
  }

  playback::Transport transport{loop, window, document, engine, voice};
  playback::Preview preview{window, document, engine, voice};
  const playback::Playback playback{document, engine, transport, preview, voice};
  platform::PluginConversionLibraries libraries{errands, folders};
  intake::WindowFront front{window};
  intake::Claims claims{loop, disk, moves, {.host = "bench", .process = ::getpid()}};
  intake::Conversion conversion{{loop, disk, folders, moves, claims, libraries, front}};
  intake::ImportList importList{loop, window, files, playback, conversion, claims};
  NoAutoImport noAutoImport;
  intake::FileBeingReceived receiving;
  intake::RetrievalPasses passes{
      {loop, disk, folders, moves, claims, conversion, noAutoImport, front, receiving}};
};

void Measure(const std::function<void()>& work, const std::function<int()>& count) {
  bench::LoopHold hold;
  const double flushedBefore = bench::FlushSeconds();
  const auto begin = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
  const double held = hold.Milliseconds();
  std::printf("seconds=%.6f flush=%.6f held=%.3f files=%d\n", seconds.count(),
              bench::FlushSeconds() - flushedBefore, held, count());
}

}  // namespace

int main(int argc, char** argv) {
  const std::string what = argc > 1 ? argv[1] : "";
  const bool retrieves = what == "retrieve" && (argc == 3 || argc == 4);
  if (!retrieves && (what != "import" || argc != 3)) {
    std::fprintf(stderr, "usage: bench_intake retrieve HOME [EW2_FOLDER] | import HOME\n");
    return 2;
  }
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  IntakeRooms rooms(argv[2]);
  if (argc == 4) rooms.folders.Ew2QueuePath = rooms.folders.QueuePathOf(argv[3]);
  if (retrieves) {
    Measure([&] { rooms.passes.RunRetrievalPasses(); },
            [&] {
              const store::Listing queue = rooms.disk.ListPlainFiles(rooms.folders.InQueuePath);
              return static_cast<int>(queue.names.size());
            });
  } else {
    Measure([&] { rooms.importList.RefreshImportList("0"); },
            [&] { return rooms.importList.ImportCount; });
  }
  return 0;
}
