#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>

#include "platform/qt/qt_windows.h"
#include "support/desktop.h"

/// Runs window tests on a desktop that has room for the deck at twice its size.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
  const tavlo::test::Desktop desktop("2560x2048");
  if (!desktop.Fault().empty()) {
    std::fprintf(stderr, "%s\n", desktop.Fault().c_str());
    return 1;
  }
  QApplication application(argc, argv);
  tavlo::platform::qt::PrepareApplication();
  return RUN_ALL_TESTS();
}
