// The real program, which says on its standard output when it was ready for the typist:
//
//     ready SECONDS waits SECONDS
//
// Both count from the start of the process; the second is how much of it were waits made for the
// reader of the screen. It goes on as the program does.
#include <unistd.h>

#include <cstdio>
#include <ctime>
#include <fstream>
#include <sstream>
#include <string>

#include "driven_program.h"

namespace {

/// The splash, the pause after the main window's first moment, the first refresh's timer and waits.
constexpr double kWaits = 5.0 + 1.0 + 0.1 + 1.0 + 0.5;

/// Seconds since the process was started, by the kernel's own note of it (in ticks of its clock).
double SecondsSinceStart() {
  std::ifstream stat("/proc/self/stat");
  std::string line;
  std::getline(stat, line);
  // The name of the program stands in brackets and may hold blanks; the start is field 22.
  std::istringstream fields(line.substr(line.rfind(')') + 2));
  std::string field;
  for (int number = 3; number <= 22; ++number) fields >> field;
  timespec now{};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9 -
         std::stod(field) / static_cast<double>(sysconf(_SC_CLK_TCK));
}

}  // namespace

int main(int argc, char** argv) {
  tavlo::bench::DrivenProgram driven(argc, argv);
  driven.OnReady = [] {
    std::printf("ready %.3f waits %.3f\n", SecondsSinceStart(), kWaits);
    std::fflush(stdout);
  };
  return driven.program.Run();
}
