#include <gtest/gtest.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>

#include "conversion/dss_bench.h"
#include "support/effort.h"
#include "support/few_handles.h"
#include "support/unread_pipe.h"

namespace tavlo::test {
namespace {

constexpr int kNotPossible = 200;

struct ConversionFiles : testing::Test {
  ConversionFiles() {
    DssWriter writer(dss::Mode::LongPlay);
    writer.Append(LongPlay(4));
    folder.Write("d.dss", writer.File(4));
  }

  ConversionCode Convert(const std::string& source, const std::string& destination) const {
    return library.WriteFile(folder / source, folder / destination);
  }

  void Prepare(const std::string& source) const { library.Prepare((folder / source).c_str()); }

  /// What a process of its own returns, to which something may be done that lasts.
  static int InAProcess(const std::function<int()>& work) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(work());
    int status = -1;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  const ConverterLibrary library{"DssCodec/DssCodec11"};
  const TemporaryFolder folder;
};

TEST_F(ConversionFiles, SourceThatIsMissingIsTold) {
  EXPECT_EQ(Convert("none.dss", "d.wav"), ConversionCode::NotFound);
  EXPECT_EQ(Convert("none/d.dss", "d.wav"), ConversionCode::NotFound);
}

TEST_F(ConversionFiles, WhatIsNoPlainFileIsNotReadAndNotWaitedFor) {
  const UnreadPipe pipe(folder / "pipe.dss");
  std::filesystem::create_symlink(folder / "d.dss", folder / "link.dss");
  std::filesystem::create_directory(folder / "folder.dss");
  for (const char* const name : {"pipe.dss", "link.dss", "folder.dss"}) {
    EXPECT_EQ(Convert(name, "d.wav"), ConversionCode::NotPlainFile) << name;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "d.wav"));
}

TEST_F(ConversionFiles, SourceThatThisUserMayNotReadIsTold) {
  std::filesystem::permissions(folder / "d.dss", std::filesystem::perms(0));
  const int code = InAProcess([&] {
    if (::getuid() == 0 && ::setuid(65534) != 0) return kNotPossible;
    return static_cast<int>(Convert("d.dss", "d.wav"));
  });
  if (code == kNotPossible) GTEST_SKIP() << "this user may read everything";
  EXPECT_EQ(code, static_cast<int>(ConversionCode::NotPermitted));
}

TEST_F(ConversionFiles, FolderThatIsMissingTakesNoWave) {
  EXPECT_EQ(Convert("d.dss", "none/d.wav"), ConversionCode::CannotCreate);
  std::filesystem::create_directory(folder / "d.wav");
  EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::CannotCreate);
}

TEST_F(ConversionFiles, PathThatNamesNoFileIsABadCall) {
  EXPECT_EQ(library.WriteFile(folder / "d.dss", ""), ConversionCode::BadCall);
  EXPECT_EQ(Convert("d.dss", ""), ConversionCode::BadCall);
  const auto writeFile = library.Call<std::int32_t>("_WriteFile");
  EXPECT_EQ(writeFile(nullptr, nullptr), static_cast<int>(ConversionCode::BadCall));
}

TEST_F(ConversionFiles, SourceIsNeverItsOwnDestination) {
  const std::string before = folder.Read("d.dss");
  EXPECT_EQ(Convert("d.dss", "d.dss"), ConversionCode::SameFile);
  EXPECT_EQ(folder.Read("d.dss"), before);
}

TEST_F(ConversionFiles, WhatStandsAtTheDestinationIsReplacedByAWholeWaveAlone) {
  folder.Write("d.wav", "before");
  folder.Write("broken.dss", "broken");
  EXPECT_EQ(Convert("broken.dss", "d.wav"), ConversionCode::NotDss);
  EXPECT_EQ(folder.Read("d.wav"), "before");
  EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
  EXPECT_EQ(folder.Read("d.wav").substr(0, 4), "RIFF");
}

TEST_F(ConversionFiles, LinkAtTheDestinationIsReplacedAndNotFollowed) {
  folder.Write("kept", "kept");
  std::filesystem::create_symlink(folder / "kept", folder / "d.wav");
  EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
  EXPECT_EQ(folder.Read("kept"), "kept");
  EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(folder / "d.wav")));
}

TEST_F(ConversionFiles, WhatAKilledConversionLeftIsPassedOver) {
  const std::string left = ".TavloDeckWave-" + std::to_string(::getpid()) + "-1";
  folder.Write(left, "left");
  EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
  EXPECT_EQ(folder.Read(left), "left");
}

TEST_F(ConversionFiles, NamesAreBytesAndMayBeAsLongAsAFolderTakes) {
  const std::string name = std::string(250, '\xE9') + ".wav";
  EXPECT_EQ(Convert("d.dss", name), ConversionCode::Done);
  EXPECT_TRUE(std::filesystem::exists(folder / name));
}

TEST_F(ConversionFiles, ProcessWithoutHandlesIsTold) {
  const FewHandles none(0);
  EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::NoMemory);
}

TEST_F(ConversionFiles, WriteThatFailsLeavesNothing) {
  const int code = InAProcess([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit few{.rlim_cur = 4096, .rlim_max = 4096};
    ::setrlimit(RLIMIT_FSIZE, &few);
    return static_cast<int>(Convert("d.dss", "d.wav"));
  });
  EXPECT_EQ(code, static_cast<int>(ConversionCode::WriteFailed));
  EXPECT_EQ(NamesIn(folder.Path()).size(), 1U);
}

TEST_F(ConversionFiles, DiskThatIsFullIsTold) {
  const std::string small = folder / "small";
  std::filesystem::create_directory(small);
  const int code = InAProcess([&] {
    const bool mounted = ::unshare(CLONE_NEWNS) == 0 &&
                         ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                         ::mount("tmpfs", small.c_str(), "tmpfs", 0, "size=16k") == 0;
    if (!mounted) return kNotPossible;
    const ConversionCode converted = Convert("d.dss", "small/d.wav");
    return NamesIn(small).empty() ? static_cast<int>(converted) : -1;
  });
  if (code == kNotPossible) GTEST_SKIP() << "this user may mount nothing";
  EXPECT_EQ(code, static_cast<int>(ConversionCode::DiskFull));
}

TEST_F(ConversionFiles, SourceThatGrowsMeanwhileIsNotTaken) {
  folder.Write("d.eU2", "first");
  conversion::SourceFile source;
  ASSERT_EQ(source.Open(folder / "d.eU2"), ConversionCode::Done);
  std::array<std::uint8_t, 16> bytes{};
  std::size_t got = 0;
  ASSERT_EQ(source.Read(std::span(bytes).first(3), got), ConversionCode::Done);
  std::ofstream(folder / "d.eU2", std::ios::app) << " and more";
  EXPECT_EQ(source.Read(bytes, got), ConversionCode::SourceChanged);
  EXPECT_EQ(source.CheckUnchanged(), ConversionCode::SourceChanged);
}

TEST_F(ConversionFiles, SourceThatShrinksMeanwhileIsNotTaken) {
  folder.Write("d.eU2", "all of it");
  conversion::SourceFile source;
  ASSERT_EQ(source.Open(folder / "d.eU2"), ConversionCode::Done);
  std::filesystem::resize_file(folder / "d.eU2", 3);
  std::array<std::uint8_t, 16> bytes{};
  std::size_t got = 0;
  ASSERT_EQ(source.Read(bytes, got), ConversionCode::Done);
  EXPECT_EQ(source.CheckUnchanged(), ConversionCode::SourceChanged);
}

TEST_F(ConversionFiles, PreparedSourceGivesTheSameWave) {
  ASSERT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
  Prepare("d.dss");
  ASSERT_EQ(Convert("d.dss", "prepared.wav"), ConversionCode::Done);
  EXPECT_EQ(folder.Read("prepared.wav"), folder.Read("d.wav"));
  EXPECT_EQ(NamesIn(folder.Path()).size(), 3U);
}

TEST_F(ConversionFiles, PreparedSourceIsNotDecodedAgain) {
  DssWriter writer(dss::Mode::LongPlay);
  writer.Append(LongPlay(60));
  folder.Write("d.dss", writer.File(60));
  const auto computed = [this] {
    const Effort effort;
    EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
    return effort.Computed();
  };
  const auto decoding = computed();
  Prepare("d.dss");
  EXPECT_LT(2 * computed(), decoding);
}

TEST_F(ConversionFiles, SourceThatIsAnotherSinceItWasPreparedIsConvertedAnew) {
  DssWriter writer(dss::Mode::LongPlay);
  writer.Append(LongPlay(6));
  Prepare("d.dss");
  folder.Write("d.dss", writer.File(6));
  ASSERT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
  EXPECT_EQ(SamplesOf(folder.Read("d.wav")).size(), 6U * 11'025);
}

TEST_F(ConversionFiles, WhatCanNotBePreparedIsToldByItsConversion) {
  folder.Write("text.dss", "no recording");
  for (const char* const name : {"text.dss", "none.dss"}) Prepare(name);
  library.Prepare(nullptr);
  EXPECT_EQ(Convert("text.dss", "t.wav"), ConversionCode::NotDss);
  EXPECT_EQ(Convert("none.dss", "t.wav"), ConversionCode::NotFound);
  EXPECT_EQ(Convert("d.dss", "d.wav"), ConversionCode::Done);
}

}  // namespace
}  // namespace tavlo::test
