#include <algorithm>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <vector>

#include "fuzz/promise.h"
#include "fuzz/scratch_file.h"
#include "mu_law_header.h"

namespace tavlo::fuzz {
namespace {

constexpr std::size_t kHeaderBytes = 58;
constexpr int kDone = 0;
constexpr int kHadHeader = 5;

void Check(std::span<const std::uint8_t> input) {
  static const ScratchFile source(".eU2");
  static const ScratchFile wave(".wav");
  source.Hold(input);
  const int code = AddHdr(source.Path().c_str(), wave.Path().c_str());
  Promise(code == kDone || code == kHadHeader, "any bytes are a telephone recording or a wave");
  std::ifstream file(wave.Path(), std::ios::binary);
  const std::vector<char> made{std::istreambuf_iterator<char>(file), {}};
  const std::size_t front = code == kDone ? kHeaderBytes : 0;
  const std::size_t pad = code == kDone ? input.size() % 2 : 0;
  Promise(made.size() == front + input.size() + pad, "nothing but the header is added");
  const std::vector<char> bytes(input.begin(), input.end());
  Promise(std::equal(bytes.begin(), bytes.end(), made.begin() + static_cast<long>(front)),
          "the bytes stay");
}

}  // namespace
}  // namespace tavlo::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const tavlo::fuzz::Promptness promptness;
  tavlo::fuzz::Check({data, size});
  return 0;
}
