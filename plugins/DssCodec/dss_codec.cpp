#include "dss_codec.h"

#include <tuple>
#include <utility>
#include <vector>

#include "c_call.h"
#include "destination_file.h"
#include "dss_conversion.h"
#include "prepared_waves.h"
#include "source_file.h"

namespace {

using namespace tavlo::conversion;
using tavlo::dss::PreparedWaves;

/// Never destroyed: its threads may still work when the process ends.
PreparedWaves& Prepared() {
  static PreparedWaves& waves = *new PreparedWaves(TAVLO_DSS_RATE);
  return waves;
}

ConversionCode ReadAll(SourceFile& source, std::vector<std::uint8_t>& bytes) {
  bytes.resize(source.Size());
  std::size_t got = 0;
  const ConversionCode code = source.Read(bytes, got);
  bytes.resize(got);
  return code;
}

/// Makes the whole of the destination but its name.
ConversionCode Fill(SourceFile& source, DestinationFile& wave) {
  if (Prepared().MayHold(source.Size())) {
    std::vector<std::uint8_t> bytes;
    ConversionCode code = ReadAll(source, bytes);
    if (code != ConversionCode::Done) return code;
    if (const auto made = Prepared().Take(bytes)) {
      code = wave.Append(*made);
      return code == ConversionCode::Done ? source.CheckUnchanged() : code;
    }
    code = source.Rewind();
    if (code != ConversionCode::Done) return code;
  }
  return tavlo::dss::DssConversion(source, wave, TAVLO_DSS_RATE).Run();
}

ConversionCode Convert(const std::string& sourcePath, const std::string& destinationPath) {
  SourceFile source;
  ConversionCode code = source.Open(sourcePath);
  if (code != ConversionCode::Done) return code;
  DestinationFile wave;
  code = wave.Create(destinationPath, source.Status());
  if (code == ConversionCode::Done) code = Fill(source, wave);
  return code == ConversionCode::Done ? wave.Finish() : code;
}

ConversionCode Prepare(const std::string& path) {
  SourceFile source;
  ConversionCode code = source.Open(path);
  if (code != ConversionCode::Done || source.Size() > PreparedWaves::kMostBytes) return code;
  std::vector<std::uint8_t> bytes;
  code = ReadAll(source, bytes);
  if (code == ConversionCode::Done) Prepared().Begin(std::move(bytes));
  return code;
}

}  // namespace

std::int32_t _WriteFile(const char* source, const char* destination) {
  return static_cast<std::int32_t>(AsCCall(Convert, source, destination));
}

void _Prepare(const char* source) { std::ignore = AsCCall(Prepare, source); }
