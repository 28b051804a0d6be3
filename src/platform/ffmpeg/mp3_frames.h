#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "platform/ffmpeg/plain_file.h"

namespace tavlo::platform {

/// The four bytes in front of each frame of MPEG audio (layers 1 to 3).
struct Mp3Header {
  int version = 1;  ///< 1, 2, or 25 for the half-rate extension.
  int layer = 3;
  int samplesPerSecond = 0;
  int channels = 0;
  std::uint32_t size = 0;  ///< Of the whole frame, bytes.
  int samples = 0;         ///< That the frame decodes to.

  /// Whether frames of both headers can belong to one recording.
  bool SameStream(const Mp3Header& other) const {
    return version == other.version && layer == other.layer &&
           samplesPerSecond == other.samplesPerSecond;
  }
};

/// Nothing when the bytes are no header, or one of the free format, which tells no size.
std::optional<Mp3Header> ReadMp3Header(const std::uint8_t* at);

/// Where one frame stands.
struct Mp3Frame {
  std::uint64_t offset = 0;
  Mp3Header header;
};

/// Walks from frame to frame, over whatever a damaged file has between them. The file must outlive
/// it.
class Mp3Walker {
 public:
  /// Begins at `offset`, where a frame of the stream of `like` stands.
  Mp3Walker(const PlainFile& file, std::uint64_t offset, const Mp3Header& like);

  /// The next whole frame; nothing when there is none, or none for the next megabyte.
  std::optional<Mp3Frame> Next();
  void MoveTo(std::uint64_t offset) { offset_ = offset; }
  std::uint64_t Offset() const { return offset_; }

 private:
  const std::uint8_t* HeaderBytes(std::uint64_t offset);
  std::optional<Mp3Header> MatchAt(std::uint64_t offset);
  std::optional<Mp3Frame> Resynchronize();

  const PlainFile& file_;
  std::uint64_t offset_;
  Mp3Header like_;
  std::vector<std::uint8_t> window_;
  std::uint64_t windowBegin_ = 0;
  std::size_t windowSize_ = 0;
};

/// What an MPEG audio file says about itself before its sound begins.
struct Mp3Stream {
  Mp3Header format;
  std::uint64_t begin = 0;  ///< Of the first frame that holds sound.
  /// Samples that the encoder put in front, and the decoder's own delay; not part of the sound.
  std::int64_t startPadding = 0;
  /// Samples of sound, when an encoder's tag that fits the file tells; else nothing.
  std::optional<std::int64_t> toldSamples;
};

/// Finds the stream: over ID3 tags, zeros and scraps in front, to frames that follow each other.
/// Nothing when the file begins with anything else. `head` is the beginning of the file.
std::optional<Mp3Stream> FindMp3Stream(const PlainFile& file, Bytes head);

/// Length of the sound, counted frame by frame unless the encoder's tag tells it.
std::int64_t CountMp3Samples(const PlainFile& file, const Mp3Stream& stream);

}  // namespace tavlo::platform
