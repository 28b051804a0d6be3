// A typist's day in the real program and the next morning, at whatever desk it is started:
//
//     tavlodeck_tour FOLDER
//
// keeps a picture of what was to be seen in the folder and ends with 0 only if every step was seen.
// What the desk's sound card plays is to be recorded in the folder's "sound.wav" meanwhile.
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "day.h"
#include "desk.h"

namespace {

/// Puts a stand-in for the pedal's library where the first day's start has linked the real one.
std::unique_ptr<tavlo::test::PedalPipe> PlugPedalIn() {
  const std::string library = (QDir::homePath() + "/Lyrane/TavloDeck/PedalWatch.so").toStdString();
  std::filesystem::remove(library);
  return std::make_unique<tavlo::test::PedalPipe>(library);
}

using Steps = std::vector<tavlo::tour::Step> (tavlo::tour::Day::*)();

/// Runs the program with the steps of one day beside it; true once every step was seen.
bool Live(Steps steps, tavlo::tour::Left& left, const tavlo::test::PedalPipe* foot, int argc,
          char** argv) {
  tavlo::platform::desktop::Program program(argc, argv);
  const QString folder = QString::fromLocal8Bit(argv[1]);
  tavlo::tour::Day day(program, left, foot, folder + "/sound.wav");
  tavlo::tour::Tour tour(program.Loop(), folder, (day.*steps)(), left.stepsSoFar + 1);
  tour.Begin();
  const int status = program.Run();
  left.stepsSoFar = tour.After() - 1;
  return status == 0 && tour.Succeeded();
}

/// A process keeps the libraries it has loaded, so each day has one of its own.
bool InAProcess(const std::function<bool()>& call) {
  std::fflush(stdout);
  const ::pid_t child = ::fork();
  if (child == 0) {
    const bool succeeded = call();
    std::fflush(stdout);
    ::_exit(succeeded ? 0 : 1);
  }
  int status = 1;
  return ::waitpid(child, &status, 0) == child && status == 0;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: tavlodeck_tour FOLDER\n");
    return 2;
  }
  void* const shared = ::mmap(nullptr, sizeof(tavlo::tour::Left), PROT_READ | PROT_WRITE,
                              MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  if (shared == MAP_FAILED) return 1;
  auto& left = *new (shared) tavlo::tour::Left;
  using tavlo::tour::Day;
  const tavlo::tour::Desk desk;
  const bool first = InAProcess([&] { return Live(&Day::Steps, left, nullptr, argc, argv); });
  const bool second = InAProcess([&] {
    const auto foot = PlugPedalIn();
    return Live(&Day::NextMorning, left, foot.get(), argc, argv);
  });
  return first && second ? 0 : 1;
}
