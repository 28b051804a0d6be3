#include <gtest/gtest.h>

#include <QCoreApplication>

/// Runs tests of edges that wait in the toolkit's event loop.
int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  const QCoreApplication application(argc, argv);
  return RUN_ALL_TESTS();
}
