// A typist's day in the real program, at whatever desk it is started:
//
//     tavlodeck_tour FOLDER
//
// keeps a picture of what was to be seen in the folder and ends with 0 only if every step was seen.
#include <cstdio>

#include "day.h"

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: tavlodeck_tour FOLDER\n");
    return 2;
  }
  const QString folder = QString::fromLocal8Bit(argv[1]);
  tavlo::platform::desktop::Program program(argc, argv);
  tavlo::tour::Day day(program);
  tavlo::tour::Tour tour(program.Loop(), folder, day.Steps());
  tour.Begin();
  const int status = program.Run();
  return status == 0 && tour.Succeeded() ? 0 : 1;
}
