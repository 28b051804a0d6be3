// The real program with a document that is ready to play, run from outside by keys of any window
// and by the desktop's bus:
//
//     bench_keys            F9 plays while it is held; prints "ready" and runs until it is ended
//     bench_keys SECONDS    the same; after so many seconds also prints how long the loop was held
#include <cstdio>
#include <cstdlib>
#include <optional>

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
  std::optional<bench::LoopHold> hold;
  // A box may be open by then, in whose loop no wait of this program's own would come to an end.
  base::Timer end(driven.program.Loop(), "The end of a watch", std::chrono::seconds(seconds),
                  base::TimerKind::Feed);
  end.OnTick = [&] {
    end.Stop();
    std::printf("held=%.3f\n", hold->Milliseconds());
    std::fflush(stdout);
  };
  driven.OnReady = [&] {
    forms::ConfigurationForm& config = driven.program.Deck().windows.configuration;
    config.keys[remote::IndexOf(remote::AfarAction::PlayHeld)].txtKey.Value = "F9";
    driven.SelectFirstInSilence();
    hold.emplace();
    std::printf("ready\n");
    std::fflush(stdout);
    end.Start();
  };
  return driven.program.Run();
}
