// The real program playing a document, measured from within:
//
//     bench_play DOCUMENT SPEED_PERCENT SECONDS
//
// prints the processor seconds that so many seconds of playing took, and its proportional memory at
// their end: "cpu=SECONDS pss=KIB".
#include <sys/resource.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "driven_program.h"

namespace {

using namespace tavlo;

double CpuSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

long ProportionalKib() {
  std::ifstream rollup("/proc/self/smaps_rollup");
  std::string word;
  while (rollup >> word) {
    if (word == "Pss:" && rollup >> word) return std::stol(word);
  }
  return 0;
}

/// Playing begins before the measure does, so that it holds none of the start.
constexpr std::chrono::seconds kSettle{1};

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::fprintf(stderr, "usage: bench_play DOCUMENT SPEED_PERCENT SECONDS\n");
    return 2;
  }
  const std::string document = argv[1];
  const int speed = std::atoi(argv[2]);
  const std::chrono::seconds length{std::atoi(argv[3])};
  bench::DrivenProgram driven(argc, argv);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    shell::Rooms& rooms = *driven.program.Deck().Built();
    rooms.documentInWork.CurrentDocumentPath = document;
    rooms.engine.PlaySpeedPercent = speed;
    rooms.transport.PlayCommand();
    loop.Wait(kSettle);
    const double before = CpuSeconds();
    loop.Wait(length);
    if (!rooms.engine.IsPlaying) {
      std::fprintf(stderr, "bench_play: %s did not play to the end of the measure\n",
                   document.c_str());
      std::_Exit(1);
    }
    std::printf("cpu=%.3f pss=%ld\n", CpuSeconds() - before, ProportionalKib());
    std::fflush(stdout);
    std::_Exit(0);
  };
  return driven.program.Run();
}
