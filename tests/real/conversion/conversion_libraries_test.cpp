#include "platform/conversion/conversion_libraries.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "conversion/dss_bench.h"
#include "support/unread_pipe.h"

namespace tavlo::test {
namespace {

using platform::CallAddHdr;
using platform::CallWriteFile;

constexpr const char* kDssCodec = TAVLO_LIBRARIES "/DssCodec/DssCodec11.so";
constexpr const char* kMuLawHeader = TAVLO_LIBRARIES "/MuLawHeader.so";
constexpr int kMissing = static_cast<int>(ConversionCode::LibraryMissing);
constexpr int kBroken = static_cast<int>(ConversionCode::LibraryBroken);

struct ConversionLibraries : testing::Test {
  std::string Source() const { return folder / "source"; }
  std::string Wave() const { return folder / "d.wav"; }

  const TemporaryFolder folder;
};

TEST_F(ConversionLibraries, AreCalledWhereTheirPathsLeadByALink) {
  DssWriter writer(dss::Mode::LongPlay);
  writer.Append(LongPlay(1));
  folder.Write("source", writer.File(1));
  std::filesystem::create_symlink(kDssCodec, folder / "DssCodec11.so");
  EXPECT_EQ(CallWriteFile(folder / "DssCodec11.so", Source(), Wave()), 0);
  EXPECT_EQ(CallAddHdr(kMuLawHeader, Source(), Wave()), 0);
  EXPECT_EQ(CallAddHdr(kMuLawHeader, Wave(), folder / "again.wav"), 5);
}

TEST_F(ConversionLibraries, WhatTheyReturnComesBackAsItIs) {
  folder.Write("source", "no dictation");
  EXPECT_EQ(CallWriteFile(kDssCodec, Source(), Wave()), static_cast<int>(ConversionCode::NotDss));
}

TEST_F(ConversionLibraries, OneThatIsMissingIsAFailureWithANumber) {
  const UnreadPipe pipe(folder / "pipe.so");
  for (const std::string& path : {folder / "none.so", folder / "pipe.so", folder.Path()}) {
    EXPECT_EQ(CallWriteFile(path, Source(), Wave()), kMissing) << path;
    EXPECT_EQ(CallAddHdr(path, Source(), Wave()), kMissing) << path;
  }
  EXPECT_FALSE(pipe.HeldSomebody());
}

TEST_F(ConversionLibraries, OneThatIsBrokenIsAFailureWithANumber) {
  const std::string broken = folder.Write("broken.so", "no library");
  EXPECT_EQ(CallWriteFile(broken, Source(), Wave()), kBroken);
  EXPECT_EQ(CallAddHdr(broken, Source(), Wave()), kBroken);
}

TEST_F(ConversionLibraries, OneThatLacksTheCallIsBroken) {
  EXPECT_EQ(CallWriteFile(kMuLawHeader, Source(), Wave()), kBroken);
  EXPECT_EQ(CallAddHdr(kDssCodec, Source(), Wave()), kBroken);
}

}  // namespace
}  // namespace tavlo::test
