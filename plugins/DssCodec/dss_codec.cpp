#include "dss_codec.h"

#include "c_call.h"
#include "dss_conversion.h"

namespace {

using namespace tavlo::conversion;

ConversionCode Convert(const std::string& sourcePath, const std::string& destinationPath) {
  SourceFile source;
  ConversionCode code = source.Open(sourcePath);
  if (code != ConversionCode::Done) return code;
  DestinationFile wave;
  code = wave.Create(destinationPath, source.Status());
  if (code == ConversionCode::Done) {
    code = tavlo::dss::DssConversion(source, wave, TAVLO_DSS_RATE).Run();
  }
  return code == ConversionCode::Done ? wave.Finish() : code;
}

}  // namespace

std::int32_t _WriteFile(const char* source, const char* destination) {
  return static_cast<std::int32_t>(AsCCall(source, destination, Convert));
}
