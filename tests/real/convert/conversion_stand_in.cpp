#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

/// Conversion libraries in one: what they make is the name of the call, and what the source holds.
/// A source that is empty is answered with its own number. What was prepared is told beside it.

namespace {

constexpr std::int32_t kEmpty = 70'000;
constexpr std::uint8_t kHadAHeader = 5;

bool Make(const std::string& call, const char* source, const char* destination) {
  std::ifstream from(source, std::ios::binary);
  const std::string held(std::istreambuf_iterator<char>(from), {});
  if (held.empty()) return false;
  std::ofstream(destination, std::ios::binary) << call << " of " << held;
  return true;
}

}  // namespace

extern "C" {

[[gnu::visibility("default")]] std::int32_t _WriteFile(const char* source,
                                                       const char* destination) {
  return Make("wave", source, destination) ? 0 : kEmpty;
}

[[gnu::visibility("default")]] void _Prepare(const char* source) {
  Make("preparation", source, (source + std::string(".prepared")).c_str());
}

[[gnu::visibility("default")]] std::uint8_t AddHdr(const char* source, const char* destination) {
  return Make("header", source, destination) ? kHadAHeader : 9;
}
}
