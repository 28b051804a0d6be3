#include <cstdio>
#include <cstdlib>
#include <optional>

#include "platform/desktop/program.h"

int main(int argc, char** argv) {
  std::optional<tavlo::platform::desktop::Program> program(std::in_place, argc, argv);
  const int status = program->Run();
  program.reset();
  std::fflush(nullptr);
  // A call that was left behind may come back at any time, and the libraries that it is in must not
  // have taken themselves apart by then.
  std::_Exit(status);
}
