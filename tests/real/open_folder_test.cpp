#include "platform/desktop/open_folder.h"

#include <gtest/gtest.h>

#include <QByteArray>
#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

/// A search path with nothing on it but what a test installs.
struct OpenFolderTest : testing::Test {
  TemporaryFolder bin;
  const QByteArray pathBefore = qgetenv("PATH");

  OpenFolderTest() { qputenv("PATH", QByteArray::fromStdString(bin.Path())); }
  ~OpenFolderTest() override { qputenv("PATH", pathBefore); }

  /// A file manager that notes its name and what it was asked to show.
  void Install(const std::string& manager) {
    const std::string path =
        bin.Write(manager, "#!/bin/sh\necho " + manager + " \"$@\" > '" + bin / "noted.new" +
                               "'\n/bin/mv '" + bin / "noted.new" + "' '" + bin / "noted" + "'\n");
    std::filesystem::permissions(path, std::filesystem::perms(0755));
  }
  /// This machine may have file managers of its own where they usually stand.
  static bool OpenFolder(const std::string& folder) {
    return platform::desktop::OpenFolder(folder, {QStringLiteral("/nowhere")});
  }
  std::string Noted() {
    for (int tries = 0; tries < 6000 && !std::filesystem::exists(bin / "noted"); ++tries) {
      std::this_thread::sleep_for(std::chrono::milliseconds{10});
    }
    return bin.Read("noted");
  }
};

TEST_F(OpenFolderTest, SaysThatThereIsNoFileManager) { EXPECT_FALSE(OpenFolder("/tmp")); }

TEST_F(OpenFolderTest, AsksWhatKnowsTheDesktopsChoiceFirst) {
  Install("nautilus");
  Install("xdg-open");
  EXPECT_TRUE(OpenFolder("/home/typist/Rescued"));
  EXPECT_EQ(Noted(), "xdg-open file:///home/typist/Rescued\n");
}

TEST_F(OpenFolderTest, AsksAFileManagerWhereThatIsNotInstalled) {
  Install("pcmanfm");
  EXPECT_TRUE(OpenFolder("/home/typist/Rescued"));
  EXPECT_EQ(Noted(), "pcmanfm file:///home/typist/Rescued\n");
}

TEST_F(OpenFolderTest, HandsOnEachByteOfTheFoldersName) {
  Install("xdg-open");
  EXPECT_TRUE(
      OpenFolder("/home/t\xFC"
                 "pist 100%/Rescued"));
  EXPECT_EQ(Noted(), "xdg-open file:///home/t%FCpist%20100%25/Rescued\n");
}

}  // namespace
}  // namespace tavlo::test
