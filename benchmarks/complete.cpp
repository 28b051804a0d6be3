// The real program, which completes the first documents of its Queue one after the other:
//
//     bench_complete TIMES
//
// prints for each how long it took from the press to the list with the next document chosen, less
// the wait that is made for the reader: "complete=SECONDS".
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "driven_program.h"

namespace {

using namespace tavlo;
using base::operator""ms;

constexpr double kWait = 0.5;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_complete TIMES\n");
    return 2;
  }
  const int times = std::atoi(argv[1]);
  bench::DrivenProgram driven(argc, argv);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    forms::MainForm& form = driven.program.Deck().windows.main;
    form.listViewInQueue.RowClick(0);
    for (int time = 0; time < times; ++time) {
      form.cmdPlay.Press(forms::By::Hand);
      loop.Wait(300ms);
      form.cmdSkipEnd.Press(forms::By::Hand);
      loop.Wait(300ms);
      const std::size_t before = form.listViewInQueue.Rows().size();
      const auto begin = std::chrono::steady_clock::now();
      form.cmdComplete.Press(forms::By::Hand);
      const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begin;
      if (form.listViewInQueue.Rows().size() + 1 != before) {
        std::fprintf(stderr, "bench_complete: no document left the list\n");
        std::_Exit(1);
      }
      std::printf("complete=%.4f\n", took.count() - kWait);
      std::fflush(stdout);
    }
    std::_Exit(0);
  };
  return driven.program.Run();
}
