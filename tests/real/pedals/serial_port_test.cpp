#include <fcntl.h>
#include <gtest/gtest.h>
#include <semaphore.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <utility>

#include "pedals/heard_news.h"
#include "platform/serial/posix_serial_port.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using pedals::SerialLines;
using platform::PosixSerialPort;

/// A terminal of this process's own, linked as a port of a folder of the test's own. It has no
/// modem lines; a test says what they would be.
class PretendedPort {
 public:
  PretendedPort(const TemporaryFolder& folder, const std::string& name)
      : master_(::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)), path_(folder / name) {
    if (::grantpt(master_) != 0 || ::unlockpt(master_) != 0) std::abort();
    std::filesystem::create_symlink(::ptsname(master_), path_);
  }
  ~PretendedPort() { ::close(master_); }
  PretendedPort(const PretendedPort&) = delete;

 private:
  const int master_;
  const std::string path_;
};

using Wait = platform::ModemLines::Wait;

/// Lines that a test moves, with a wait that a signal interrupts, as the kernel's is.
class PretendedLines : public platform::ModemLines {
 public:
  PretendedLines() { ::sem_init(&changes_, 0, 0); }
  ~PretendedLines() override { ::sem_destroy(&changes_); }

  /// What `Status` answers from now on; nothing stands for a port that has gone.
  void Become(std::optional<int> bits) {
    status_ = bits.value_or(kGone);
    ::sem_post(&changes_);
  }
  /// The waits that have begun.
  int Waits() const { return waits_; }
  std::atomic<bool> CanWait = true;
  std::atomic<bool> ReturnsAtOnce = false;

  std::optional<int> Status(int) override {
    const int bits = status_;
    if (bits == kGone) return {};
    return bits;
  }
  Wait AwaitChange(int) override {
    ++waits_;
    if (!CanWait) return Wait::Impossible;
    if (ReturnsAtOnce) return Wait::Changed;
    if (::sem_wait(&changes_) != 0) return Wait::Interrupted;
    return status_ == kGone ? Wait::Impossible : Wait::Changed;
  }

 private:
  static constexpr int kGone = -1;

  ::sem_t changes_{};
  std::atomic<int> status_ = 0;
  std::atomic<int> waits_ = 0;
};

/// False when it does not become true in a minute.
bool Until(const std::function<bool()>& condition) {
  for (int look = 0; look < 60'000 && !condition(); ++look) {
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return condition();
}

struct SerialPortTest : testing::Test {
  const TemporaryFolder folder;
  HeardNews news;
  std::unique_ptr<PretendedLines> made = std::make_unique<PretendedLines>();
  PretendedLines& lines = *made;
  PosixSerialPort port{folder.Path(), std::move(made)};
};

TEST_F(SerialPortTest, NumberCountsFromOne) {
  const PretendedPort first(folder, "ttyS0");
  const PretendedPort second(folder, "ttyS1");
  EXPECT_TRUE(port.Open(1));
  EXPECT_EQ(port.Path(), folder / "ttyS0");
  EXPECT_TRUE(port.Open(2));
  EXPECT_EQ(port.Path(), folder / "ttyS1");
}

TEST_F(SerialPortTest, AdaptersFollowWhereThereIsNoBuiltInPort) {
  const PretendedPort modem(folder, "ttyACM0");
  EXPECT_TRUE(port.Open(1));
  EXPECT_EQ(port.Path(), folder / "ttyACM0");
  const PretendedPort adapter(folder, "ttyUSB0");
  EXPECT_TRUE(port.Open(1));
  EXPECT_EQ(port.Path(), folder / "ttyUSB0");
}

TEST_F(SerialPortTest, PortThatDoesNotExistIsNotOpened) {
  const PretendedPort first(folder, "ttyS0");
  EXPECT_FALSE(port.Open(2));
  EXPECT_FALSE(port.Open(0));
  EXPECT_FALSE(port.Open(-1));
  EXPECT_EQ(port.Path(), "");
  EXPECT_FALSE(port.ReadLines());
}

TEST_F(SerialPortTest, FailedOpenClosesThePortThatWasOpen) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  EXPECT_FALSE(port.Open(2));
  EXPECT_FALSE(port.ReadLines());
}

TEST_F(SerialPortTest, PlainFileIsNoPort) {
  folder.Write("ttyS0", "not a terminal");
  EXPECT_FALSE(port.Open(1));
}

TEST_F(SerialPortTest, PortWithoutModemLinesIsNotOpened) {
  const PretendedPort terminal(folder, "ttyS0");
  PosixSerialPort real(folder.Path());
  EXPECT_FALSE(real.Open(1));
}

TEST_F(SerialPortTest, LinesAreReadOneByOne) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  const std::map<int, SerialLines> cases{
      {0, {}},
      {TIOCM_CD, {.CDHolding = true}},
      {TIOCM_DSR, {.DSRHolding = true}},
      {TIOCM_CTS, {.CTSHolding = true}},
      {TIOCM_CD | TIOCM_CTS | TIOCM_RI | TIOCM_DTR, {.CDHolding = true, .CTSHolding = true}}};
  for (const auto& [bits, held] : cases) {
    lines.Become(bits);
    EXPECT_EQ(port.ReadLines(), held) << bits;
  }
}

TEST_F(SerialPortTest, PortThatGoesIsLookedForUntilItComesBack) {
  auto adapter = std::make_optional<PretendedPort>(folder, "ttyUSB0");
  ASSERT_TRUE(port.Open(1));
  lines.Become({});
  EXPECT_FALSE(port.ReadLines());
  std::filesystem::remove(folder / "ttyUSB0");
  adapter.reset();
  lines.Become(TIOCM_DSR);
  for (int read = 0; read < 100; ++read) ASSERT_FALSE(port.ReadLines());
  adapter.emplace(folder, "ttyUSB0");
  std::optional<SerialLines> held;
  for (int read = 0; read < 20 && !held; ++read) held = port.ReadLines();
  EXPECT_EQ(held, SerialLines{.DSRHolding = true});
}

TEST_F(SerialPortTest, ChangeIsToldOnceToWhoeverWaitsForIt) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  ASSERT_TRUE(Until([&] { return port.TellOnce(news); }));
  news.Turn();
  EXPECT_EQ(news.Count, 0);
  lines.Become(TIOCM_CD);
  EXPECT_TRUE(news.Until(1));
  lines.Become(0);
  ASSERT_TRUE(Until([&] { return lines.Waits() == 3; }));
  news.Turn();
  EXPECT_EQ(news.Count, 1);
}

TEST_F(SerialPortTest, ChangeBeforeARequestIsToldAtOnceUnlessTheLinesWereRead) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  lines.Become(TIOCM_CD);
  ASSERT_TRUE(Until([&] { return lines.Waits() == 2; }));
  ASSERT_TRUE(Until([&] { return port.TellOnce(news); }));
  EXPECT_TRUE(news.Until(1));
  lines.Become(0);
  ASSERT_TRUE(Until([&] { return lines.Waits() == 3; }));
  EXPECT_EQ(port.ReadLines(), SerialLines{});
  ASSERT_TRUE(Until([&] { return port.TellOnce(news); }));
  news.Turn();
  EXPECT_EQ(news.Count, 1);
}

TEST_F(SerialPortTest, FootThatLetsGoIsSeenAheadOfTheRulesWhichReadItFirst) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  EXPECT_FALSE(port.LetGo()) << "no pedal was down";
  lines.Become(TIOCM_CD | TIOCM_DSR);
  EXPECT_FALSE(port.LetGo()) << "the rules have heard of no press";
  EXPECT_TRUE(port.ReadLines());
  lines.Become(TIOCM_DSR);
  EXPECT_FALSE(port.LetGo());
  lines.Become(0);
  EXPECT_TRUE(port.LetGo());
  EXPECT_FALSE(port.LetGo());
  lines.Become(TIOCM_CTS);
  EXPECT_FALSE(port.LetGo());
  EXPECT_EQ(port.ReadLines(), SerialLines{});
  EXPECT_FALSE(port.TellOnce(news)) << "it must be read again";
  EXPECT_EQ(port.ReadLines(), SerialLines{.CTSHolding = true});
}

TEST_F(SerialPortTest, PortThatGoesUnderAFootCountsAsLetGo) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  lines.Become(TIOCM_DSR);
  EXPECT_TRUE(port.ReadLines());
  lines.Become(std::nullopt);
  EXPECT_TRUE(port.LetGo());
  EXPECT_EQ(port.ReadLines(), SerialLines{});
  EXPECT_FALSE(port.ReadLines());
}

TEST_F(SerialPortTest, ReadEndsARequest) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  ASSERT_TRUE(Until([&] { return port.TellOnce(news); }));
  port.ReadLines();
  lines.Become(TIOCM_CD);
  ASSERT_TRUE(Until([&] { return lines.Waits() == 2; }));
  news.Turn();
  EXPECT_EQ(news.Count, 0);
}

TEST_F(SerialPortTest, PortThatCannotWaitDoesNotTell) {
  const PretendedPort first(folder, "ttyS0");
  lines.CanWait = false;
  ASSERT_TRUE(port.Open(1));
  ASSERT_TRUE(Until([&] { return lines.Waits() == 1 && !port.TellOnce(news); }));
  EXPECT_FALSE(port.TellOnce(news));
  lines.Become(TIOCM_DSR);
  EXPECT_EQ(port.ReadLines(), SerialLines{.DSRHolding = true});
}

TEST_F(SerialPortTest, PortWhoseWaitReturnsAgainAndAgainIsTakenForOneThatCannotWait) {
  const PretendedPort first(folder, "ttyS0");
  lines.ReturnsAtOnce = true;
  ASSERT_TRUE(port.Open(1));
  ASSERT_TRUE(Until([&] {
    const int waits = lines.Waits();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return waits == lines.Waits();
  }));
  EXPECT_FALSE(port.TellOnce(news));
  EXPECT_GE(lines.Waits(), platform::LineWaiter::kMostHastyWaits);
}

TEST_F(SerialPortTest, PortThatGoesIsToldAndNothingIsToldAnyMore) {
  const PretendedPort first(folder, "ttyS0");
  ASSERT_TRUE(port.Open(1));
  ASSERT_TRUE(Until([&] { return port.TellOnce(news); }));
  lines.Become({});
  EXPECT_TRUE(news.Until(1));
  EXPECT_FALSE(port.ReadLines());
  EXPECT_FALSE(port.TellOnce(news));
}

TEST_F(SerialPortTest, ClosedPortTellsNothingAndItsWaitIsEnded) {
  const PretendedPort first(folder, "ttyS0");
  for (int opening = 1; opening <= 200; ++opening) {
    ASSERT_TRUE(port.Open(1));
    port.TellOnce(news);
  }
  port.Close();
  EXPECT_FALSE(port.TellOnce(news));
  const int waits = lines.Waits();
  lines.Become(TIOCM_CD);
  news.Turn();
  EXPECT_EQ(news.Count, 0);
  EXPECT_EQ(lines.Waits(), waits);
}

}  // namespace
}  // namespace tavlo::test
