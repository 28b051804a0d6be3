#include "wave_header.h"

#include <limits>
#include <string_view>

namespace tavlo::conversion {
namespace {

constexpr std::uint16_t kLinear = 1;
/// The tag "RIFF" and the size behind it are not counted in that size.
constexpr std::uint64_t kUncounted = 8;

class Writer {
 public:
  void Mark(std::string_view mark) { bytes_.insert(bytes_.end(), mark.begin(), mark.end()); }
  void Number16(std::uint16_t value) { Number(value, 2); }
  void Number32(std::uint32_t value) { Number(value, 4); }
  std::vector<std::uint8_t> Take() { return std::move(bytes_); }

 private:
  void Number(std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> 8 * i));
  }

  std::vector<std::uint8_t> bytes_;
};

}  // namespace

std::optional<std::vector<std::uint8_t>> WaveHeaderBytes(const WaveForm& form,
                                                         std::uint64_t soundBytes) {
  const bool linear = form.tag == kLinear;
  const auto bytesPerSample = static_cast<std::uint16_t>(form.bitsPerSample / 8);
  // Any other coding than linear samples has a longer form and tells its number of samples.
  const std::uint64_t headerBytes = linear ? 44 : 58;
  const std::uint64_t fileBytes = headerBytes + soundBytes + soundBytes % 2;
  if (soundBytes > std::numeric_limits<std::uint32_t>::max() - headerBytes) return std::nullopt;

  Writer writer;
  writer.Mark("RIFF");
  writer.Number32(static_cast<std::uint32_t>(fileBytes - kUncounted));
  writer.Mark("WAVEfmt ");
  writer.Number32(linear ? 16 : 18);
  writer.Number16(form.tag);
  writer.Number16(1);
  writer.Number32(form.samplesPerSecond);
  writer.Number32(form.samplesPerSecond * bytesPerSample);
  writer.Number16(bytesPerSample);
  writer.Number16(form.bitsPerSample);
  if (!linear) {
    writer.Number16(0);
    writer.Mark("fact");
    writer.Number32(4);
    writer.Number32(static_cast<std::uint32_t>(soundBytes / bytesPerSample));
  }
  writer.Mark("data");
  writer.Number32(static_cast<std::uint32_t>(soundBytes));
  return writer.Take();
}

}  // namespace tavlo::conversion
