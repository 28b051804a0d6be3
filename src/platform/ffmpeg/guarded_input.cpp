#include "platform/ffmpeg/guarded_input.h"

#include <algorithm>
#include <new>

#include "platform/ffmpeg/codec.h"
#include "platform/ffmpeg/libav_calls.h"

namespace tavlo::platform {
namespace {

constexpr int kBufferSize = 32 * 1024;
constexpr std::int64_t kProbeSize = 256 * 1024;
constexpr std::int64_t kProbeTime = AV_TIME_BASE;
constexpr unsigned kMostStreams = 16;
/// Bytes that an operation may read, a fraction of a second's worth. The tables of a day's
/// recording take less.
constexpr std::int64_t kMostBytes = 32 * 1024 * 1024;
/// What a packet adds for the way to the next one. A file may be gigabytes of nothing, so a search
/// may not go on for as long as there is file; a packet of sound is a few hundred bytes.
constexpr std::int64_t kBytesForPacket = 128 * 1024;
/// No table of a container may take more memory than this at once: enough for sixteen hours in the
/// shortest frames. What a table claims costs its writer nothing.
constexpr std::size_t kLargestTable = 64 * 1024 * 1024;

int RefuseToOpen(AVFormatContext*, AVIOContext**, const char*, int, AVDictionary**) {
  return AVERROR(EPERM);
}

}  // namespace

GuardedInput::GuardedInput(const PlainFile& file) : file_(file) { av_max_alloc(kLargestTable); }

GuardedInput::~GuardedInput() {
  if (context_ != nullptr) Libav().avformat_close_input(&context_);
  if (input_ == nullptr) return;
  av_freep(&input_->buffer);
  Libav().avio_context_free(&input_);
}

bool GuardedInput::Open(const ContainerFormat& format) {
  const LibavCalls& libav = Libav();
  if (!libav.loaded) return false;
  const AVInputFormat* reader = libav.av_find_input_format(format.name);
  context_ = libav.avformat_alloc_context();
  auto* buffer = static_cast<std::uint8_t*>(av_malloc(kBufferSize));
  const bool inMemory = context_ != nullptr && buffer != nullptr;
  if (reader != nullptr && inMemory) {
    input_ = libav.avio_alloc_context(buffer, kBufferSize, 0, this, &Read, nullptr, &Seek);
  }
  if (input_ == nullptr) {
    av_free(buffer);
    if (reader != nullptr) throw std::bad_alloc();
    return false;
  }
  context_->pb = input_;
  context_->flags |= AVFMT_FLAG_CUSTOM_IO;
  context_->io_open = &RefuseToOpen;
  context_->max_streams = static_cast<int>(kMostStreams);
  context_->probesize = kProbeSize;
  context_->max_analyze_duration = kProbeTime;
  context_->format_whitelist = av_strdup(format.name);
  context_->codec_whitelist = av_strdup(Codec::Listed());
  // The only name in the list of allowed protocols is one that no protocol has.
  context_->protocol_whitelist = av_strdup("none");
  budget_ = kMostBytes;
  return libav.avformat_open_input(&context_, nullptr, reader, nullptr) >= 0;
}

bool GuardedInput::FindStreamInfo() {
  budget_ = kMostBytes;
  return Libav().avformat_find_stream_info(context_, nullptr) >= 0;
}

bool GuardedInput::ReadPacket(int stream, AVPacket& packet) {
  constexpr int kMostOthers = 4096;
  for (int i = 0; i < kMostOthers; ++i) {
    Libav().av_packet_unref(&packet);
    if (Libav().av_read_frame(context_, &packet) < 0) return false;
    if (packet.stream_index != stream) continue;
    budget_ = std::min(budget_ + packet.size + kBytesForPacket, kMostBytes);
    return true;
  }
  return false;
}

bool GuardedInput::SeekTo(int stream, std::int64_t moment) {
  budget_ = kMostBytes;
  return Libav().av_seek_frame(context_, stream, moment, AVSEEK_FLAG_BACKWARD) >= 0;
}

int GuardedInput::Read(void* self, std::uint8_t* target, int size) {
  auto& input = *static_cast<GuardedInput*>(self);
  // Each call costs, even one that brings little.
  constexpr std::int64_t kCostOfCall = 256;
  if (input.budget_ <= 0) return AVERROR_EXIT;
  const std::size_t got = input.file_.ReadAt(static_cast<std::uint64_t>(input.offset_),
                                             {target, static_cast<std::size_t>(size)});
  input.budget_ -= static_cast<std::int64_t>(got) + kCostOfCall;
  input.offset_ += static_cast<std::int64_t>(got);
  return got > 0 ? static_cast<int>(got) : AVERROR_EOF;
}

std::int64_t GuardedInput::Seek(void* self, std::int64_t offset, int whence) {
  auto& input = *static_cast<GuardedInput*>(self);
  const auto size = static_cast<std::int64_t>(input.file_.Size());
  if ((whence & AVSEEK_SIZE) != 0) return size;
  std::int64_t base = 0;
  if ((whence & 3) == SEEK_CUR) base = input.offset_;
  if ((whence & 3) == SEEK_END) base = size;
  if (offset > size || base + offset < 0) return AVERROR(EINVAL);
  input.offset_ = std::min(base + offset, size);
  return input.offset_;
}

}  // namespace tavlo::platform
