#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "accessibility/listening_desk.h"
#include "support/desktop.h"

namespace {

constexpr const char* kAtItsBus = "TAVLO_TEST_AT_ITS_BUS";

/// Starts this program again under a session bus of its own, on which the desktop's services for
/// screen readers start by themselves.
int RunUnderABus(char** argv) {
  setenv(kAtItsBus, "yes", 1);
  std::vector<char*> words{const_cast<char*>("dbus-run-session"), const_cast<char*>("--")};
  for (char** word = argv; *word; ++word) words.push_back(*word);
  words.push_back(nullptr);
  execvp(words[0], words.data());
  std::perror("dbus-run-session");
  return 1;
}

}  // namespace

/// Runs tests on a desktop of their own that a screen reader can listen to.
int main(int argc, char** argv) {
  std::vector<char*> words(argv, argv + argc + 1);
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  if (!std::getenv(kAtItsBus)) return RunUnderABus(words.data());
  prctl(PR_SET_PDEATHSIG, SIGTERM);
  const tavlo::test::Desktop desktop;
  if (!desktop.Fault().empty()) {
    std::fprintf(stderr, "%s\n", desktop.Fault().c_str());
    return 1;
  }
  return tavlo::test::ListeningDesk::RunAllTests();
}
