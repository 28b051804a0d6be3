#include <gtest/gtest.h>
#include <poll.h>

#include <array>

#include "pedals/fake_hid_port.h"
#include "watch.h"

namespace tavlo::test {
namespace {

using pedal_watch::Presence;
using pedal_watch::ReportQueue;
using pedal_watch::Watch;

using Bytes = FakeHidPort::Bytes;

Bytes TakeFrom(ReportQueue& queue, std::size_t room = 100) {
  std::array<std::uint8_t, 200> buffer{};
  const std::size_t bytes = queue.Take(std::span(buffer).first(room));
  return {buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(bytes)};
}

Bytes TakeFrom(Watch& watch) {
  std::array<std::uint8_t, 100> buffer{};
  const std::size_t bytes = watch.TakeReports(buffer);
  return {buffer.begin(), buffer.begin() + static_cast<std::ptrdiff_t>(bytes)};
}

TEST(ReportQueue, FirstTakeHandsOverOneReport) {
  ReportQueue queue;
  EXPECT_EQ(TakeFrom(queue), Bytes{});
  for (const std::uint8_t bits : std::initializer_list<std::uint8_t>{1, 2, 4})
    queue.Push({0, bits, 9});
  EXPECT_EQ(TakeFrom(queue), (Bytes{0, 1, 9}));
  EXPECT_EQ(TakeFrom(queue), (Bytes{0, 2, 9, 0, 4, 9}));
}

TEST(ReportQueue, HandsOverWholeReportsAndThirtyThreeAtMost) {
  ReportQueue queue;
  for (int report = 0; report < 50; ++report) queue.Push({0, 1, 0});
  EXPECT_EQ(TakeFrom(queue, 2).size(), 0u);
  EXPECT_EQ(TakeFrom(queue).size(), 3u);
  EXPECT_EQ(TakeFrom(queue, 8).size(), 6u);
  EXPECT_EQ(TakeFrom(queue, 200).size(), 99u);
}

TEST(ReportQueue, ThousandReportsAreKeptInOrder) {
  ReportQueue queue;
  for (int report = 0; report < 1000; ++report) {
    queue.Push({0, static_cast<std::uint8_t>(report % 8), static_cast<std::uint8_t>(report / 8)});
  }
  int next = 0;
  for (Bytes bytes = TakeFrom(queue); !bytes.empty(); bytes = TakeFrom(queue)) {
    for (std::size_t at = 0; at < bytes.size(); at += 3, ++next) {
      ASSERT_EQ(bytes[at + 1], next % 8);
      ASSERT_EQ(bytes[at + 2], next / 8);
    }
  }
  EXPECT_EQ(next, 1000);
}

TEST(ReportQueue, PastAThousandTheLastStateIsStillTold) {
  ReportQueue queue;
  for (int report = 0; report < 1500; ++report) queue.Push({0, 2, 0});
  queue.Push({0, 0, 0});
  Bytes last;
  int reports = 0;
  for (Bytes bytes = TakeFrom(queue); !bytes.empty(); bytes = TakeFrom(queue)) {
    reports += static_cast<int>(bytes.size() / 3);
    last = {bytes.end() - 3, bytes.end()};
  }
  EXPECT_EQ(reports, 1000);
  EXPECT_EQ(last, (Bytes{0, 0, 0}));
}

struct PedalWatchTest : testing::Test {
  /// Gives turns until the reports that wait have been read.
  void Turn(int turns = 10) {
    for (int turn = 0; turn < turns; ++turn) watch.Turn();
  }
  Bytes TakeAll() {
    Bytes all;
    for (Bytes bytes = TakeFrom(watch); !bytes.empty(); bytes = TakeFrom(watch)) {
      all.insert(all.end(), bytes.begin(), bytes.end());
    }
    return all;
  }
  bool HasNews() {
    pollfd news{.fd = watch.NewsDescriptor(), .events = POLLIN, .revents = 0};
    return ::poll(&news, 1, 0) == 1;
  }

  FakeHidPort port;
  Watch watch{{.product = 255, .usagePage = 12, .usage = 3}, port};
};

TEST_F(PedalWatchTest, PickedPedalIsToldByVendorProductAndUsage) {
  port.Plug(0x05F3, 0x00FE, 12, 3, "/dev/hidraw0");
  port.Plug(0x05F3, 0x00FF, 1, 6, "/dev/hidraw1");
  port.Plug(0x05F3, 0x00FF, 12, 1, "/dev/hidraw2");
  port.Plug(0x1234, 0x00FF, 12, 3, "/dev/hidraw3");
  EXPECT_FALSE(watch.Turn());
  EXPECT_EQ(watch.State(), Presence::NoPedal);
  port.Plug(0x05F3, 0x00FF, 12, 3, "/dev/hidraw4");
  EXPECT_TRUE(watch.Turn());
  EXPECT_EQ(watch.State(), Presence::Ready);
  EXPECT_EQ(port.OpenPath(), "/dev/hidraw4");
}

TEST_F(PedalWatchTest, ReportsAreHandedOverRawWithTheirNumberInFront) {
  port.Plug(0x05F3, 0x00FF);
  for (const Bytes& report : {Bytes{2, 0}, Bytes{2, 0}, Bytes{0, 7}, Bytes{0x85, 1}}) {
    port.Report(report);
  }
  Turn();
  EXPECT_EQ(TakeAll(), (Bytes{0, 2, 0, 0, 2, 0, 0, 0, 7, 0, 0x85, 1}));
}

TEST_F(PedalWatchTest, ReportOfOneByteIsFilledUp) {
  port.Plug(0x05F3, 0x00FF);
  port.Report({4});
  Turn();
  EXPECT_EQ(TakeAll(), (Bytes{0, 4, 0}));
}

TEST_F(PedalWatchTest, PulledCableReportsAllPedalsUpOnce) {
  port.Plug(0x05F3, 0x00FF);
  port.Report({2, 0});
  Turn();
  port.Unplug();
  Turn();
  EXPECT_EQ(TakeAll(), (Bytes{0, 2, 0, 0, 0, 0}));
  EXPECT_EQ(watch.State(), Presence::NoPedal);
}

TEST_F(PedalWatchTest, PedalThatIsPluggedInAgainGoesOn) {
  port.Plug(0x05F3, 0x00FF);
  Turn();
  port.Unplug();
  Turn();
  port.Plug(0x05F3, 0x00FF, 12, 3, "/dev/hidraw5");
  port.Report({1, 0}, "/dev/hidraw5");
  Turn();
  EXPECT_EQ(watch.State(), Presence::Ready);
  EXPECT_EQ(TakeAll(), (Bytes{0, 0, 0, 0, 1, 0}));
}

TEST_F(PedalWatchTest, NoPermissionIsToldApartFromNoPedal) {
  port.Plug(0x05F3, 0x00FF);
  port.Devices.begin()->second.permitted = false;
  EXPECT_FALSE(watch.Turn());
  EXPECT_EQ(watch.State(), Presence::NoPermission);
  port.Devices.begin()->second.permitted = true;
  EXPECT_TRUE(watch.Turn());
  EXPECT_EQ(watch.State(), Presence::Ready);
}

TEST_F(PedalWatchTest, PedalThatMayBeReadIsTakenBesideOneThatMayNot) {
  port.Plug(0x05F3, 0x00FF, 12, 3, "/dev/hidraw0");
  port.Devices.at("/dev/hidraw0").permitted = false;
  port.Plug(0x0911, 0x1844, 1, 0, "/dev/hidraw1");
  EXPECT_TRUE(watch.Turn());
  EXPECT_EQ(port.OpenPath(), "/dev/hidraw1");
}

TEST_F(PedalWatchTest, OtherMakesAreTranslatedToTheSameReport) {
  struct Case {
    std::uint16_t vendor, product;
    Bytes left, center, right, both;
  };
  for (const Case& c :
       {Case{0x0911, 0x1844, {1, 9}, {2, 9}, {4, 9}, {3, 9}},
        Case{0x0911, 0x091A, {1, 9}, {2, 9}, {4, 9}, {3, 9}},
        Case{0x15D8, 0x0024, {1, 9, 9, 9}, {2, 9, 9, 9}, {4, 9, 9, 9}, {3, 9, 9, 9}},
        Case{0x07B4, 0x0202, {9, 9, 8}, {9, 9, 2}, {9, 9, 4}, {9, 9, 10}}}) {
    FakeHidPort ownPort;
    Watch ownWatch({.product = 255, .usagePage = 12, .usage = 3}, ownPort);
    ownPort.Plug(c.vendor, c.product, 1, 0);
    for (const Bytes& report : {c.left, c.center, c.right, c.both}) ownPort.Report(report);
    for (int turn = 0; turn < 10; ++turn) ownWatch.Turn();
    EXPECT_EQ(TakeFrom(ownWatch), (Bytes{0, 1, 0})) << c.product;
    EXPECT_EQ(TakeFrom(ownWatch), (Bytes{0, 2, 0, 0, 4, 0, 0, 3, 0})) << c.product;
  }
}

TEST_F(PedalWatchTest, ThereIsNewsUntilTheLastReportIsTaken) {
  port.Plug(0x05F3, 0x00FF);
  watch.Turn();
  TakeAll();
  EXPECT_FALSE(HasNews());
  for (const std::uint8_t bits : Bytes{2, 0, 1}) port.Report({bits, 0});
  watch.Turn();
  EXPECT_TRUE(HasNews());
  EXPECT_TRUE(HasNews());
  Turn();
  // The first take hands over one report.
  EXPECT_EQ(TakeFrom(watch).size(), 3u);
  EXPECT_TRUE(HasNews());
  EXPECT_EQ(TakeFrom(watch).size(), 6u);
  EXPECT_FALSE(HasNews());
  EXPECT_EQ(TakeFrom(watch).size(), 0u);
  EXPECT_FALSE(HasNews());
}

TEST_F(PedalWatchTest, PedalThatComesOrGoesIsNewsUntilTheNextTake) {
  watch.Turn();
  EXPECT_FALSE(HasNews());
  port.Plug(0x05F3, 0x00FF);
  port.Devices.begin()->second.permitted = false;
  watch.Turn();
  EXPECT_TRUE(HasNews());
  EXPECT_EQ(TakeAll(), Bytes{});
  EXPECT_FALSE(HasNews());
  watch.Turn();
  EXPECT_FALSE(HasNews());
  port.Devices.begin()->second.permitted = true;
  watch.Turn();
  EXPECT_TRUE(HasNews());
  TakeAll();
  port.Unplug();
  Turn();
  EXPECT_TRUE(HasNews());
  EXPECT_EQ(TakeAll(), (Bytes{0, 0, 0}));
  EXPECT_FALSE(HasNews());
}

TEST_F(PedalWatchTest, FourthPedalDoesNotStartADocumentAnew) {
  port.Plug(0x0911, 0x091A, 1, 0);
  for (const Bytes& report : {Bytes{2}, Bytes{0x0A}, Bytes{2}, Bytes{0}}) port.Report(report);
  Turn();
  EXPECT_EQ(TakeAll(), (Bytes{0, 2, 0, 0, 0, 0}));
}

TEST_F(PedalWatchTest, ReportThatIsTooShortIsDropped) {
  port.Plug(0x07B4, 0x0202, 1, 0);
  port.Report({8, 8});
  Turn();
  EXPECT_EQ(TakeAll(), Bytes{});
}

}  // namespace
}  // namespace tavlo::test
