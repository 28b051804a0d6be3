#include "platform/desktop/system_information.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::desktop::ShowSystemInformation;

/// A search path with nothing on it but what a test installs.
struct SystemInformationTest : testing::Test {
  TemporaryFolder bin;
  const QByteArray pathBefore = qgetenv("PATH");
  const QByteArray desktopBefore = qgetenv("XDG_CURRENT_DESKTOP");

  SystemInformationTest() {
    qputenv("PATH", QByteArray::fromStdString(bin.Path()));
    qputenv("XDG_CURRENT_DESKTOP", "XFCE");
  }
  ~SystemInformationTest() override {
    qputenv("PATH", pathBefore);
    qputenv("XDG_CURRENT_DESKTOP", desktopBefore);
  }

  /// A tool that notes its name and its arguments.
  void Install(const std::string& tool) {
    const std::string path =
        bin.Write(tool, "#!/bin/sh\necho " + tool + " \"$@\" > '" + bin / "noted.new" +
                            "'\n/bin/mv '" + bin / "noted.new" + "' '" + bin / "noted" + "'\n");
    std::filesystem::permissions(path, std::filesystem::perms(0755));
  }
  std::string Started() {
    for (int tries = 0; tries < 6000 && !std::filesystem::exists(bin / "noted"); ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return bin.Read("noted");
  }
};

TEST_F(SystemInformationTest, NothingInstalledIsToldAsSuch) {
  EXPECT_FALSE(ShowSystemInformation());
}

TEST_F(SystemInformationTest, InstalledToolIsStarted) {
  Install("hardinfo");
  EXPECT_TRUE(ShowSystemInformation());
  EXPECT_EQ(Started(), "hardinfo\n");
}

TEST_F(SystemInformationTest, ToolOfAnotherDesktopIsPassedOver) {
  Install("gnome-control-center");
  EXPECT_FALSE(ShowSystemInformation());
  Install("kinfocenter");
  EXPECT_TRUE(ShowSystemInformation());
  EXPECT_EQ(Started(), "kinfocenter\n");
}

TEST_F(SystemInformationTest, DesktopsOwnToolComesFirstAndOpensOnItsPage) {
  qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
  Install("kinfocenter");
  Install("gnome-control-center");
  EXPECT_TRUE(ShowSystemInformation());
  EXPECT_EQ(Started(), "gnome-control-center info-overview\n");
}

}  // namespace
}  // namespace tavlo::test
