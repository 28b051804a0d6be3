#include "platform/desktop/session_end.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QEvent>
#include <QProcess>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <sstream>
#include <string>

#include "platform/qt/qt_loop.h"

namespace tavlo::test {
namespace {

using platform::desktop::SessionEnd;
using namespace std::chrono_literals;

/// A loop that somebody watches for the end of the session.
struct SessionEndTest : testing::Test {
  static void SetUpTestSuite() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int count = 1;
    static char name[] = "session_end_test";
    static char* arguments[] = {name, nullptr};
    static QApplication application(count, arguments);
  }
  /// Whoever started the tests may have had signals ignored, as a shell does for what it does not
  /// wait for.
  void SetUp() override {
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) std::signal(signal, SIG_DFL);
  }

  SessionEnd::Calls Calls() {
    return {.ends = [this] { ++ends; }, .screenGone = [this] { ++screensGone; }};
  }
  /// Turns the loop until the session has ended; false when it never does.
  bool Comes(const std::function<void()>& turn) {
    const auto patience = std::chrono::steady_clock::now() + 120s;
    while (ends == 0 && std::chrono::steady_clock::now() < patience) turn();
    return ends > 0;
  }

  platform::qt::QtLoop loop;
  int ends = 0;
  int screensGone = 0;
};

struct OfSignal : SessionEndTest, testing::WithParamInterface<int> {};

TEST_P(OfSignal, IsToldAndTheProcessGoesOn) {
  const SessionEnd watch(Calls());
  std::raise(GetParam());
  EXPECT_EQ(ends, 0);
  EXPECT_TRUE(Comes([this] { loop.Wait(5ms); }));
}

INSTANTIATE_TEST_SUITE_P(Signals, OfSignal, testing::Values(SIGTERM, SIGINT, SIGHUP));

TEST_F(SessionEndTest, SignalReachesALoopThatOnlyBreathes) {
  const SessionEnd watch(Calls());
  std::raise(SIGTERM);
  EXPECT_TRUE(Comes([this] { loop.Breathe(); }));
}

TEST_F(SessionEndTest, TwoSignalsInARowAreTold) {
  const SessionEnd watch(Calls());
  std::raise(SIGTERM);
  std::raise(SIGHUP);
  EXPECT_TRUE(Comes([this] { loop.Wait(5ms); }));
  ends = 0;
  std::raise(SIGTERM);
  EXPECT_TRUE(Comes([this] { loop.Wait(5ms); }));
}

TEST_F(SessionEndTest, SignalThatWasIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  {
    const SessionEnd watch(Calls());
    std::raise(SIGHUP);
    loop.Wait(50ms);
    EXPECT_EQ(ends, 0);
  }
  EXPECT_EQ(std::signal(SIGHUP, SIG_DFL), SIG_IGN);
}

TEST_F(SessionEndTest, SignalsAreAsTheyWereWhenTheWatchIsOver) {
  { const SessionEnd watch(Calls()); }
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    EXPECT_EQ(std::signal(signal, SIG_DFL), SIG_DFL);
  }
}

/// How the signals stand in a program that is started now.
std::map<std::string, std::string> SignalsOfAChild() {
  QProcess child;
  child.start("cat", {"/proc/self/status"});
  EXPECT_TRUE(child.waitForFinished(120'000));
  std::istringstream lines(child.readAllStandardOutput().toStdString());
  std::map<std::string, std::string> standing;
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("Sig") && !line.starts_with("SigQ")) {
      standing[line.substr(0, line.find(':'))] = line;
    }
  }
  EXPECT_EQ(standing.size(), 4u);
  return standing;
}

TEST_F(SessionEndTest, StartedProgramsGetTheSignalsAsTheyWere) {
  const auto before = SignalsOfAChild();
  const SessionEnd watch(Calls());
  EXPECT_EQ(SignalsOfAChild(), before);
}

TEST_F(SessionEndTest, WhatEndsTheProcessFromInsideTheLoopLosesTheScreenFirst) {
  const auto lose = [] {
    const SessionEnd watch({.ends = [] {}, .screenGone = [] { std::fputs("stored", stderr); }});
    std::exit(1);
  };
  EXPECT_EXIT(lose(), testing::ExitedWithCode(0), "stored");
}

TEST_F(SessionEndTest, ProcessWhoseWatchIsOverEndsAsItIsTold) {
  const auto end = [] {
    {
      const SessionEnd watch({.ends = [] {}, .screenGone = [] { std::fputs("stored", stderr); }});
    }
    std::exit(3);
  };
  EXPECT_EXIT(end(), testing::ExitedWithCode(3), "^$");
}

TEST_F(SessionEndTest, WordOfTheSessionManagerToGoIsNoCloseOfTheWindows) {
  const SessionEnd watch(Calls());
  QEvent quit(QEvent::Quit);
  QCoreApplication::sendEvent(qApp, &quit);
  EXPECT_EQ(ends, 1);
}

}  // namespace
}  // namespace tavlo::test
