// The real program with a document selected, whose pedal library a foot feeds from outside:
//
//     bench_pedal
//
// prints "ready" once the foot may press, and runs until it is ended.
#include <cstdio>

#include "driven_program.h"

namespace {

using namespace tavlo;
using base::operator""ms;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 1) {
    std::fprintf(stderr, "usage: bench_pedal\n");
    return 2;
  }
  bench::DrivenProgram driven(argc, argv);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    forms::MainForm& form = driven.program.Deck().windows.main;
    form.listViewInQueue.RowClick(0);
    loop.Wait(400ms);
    form.cmdImportCompleteSnipetStop.Press(forms::By::Hand);
    loop.Wait(400ms);
    std::printf("ready\n");
    std::fflush(stdout);
  };
  return driven.program.Run();
}
