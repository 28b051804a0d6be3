#include <gtest/gtest.h>

#include <cstdio>

#include "support/desktop.h"
#include "support/sound_server.h"

/// Runs tests of the whole program on a desktop of their own and, until one starts a server,
/// without sound.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const tavlo::test::Desktop desktop;
  if (!desktop.Fault().empty()) {
    std::fprintf(stderr, "%s\n", desktop.Fault().c_str());
    return 1;
  }
  tavlo::test::SoundServer::HideServers();
  return RUN_ALL_TESTS();
}
