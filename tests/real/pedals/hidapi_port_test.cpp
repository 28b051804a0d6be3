#include "hidapi_port.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <future>
#include <optional>
#include <string>

#include "support/quick.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using pedal_watch::HidapiPort;
using pedal_watch::Opening;
using namespace std::chrono_literals;

/// The real port over a folder in which pipes stand for devices.
struct HidapiPortTest : testing::Test {
  /// Makes a device and plugs it in; what is written into it can be read.
  int Plug() {
    EXPECT_EQ(::mkfifo(path.c_str(), 0600), 0);
    return ::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
  }
  std::optional<std::string> Read() {
    std::array<std::uint8_t, 64> bytes{};
    const std::optional<std::size_t> count = port.Read(bytes);
    if (!count) return {};
    return std::string(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(*count));
  }
  /// Whether the wait ends as soon as this has happened. It ends by itself a second later.
  bool EndsWith(const std::function<void()>& event) {
    return IsQuick(500ms, [&] {
      const std::future<void> wait = std::async(std::launch::async, [this] { port.AwaitNews(); });
      // News that comes before the wait is kept for it, so both orders are right.
      event();
    });
  }

  const TemporaryFolder folder;
  const std::string path = folder / "hidraw0";
  HidapiPort port{folder.Path()};
};

TEST_F(HidapiPortTest, DeviceThatIsNotThereOrMayNotBeReadIsNotOpened) {
  EXPECT_EQ(port.Open(path), Opening::Failed);
  folder.Write("hidraw1", "");
  std::filesystem::permissions(folder / "hidraw1", std::filesystem::perms::none);
  // Root may read everything.
  EXPECT_EQ(port.Open(folder / "hidraw1"),
            ::geteuid() == 0 ? Opening::Done : Opening::NoPermission);
}

TEST_F(HidapiPortTest, ReportIsReadWhenItComes) {
  const int device = Plug();
  ASSERT_EQ(port.Open(path), Opening::Done);
  std::future<std::optional<std::string>> read =
      std::async(std::launch::async, [this] { return Read(); });
  ASSERT_EQ(::write(device, "\x02\x00", 2), 2);
  EXPECT_EQ(read.get(), std::string("\x02\x00", 2));
  ::close(device);
}

TEST_F(HidapiPortTest, DeviceThatGoesHasItsLastReportsReadFirst) {
  const int device = Plug();
  ASSERT_EQ(port.Open(path), Opening::Done);
  ASSERT_EQ(::write(device, "\x02", 1), 1);
  ::close(device);
  EXPECT_EQ(Read(), "\x02");
  EXPECT_EQ(Read(), std::nullopt);
}

TEST_F(HidapiPortTest, InterruptionEndsEveryWait) {
  const int device = Plug();
  ASSERT_EQ(port.Open(path), Opening::Done);
  std::future<std::optional<std::string>> read =
      std::async(std::launch::async, [this] { return Read(); });
  port.Interrupt();
  EXPECT_EQ(read.get(), "");
  EXPECT_EQ(Read(), "");
  // The device that was made is news that is not waited for; neither is any other.
  port.AwaitNews();
  port.AwaitNews();
  ::close(device);
}

TEST_F(HidapiPortTest, DeviceThatComesOrGoesOrBecomesReadableIsNews) {
  EXPECT_TRUE(EndsWith([this] {
    std::filesystem::remove(path);
    folder.Write("hidraw0", "");
  }));
  EXPECT_TRUE(
      EndsWith([this] { std::filesystem::permissions(path, std::filesystem::perms::owner_read); }));
  EXPECT_TRUE(EndsWith([this] {
    folder.Write("hidraw0", "");
    std::filesystem::remove(path);
  }));
}

TEST_F(HidapiPortTest, DeviceThatFailedToOpenIsTriedAgainWithoutNews) {
  port.AwaitNews();
  for (int tries = 0; tries < 2; ++tries) {
    ASSERT_EQ(port.Open(path), Opening::Failed);
    // It ends by itself.
    port.AwaitNews();
  }
}

TEST(HidapiPort, FolderThatTellsNothingIsLookedAtAgainAndAgain) {
  HidapiPort port("/no/such/folder");
  for (int looks = 0; looks < 2; ++looks) port.AwaitNews();
}

}  // namespace
}  // namespace tavlo::test
