// Records a DSS dictation in long play: samples of 16 bits, 8000 Hz, mono, from standard input.
//
//     dss_recorder FILE
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

#include "conversion/dss_writer.h"

namespace {

constexpr std::size_t kSamplesPerSecond = 8000;
constexpr std::size_t kSamplesOfAFrame = 240;

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: dss_recorder FILE <SAMPLES\n");
    return 2;
  }
  const std::string bytes{std::istreambuf_iterator<char>(std::cin), {}};
  std::vector<std::int16_t> samples(bytes.size() / sizeof(std::int16_t));
  std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(std::int16_t));
  const std::vector<std::string> frames = tavlo::test::LongPlayFrames(samples);
  if (frames.empty()) {
    std::fprintf(stderr, "dss_recorder: too little sound\n");
    return 1;
  }
  tavlo::test::DssWriter writer(tavlo::dss::Mode::LongPlay);
  writer.Append(frames);
  std::ofstream file(argv[1], std::ios::binary);
  file << writer.File(static_cast<int>(frames.size() * kSamplesOfAFrame / kSamplesPerSecond));
  return file.flush() ? 0 : 1;
}
