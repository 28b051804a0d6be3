#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "destination_file.h"
#include "dss_conversion.h"
#include "fuzz/promise.h"
#include "fuzz/scratch_file.h"
#include "source_file.h"

namespace tavlo::fuzz {
namespace {

using conversion::ConversionCode;

/// Silence that was not sent takes one byte for a frame of 240 samples.
constexpr std::uint64_t kMostBytesOfABlock = dss::kBlockBytes * 240 * 2;

bool IsKnown(ConversionCode code) {
  const int figure = static_cast<int>(code);
  return (figure >= 0 && figure <= 13 && figure != 5) || (figure >= 20 && figure <= 28);
}

ConversionCode Convert(const std::string& from, const std::string& to) {
  conversion::SourceFile source;
  conversion::DestinationFile wave;
  ConversionCode code = source.Open(from);
  if (code == ConversionCode::Done) code = wave.Create(to, source.Status());
  if (code == ConversionCode::Done) code = dss::DssConversion(source, wave, 8000).Run();
  return code == ConversionCode::Done ? wave.Finish() : code;
}

void Check(std::span<const std::uint8_t> input) {
  static const ScratchFile scratch(".dss");
  scratch.Hold(input);
  const std::string wave = scratch.Path() + ".wav";
  const ConversionCode code = Convert(scratch.Path(), wave);
  Promise(IsKnown(code), "a failure is one of those that files can have");
  struct stat facts {};
  const bool stands = ::lstat(wave.c_str(), &facts) == 0;
  Promise(stands == (code == ConversionCode::Done), "a wave stands there after a success alone");
  if (!stands) return;
  ::unlink(wave.c_str());
  const auto size = static_cast<std::uint64_t>(facts.st_size);
  Promise(size >= 44 && size % 2 == 0, "a wave has a header and whole samples");
  Promise(size <= 44 + (input.size() / dss::kBlockBytes + 1) * kMostBytesOfABlock,
          "no more sound comes than blocks can hold");
}

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tavlo::fuzz::Promptness promptness;
  tavlo::fuzz::Check({data, size});
  return 0;
}
