#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

/// Every kind of sound file that dictation comes in, and how a test makes one.
namespace tavlo::test {

/// Length of the sound in every file.
inline constexpr double kSecondsOfSound = 5.3457;

/// What a decoder is held against.
enum class Reference {
  Source,  ///< The samples that the file was made of.
  Ffmpeg,  ///< What FFmpeg's tool decodes the whole file to.
  Sox,     ///< What SoX decodes it to.
};

/// What is not as usual with a kind.
struct Traits {
  /// A shell command that turns the wave $IN into $OUT; $FFMPEG is FFmpeg's tool.
  const char* command = "$FFMPEG -i $IN $OPTIONS $OUT";
  /// Makes the bytes of the file from the samples where no tool writes such a file.
  std::string (*make)(const std::vector<std::int16_t>& samples, int rate) = nullptr;
  Reference reference = Reference::Ffmpeg;
  int decodedRate = 0;  ///< Where it is not that of the source.
  /// How far the sound after a seek may be from that of a play from the beginning: codecs that
  /// adapt to what was before, or fill in noise, come close only.
  float seekTolerance = 0.0001F;
  /// Whether a file that was cut off anywhere behind its headers plays too.
  bool playsWhenCut = false;
};

struct Kind {
  const char* name;  ///< Reads as one of the kinds that play.
  const char* file;
  int rate;  ///< Of the source, Hz.
  int channels;
  const char* options;  ///< For FFmpeg's tool.
  Traits traits;
};

/// As the test's output names a kind.
std::ostream& operator<<(std::ostream& out, const Kind& kind);

const std::vector<Kind>& AllKinds();

/// The sound in a file, a tone that climbs: no two moments of it are alike.
std::vector<std::int16_t> SourceOf(const Kind& kind);
/// Makes the file in the folder; false when the tools could not.
bool MakeFile(const Kind& kind, const std::string& folder, const std::string& path);
/// The whole sound of a file as the reference has it.
std::vector<float> ReferenceOf(const Kind& kind, const std::string& path);

}  // namespace tavlo::test
