// A typist's day in the real program and the next morning, at whatever desk it is started:
//
//     tavlodeck_tour FOLDER
//
// keeps a picture of what was to be seen in the folder and ends with 0 only if every step was seen.
#include <cstdio>
#include <vector>

#include "day.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: tavlodeck_tour FOLDER\n");
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  using Steps = std::vector<tavlo::tour::Step> (tavlo::tour::Day::*)();
  tavlo::tour::Left left;
  std::size_t first = 1;
  bool succeeded = true;
  for (const Steps steps : {&tavlo::tour::Day::Steps, &tavlo::tour::Day::NextMorning}) {
    tavlo::platform::desktop::Program program(argc, argv);
    tavlo::tour::Day day(program, left);
    tavlo::tour::Tour tour(program.Loop(), folder, (day.*steps)(), first);
    tour.Begin();
    const int status = program.Run();
    succeeded = succeeded && status == 0 && tour.Succeeded();
    first = tour.After();
  }
  return succeeded ? 0 : 1;
}
