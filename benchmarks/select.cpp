// The real program, in whose Queue a hand clicks one row after the other:
//
//     bench_select CLICKS
//
// prints the moment of each click, "click SECONDS" on the machine's monotonic clock, and lets the
// preview sound for a moment before it ends it. Whoever listens to the sound card can tell how long
// the first sound took.
#include <chrono>
#include <cstdio>
#include <cstdlib>

#include "driven_program.h"

namespace {

using namespace tavlo;
using base::operator""ms;

double Seconds() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: bench_select CLICKS\n");
    return 2;
  }
  const int clicks = std::atoi(argv[1]);
  bench::DrivenProgram driven(argc, argv);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    forms::MainForm& form = driven.program.Deck().windows.main;
    const int rows = static_cast<int>(form.listViewInQueue.Rows().size());
    for (int click = 0; click < clicks; ++click) {
      loop.Wait(700ms);
      std::printf("click %.6f\n", Seconds());
      std::fflush(stdout);
      form.listViewInQueue.RowClick(click % rows);
      loop.Wait(400ms);
      form.cmdImportCompleteSnipetStop.Press(forms::By::Hand);
    }
    std::_Exit(0);
  };
  return driven.program.Run();
}
