// The real program with a document that is ready to play, run from outside by keys of any window
// and by the desktop's bus:
//
//     bench_keys            F9 plays while it is held; prints "ready" and runs until it is ended
//     bench_keys SECONDS    the same; after so many seconds prints how long the loop was held
#include <cstdio>
#include <cstdlib>

#include "driven_program.h"
#include "loop_hold.h"
#include "remote/afar_action.h"

int main(int argc, char** argv) {
  using namespace tavlo;
  if (argc > 2) {
    std::fprintf(stderr, "usage: bench_keys [SECONDS]\n");
    return 2;
  }
  const int seconds = argc == 2 ? std::atoi(argv[1]) : 0;
  bench::DrivenProgram driven(argc, argv);
  driven.SkipSplash();
  driven.OnReady = [&] {
    base::Loop& loop = driven.program.Loop();
    forms::ConfigurationForm& config = driven.program.Deck().windows.configuration;
    config.keys[remote::IndexOf(remote::AfarAction::PlayHeld)].txtKey.Value = "F9";
    driven.SelectFirstInSilence();
    bench::LoopHold hold;
    std::printf("ready\n");
    std::fflush(stdout);
    if (seconds == 0) return;
    loop.Wait(std::chrono::seconds(seconds));
    std::printf("held=%.3f\n", hold.Milliseconds());
    driven.program.Loop().Quit(0);
  };
  return driven.program.Run();
}
