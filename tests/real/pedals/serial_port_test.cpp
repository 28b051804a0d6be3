#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <filesystem>
#include <map>
#include <optional>
#include <string>

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

struct SerialPortTest : testing::Test {
  const TemporaryFolder folder;
  std::optional<int> status = 0;
  PosixSerialPort port{folder.Path(), [this](int) { return status; }};
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
  for (const auto& [bits, lines] : cases) {
    status = bits;
    EXPECT_EQ(port.ReadLines(), lines) << bits;
  }
}

TEST_F(SerialPortTest, PortThatGoesIsLookedForUntilItComesBack) {
  auto adapter = std::make_optional<PretendedPort>(folder, "ttyUSB0");
  ASSERT_TRUE(port.Open(1));
  status.reset();
  EXPECT_FALSE(port.ReadLines());
  std::filesystem::remove(folder / "ttyUSB0");
  adapter.reset();
  status = TIOCM_DSR;
  for (int read = 0; read < 100; ++read) ASSERT_FALSE(port.ReadLines());
  adapter.emplace(folder, "ttyUSB0");
  std::optional<SerialLines> lines;
  for (int read = 0; read < 20 && !lines; ++read) lines = port.ReadLines();
  EXPECT_EQ(lines, SerialLines{.DSRHolding = true});
}

}  // namespace
}  // namespace tavlo::test
