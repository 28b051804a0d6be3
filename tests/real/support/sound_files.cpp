#include "support/sound_files.h"

#include <stdlib.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numbers>

namespace tavlo::test {

ScratchFolder::ScratchFolder() {
  path_ = (std::filesystem::temp_directory_path() / "tavlo-sound-XXXXXX").string();
  if (::mkdtemp(path_.data()) == nullptr) path_.clear();
}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  if (!path_.empty()) std::filesystem::remove_all(path_, ignored);
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary).write(bytes.data(), std::ssize(bytes));
}

std::string ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

std::string Number(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
  return text;
}

std::string ChunkBytes(const std::string& id, const std::string& contents) {
  return id + Number(contents.size(), 4) + contents + std::string(contents.size() % 2, '\0');
}

std::string FormatBytes(int tag, int channels, int rate, int bits) {
  const int block = channels * ((bits + 7) / 8);
  return Number(tag, 2) + Number(channels, 2) + Number(rate, 4) + Number(rate * block, 4) +
         Number(block, 2) + Number(bits, 2);
}

std::string RiffBytes(const std::string& chunks) {
  return "RIFF" + Number(4 + chunks.size(), 4) + "WAVE" + chunks;
}

std::string WaveBytes(const std::vector<std::int16_t>& values, int rate, int channels) {
  std::string data;
  for (const std::int16_t value : values) data += Number(static_cast<std::uint16_t>(value), 2);
  return RiffBytes(ChunkBytes("fmt ", FormatBytes(1, channels, rate, 16)) +
                   ChunkBytes("data", data));
}

std::vector<std::int16_t> Chirp(int samples, int rate, int channels) {
  std::vector<std::int16_t> values;
  double phase = 0;
  for (int i = 0; i < samples; ++i) {
    const double hertz = 200 + 1400.0 * i / samples;
    phase += 2 * std::numbers::pi * hertz / rate;
    for (int channel = 0; channel < channels; ++channel)
      values.push_back(static_cast<std::int16_t>(std::lround(12000 * std::sin(phase + channel))));
  }
  return values;
}

bool RunFfmpeg(const std::string& arguments) {
  const std::string command = "ffmpeg -nostdin -loglevel quiet -y " + arguments;
  return std::system(command.c_str()) == 0;
}

std::vector<float> DecodedByFfmpeg(const std::string& path) {
  const std::string raw = path + ".f32";
  if (!RunFfmpeg("-i '" + path + "' -map 0:a:0 -f f32le -c:a pcm_f32le '" + raw + "'")) return {};
  const std::string bytes = ReadFile(raw);
  std::vector<float> values(bytes.size() / sizeof(float));
  std::memcpy(values.data(), bytes.data(), values.size() * sizeof(float));
  return values;
}

bool Opens(playback::AudioFile& file, const std::string& path) {
  return file.OpenFile(path) == playback::OpenResult::Opened;
}

std::vector<float> ReadAll(playback::AudioFile& file, playback::SampleCount atOnce) {
  std::vector<float> all;
  for (;;) {
    const playback::SampleArray block = file.ReadArray(atOnce);
    if (block.values.empty()) return all;
    all.insert(all.end(), block.values.begin(), block.values.end());
  }
}

float LargestDifference(const std::vector<float>& a, const std::vector<float>& b) {
  float largest = 0;
  for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i)
    largest = std::max(largest, std::abs(a[i] - b[i]));
  return largest;
}

}  // namespace tavlo::test
