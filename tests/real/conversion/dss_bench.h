#pragma once

#include <optional>
#include <string>
#include <vector>

#include "conversion/converter_library.h"
#include "conversion/dss_writer.h"
#include "destination_file.h"
#include "dss_conversion.h"
#include "source_file.h"

namespace tavlo::test {

/// A folder with a dictation, and what becomes of it. No conversion may leave anything else there.
class DssBench {
 public:
  explicit DssBench(const std::string& file) { folder.Write("d.dss", file); }

  ConversionCode ConvertAt(int rate) const {
    conversion::SourceFile source;
    ConversionCode code = source.Open(folder / "d.dss");
    conversion::DestinationFile wave;
    if (code == ConversionCode::Done) code = wave.Create(folder / "d.wav", source.Status());
    if (code == ConversionCode::Done) code = dss::DssConversion(source, wave, rate).Run();
    return code == ConversionCode::Done ? wave.Finish() : code;
  }
  /// At the native rate of the mode, where nothing is resampled.
  ConversionCode Convert(dss::Mode mode) const { return ConvertAt(dss::NativeRate(mode)); }

  std::vector<std::int16_t> Samples() const { return SamplesOf(folder.Read("d.wav")); }
  bool HasWave() const { return std::filesystem::exists(folder / "d.wav"); }
  /// The dictation, and the wave if there is to be one.
  bool HasNothingElse(bool wave) const { return NamesIn(folder.Path()).size() == (wave ? 2U : 1U); }

  /// In memory: each conversion flushes what it made.
  const TemporaryFolder folder{"/dev/shm"};
};

inline std::string ModeName(const testing::TestParamInfo<dss::Mode>& mode) {
  return mode.param == dss::Mode::StandardPlay ? "StandardPlay" : "LongPlay";
}

/// Seconds of speech-like sound in frames of long play.
inline std::vector<std::string> LongPlay(int seconds) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < 8000 * seconds; ++i) {
    // A saw at 150 Hz that swells twice a second.
    const int swell = i % 4000 < 2000 ? i % 4000 : 4000 - i % 4000;
    samples.push_back(static_cast<std::int16_t>((i % 53 - 26) * swell / 8));
  }
  return LongPlayFrames(samples);
}

inline std::vector<std::string> Joined(std::vector<std::string> a,
                                       const std::vector<std::string>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

}  // namespace tavlo::test
