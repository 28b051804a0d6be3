#pragma once

#include <cstdint>
#include <memory>

#include "platform/ffmpeg/container_format.h"
#include "platform/ffmpeg/plain_file.h"

struct AVFormatContext;
struct AVIOContext;
struct AVPacket;

namespace tavlo::platform {

/// A container opened by the library over a file of ours, with every door to the outside shut: one
/// format, no protocols, no second file, bounds on streams, on probing, and on the reads that one
/// operation may cost.
class GuardedInput {
 public:
  explicit GuardedInput(const PlainFile& file);
  ~GuardedInput();
  GuardedInput(const GuardedInput&) = delete;

  /// Opens the container. False when it cannot be read; then nothing else may be called.
  bool Open(const ContainerFormat& format);
  /// Looks into the first packets for what the headers have not told.
  bool FindStreamInfo();

  /// The next packet of the stream. False at the end, when the file cannot be read on, and when
  /// there is too much between two packets.
  bool ReadPacket(int stream, AVPacket& packet);
  /// Goes to the packet at or before the moment, in the stream's time base.
  bool SeekTo(int stream, std::int64_t moment);

  AVFormatContext& Context() { return *context_; }

 private:
  static int Read(void* self, std::uint8_t* target, int size);
  static std::int64_t Seek(void* self, std::int64_t offset, int whence);

  const PlainFile& file_;
  std::int64_t offset_ = 0;
  std::int64_t budget_ = 0;  ///< Bytes that may still be read on the way to the next packet.
  AVFormatContext* context_ = nullptr;
  AVIOContext* input_ = nullptr;
};

}  // namespace tavlo::platform
