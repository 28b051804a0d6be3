#include "mu_law_header.h"

#include <array>
#include <cstring>
#include <span>
#include <string_view>
#include <vector>

#include "c_call.h"
#include "destination_file.h"
#include "source_file.h"
#include "wave_header.h"

namespace {

using namespace tavlo::conversion;

using Head = std::array<std::uint8_t, 12>;

constexpr WaveForm kMuLaw{.tag = 7, .samplesPerSecond = 8000, .bitsPerSample = 8};
constexpr std::size_t kReadAtOnce = 256 * 1024;

bool IsWave(std::span<const std::uint8_t> head) {
  const std::string_view text(reinterpret_cast<const char*>(head.data()), head.size());
  if (text.size() < std::tuple_size_v<Head> || text.substr(8) != "WAVE") return false;
  const std::string_view mark = text.substr(0, 4);
  return mark == "RIFF" || mark == "RIFX" || mark == "RF64";
}

/// Appends what is left of the source.
ConversionCode AppendRest(SourceFile& source, DestinationFile& wave) {
  std::vector<std::uint8_t> bytes(kReadAtOnce);
  for (;;) {
    std::size_t got = 0;
    ConversionCode code = source.Read(bytes, got);
    if (code == ConversionCode::Done) code = wave.Append(std::span(bytes).first(got));
    if (code != ConversionCode::Done || got < bytes.size()) return code;
  }
}

/// Makes the whole of the destination but its name.
ConversionCode Fill(SourceFile& source, DestinationFile& wave, bool& hadHeader) {
  Head head{};
  std::size_t got = 0;
  ConversionCode code = source.Read(head, got);
  if (code != ConversionCode::Done) return code;
  const std::span<const std::uint8_t> read(head.data(), got);
  hadHeader = IsWave(read);
  if (!hadHeader) {
    const auto header = WaveHeaderBytes(kMuLaw, source.Size());
    if (!header) return ConversionCode::TooLong;
    code = wave.Append(*header);
  }
  if (code == ConversionCode::Done) code = wave.Append(read);
  if (code == ConversionCode::Done) code = AppendRest(source, wave);
  if (code == ConversionCode::Done) code = source.CheckUnchanged();
  constexpr std::array<std::uint8_t, 1> kPad{0};
  const bool padded = !hadHeader && source.Size() % 2 != 0;
  return code == ConversionCode::Done && padded ? wave.Append(kPad) : code;
}

ConversionCode MakeWave(const std::string& sourcePath, const std::string& destinationPath) {
  SourceFile source;
  ConversionCode code = source.Open(sourcePath);
  if (code != ConversionCode::Done) return code;
  DestinationFile wave;
  code = wave.Create(destinationPath, source.Status());
  if (code != ConversionCode::Done) return code;
  bool hadHeader = false;
  code = Fill(source, wave, hadHeader);
  if (code == ConversionCode::Done) code = wave.Finish();
  return code == ConversionCode::Done && hadHeader ? ConversionCode::HadHeader : code;
}

}  // namespace

std::uint8_t AddHdr(const char* source, const char* destination) {
  return static_cast<std::uint8_t>(AsCCall(MakeWave, source, destination));
}
