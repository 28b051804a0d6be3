// Makes recordings as recorders and telephone lines bring them:
//
//     bench_dictations lp|ulaw FOLDER COUNT SECONDS
//
// DSS files of long play, "N.dS2", or mu-law without a header, "N.eU2". What sounds is a buzz that
// glides and swells in syllables, with pauses between its words.
#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <numbers>
#include <string>
#include <vector>

#include "conversion/dss_writer.h"

namespace {

using namespace tavlo;

constexpr int kRate = 8000;
/// What sounds is repeated after so long: the coder is slow.
constexpr int kSecondsOfSound = 60;

std::vector<std::int16_t> Speech(int seconds) {
  std::vector<std::int16_t> samples;
  double phase = 0;
  std::uint32_t noise = 1;
  for (int i = 0; i < kRate * seconds; ++i) {
    const double at = static_cast<double>(i) / kRate;
    const double pitch = 120 + 25 * std::sin(2 * std::numbers::pi * 0.7 * at);
    phase = std::fmod(phase + pitch / kRate, 1.0);
    const double syllable = std::max(0.0, std::sin(2 * std::numbers::pi * 4 * at));
    const bool pauses = std::fmod(at, 3.0) > 2.4;
    noise = noise * 1'664'525 + 1'013'904'223;
    const double breath = static_cast<double>(noise >> 16) / 65'536 - 0.5;
    const double voice = pauses ? 0 : syllable * (1 - 2 * phase);
    samples.push_back(static_cast<std::int16_t>(9000 * voice + 300 * breath));
  }
  return samples;
}

/// As telephone lines code a sample: sign, exponent and four bits, all turned round.
std::uint8_t MuLaw(int sample) {
  constexpr int kBias = 132;
  constexpr int kMost = 32'635;
  const int sign = sample < 0 ? 0x80 : 0;
  const int size = std::min(std::abs(sample), kMost) + kBias;
  const int exponent = static_cast<int>(std::bit_width(static_cast<unsigned>(size))) - 8;
  return static_cast<std::uint8_t>(~(sign | exponent << 4 | (size >> (exponent + 3) & 0xF)));
}

std::string MuLawFile(int seconds) {
  const std::vector<std::int16_t> speech = Speech(std::min(seconds, kSecondsOfSound));
  std::string bytes;
  for (std::size_t i = 0; i < static_cast<std::size_t>(kRate) * static_cast<unsigned>(seconds); ++i)
    bytes += static_cast<char>(MuLaw(speech[i % speech.size()]));
  return bytes;
}

std::string LongPlayFile(int seconds) {
  const int sounds = std::min(seconds, kSecondsOfSound);
  const std::vector<std::string> frames = test::LongPlayFrames(Speech(sounds));
  test::DssWriter writer(dss::Mode::LongPlay);
  for (int done = 0; done < seconds; done += sounds) writer.Append(frames);
  return writer.File(seconds);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string kind = argc == 5 ? argv[1] : "";
  if (kind != "lp" && kind != "ulaw") {
    std::fprintf(stderr, "usage: bench_dictations lp|ulaw FOLDER COUNT SECONDS\n");
    return 2;
  }
  const int seconds = std::atoi(argv[4]);
  const std::string file = kind == "lp" ? LongPlayFile(seconds) : MuLawFile(seconds);
  for (int number = 1; number <= std::atoi(argv[3]); ++number) {
    const std::string name = std::to_string(number) + (kind == "lp" ? ".dS2" : ".eU2");
    std::ofstream output(argv[2] + ("/" + name), std::ios::binary);
    if (!(output << file) || !output.flush()) return 1;
  }
  return 0;
}
