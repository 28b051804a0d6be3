#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "platform/desktop/given_files.h"
#include "platform/desktop/program.h"

int main(int argc, char** argv) {
  using namespace tavlo::platform::desktop;
  const std::vector<std::string> files = GivenFiles(argc, argv);
  // The toolkit has options of its own, and would take a file for one.
  int programAlone = std::min(argc, 1);
  std::optional<Program> program(std::in_place, programAlone, argv, nullptr,
                                 tavlo::platform::TrustStore(), files);
  const int status = program->Run();
  program.reset();
  std::fflush(nullptr);
  // A call that was left behind may come back at any time, and the libraries that it is in must not
  // have taken themselves apart by then.
  std::_Exit(status);
}
