#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "playback/audio_objects.h"

/// Sound files made at test time, and what they hold.
namespace tavlo::test {

/// A folder of its own for one test; gone with it.
class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;

  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

void WriteFile(const std::string& path, const std::string& bytes);
std::string ReadFile(const std::string& path);

/// Little-endian bytes of a number.
std::string Number(std::uint64_t value, int bytes);

/// A RIFF chunk as it should be: padded to an even size.
std::string ChunkBytes(const std::string& id, const std::string& contents);
/// Contents of a format chunk.
std::string FormatBytes(int tag, int channels, int rate, int bits);
/// A whole RIFF/WAVE file of these chunks.
std::string RiffBytes(const std::string& chunks);
/// A plain 16-bit wave of these values, channels interleaved.
std::string WaveBytes(const std::vector<std::int16_t>& values, int rate = 8000, int channels = 1);

/// A tone that climbs from 200 Hz to 1600 Hz, so that no two moments sound alike.
std::vector<std::int16_t> Chirp(int samples, int rate, int channels = 1);

/// Runs FFmpeg's command-line tool, quietly; whether it succeeded.
bool RunFfmpeg(const std::string& arguments);
/// What FFmpeg's command-line tool decodes the file to, channels interleaved.
std::vector<float> DecodedByFfmpeg(const std::string& path);

/// Opens a sound that can be played.
bool Opens(playback::AudioFile& file, const std::string& path);
/// All samples from the read position on, in blocks of `atOnce`.
std::vector<float> ReadAll(playback::AudioFile& file, playback::SampleCount atOnce = 4000);

/// The largest difference between two runs of values, over the length of the shorter.
float LargestDifference(const std::vector<float>& a, const std::vector<float>& b);

}  // namespace tavlo::test
