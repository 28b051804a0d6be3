#include <gtest/gtest.h>

#include "conversion/dss_bench.h"

namespace tavlo::test {
namespace {

using dss::Mode;

ConversionCode CodeOf(const std::string& file) {
  const DssBench bench(file);
  const ConversionCode code = bench.Convert(Mode::LongPlay);
  EXPECT_EQ(bench.HasWave(), code == ConversionCode::Done);
  EXPECT_TRUE(bench.HasNothingElse(bench.HasWave()));
  return code;
}

std::string Recording(int toldSeconds = 2) {
  DssWriter writer(Mode::LongPlay);
  writer.Append(LongPlay(2));
  return writer.File(toldSeconds);
}

std::string With(std::string file, std::size_t offset, const std::string& bytes) {
  return file.replace(offset, bytes.size(), bytes);
}

TEST(DssKinds, TheLaterFormatIsToldByItsMark) {
  EXPECT_EQ(CodeOf(With(Recording(), 1, "ds2")), ConversionCode::Ds2);
}

TEST(DssKinds, LockedOneIsToldByItsMark) {
  EXPECT_EQ(CodeOf(With(Recording(), 1, "enc")), ConversionCode::Encrypted);
}

TEST(DssKinds, VersionSixIsAnotherMakers) {
  EXPECT_EQ(CodeOf(With(Recording(), 0, "\x06")), ConversionCode::OtherMaker);
}

TEST(DssKinds, HeaderOfAnyOtherSizeIsUnknown) {
  for (const char size : {'\0', '\1', '\4', '\5', '\7', '\xFF'}) {
    EXPECT_EQ(CodeOf(With(Recording(), 0, std::string(1, size))), ConversionCode::UnknownVersion);
  }
}

TEST(DssKinds, WhatHasNoMarkIsNoDictation) {
  EXPECT_EQ(CodeOf(""), ConversionCode::NotDss);
  EXPECT_EQ(CodeOf("\x02"
                   "ds"),
            ConversionCode::NotDss);
  EXPECT_EQ(CodeOf("RIFF\x24" + std::string(40, 'x')), ConversionCode::NotDss);
  EXPECT_EQ(CodeOf(With(Recording(), 1, "DSS")), ConversionCode::NotDss);
}

TEST(DssKinds, ModeThatIsNotKnownIsNotGuessed) {
  EXPECT_EQ(CodeOf(With(Recording(), 676, "\x01")), ConversionCode::UnknownCoding);
  EXPECT_EQ(CodeOf(With(Recording(), 1024 + 4, "\x07")), ConversionCode::UnknownCoding);
}

TEST(DssKinds, FirstBlockOfAnotherModeThanTheHeaderIsDamaged) {
  EXPECT_EQ(CodeOf(With(Recording(), 676, std::string(1, '\0'))), ConversionCode::Damaged);
}

TEST(DssKinds, HeaderThatClaimsABlockOfSoundIsDamaged) {
  EXPECT_EQ(CodeOf(With(Recording(), 0, "\x03")), ConversionCode::Damaged);
}

TEST(DssLength, RecordingThatIsShorterThanToldIsCutOff) {
  EXPECT_EQ(CodeOf(Recording(4)), ConversionCode::CutOff);
}

TEST(DssLength, ToldLengthMayBeRounded) { EXPECT_EQ(CodeOf(Recording(3)), ConversionCode::Done); }

TEST(DssLength, RecordingMayBeLongerThanTold) {
  EXPECT_EQ(CodeOf(Recording(0)), ConversionCode::Done);
  EXPECT_EQ(CodeOf(Recording(1)), ConversionCode::Done);
}

TEST(DssLength, WithoutALengthWholeBlocksMustDo) {
  for (const char* const length :
       {"      ", "000060", "006000", "-00001", "\xFF\xFF\xFF\xFF\xFF\xFF"}) {
    const std::string file = With(Recording(), 62, length);
    EXPECT_EQ(CodeOf(file), ConversionCode::Done) << length;
    EXPECT_EQ(CodeOf(file.substr(0, file.size() - 100)), ConversionCode::CutOff) << length;
    EXPECT_EQ(CodeOf(file.substr(0, 1024)), ConversionCode::CutOff) << length;
  }
}

}  // namespace
}  // namespace tavlo::test
