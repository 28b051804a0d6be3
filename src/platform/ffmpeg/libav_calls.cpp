#include "platform/ffmpeg/libav_calls.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <mutex>
#include <new>
#include <optional>

namespace tavlo::platform {
namespace {

constexpr const char* kCodecLibrary = "libavcodec.so." AV_STRINGIFY(LIBAVCODEC_VERSION_MAJOR);
constexpr const char* kFormatLibrary = "libavformat.so." AV_STRINGIFY(LIBAVFORMAT_VERSION_MAJOR);

/// One library, which stays for as long as the process.
class Library {
 public:
  explicit Library(const char* name) : handle_(::dlopen(name, RTLD_LAZY | RTLD_LOCAL)) {}

  /// Whether all that was asked of it was there.
  bool Whole() const { return whole_; }

  template <typename Function>
  void Find(const char* name, Function& function) {
    if (handle_ != nullptr) function = reinterpret_cast<Function>(::dlsym(handle_, name));
    whole_ = whole_ && function != nullptr;
  }

 private:
  void* handle_;
  bool whole_ = true;
};

bool FindCodecCalls(LibavCalls& calls) {
  Library codec(kCodecLibrary);
  codec.Find("av_packet_alloc", calls.av_packet_alloc);
  codec.Find("av_packet_free", calls.av_packet_free);
  codec.Find("av_packet_unref", calls.av_packet_unref);
  codec.Find("avcodec_alloc_context3", calls.avcodec_alloc_context3);
  codec.Find("avcodec_find_decoder", calls.avcodec_find_decoder);
  codec.Find("avcodec_flush_buffers", calls.avcodec_flush_buffers);
  codec.Find("avcodec_free_context", calls.avcodec_free_context);
  codec.Find("avcodec_open2", calls.avcodec_open2);
  codec.Find("avcodec_parameters_alloc", calls.avcodec_parameters_alloc);
  codec.Find("avcodec_parameters_free", calls.avcodec_parameters_free);
  codec.Find("avcodec_parameters_to_context", calls.avcodec_parameters_to_context);
  codec.Find("avcodec_receive_frame", calls.avcodec_receive_frame);
  codec.Find("avcodec_send_packet", calls.avcodec_send_packet);
  return codec.Whole();
}

bool FindFormatCalls(LibavCalls& calls) {
  Library format(kFormatLibrary);
  format.Find("av_find_input_format", calls.av_find_input_format);
  format.Find("av_read_frame", calls.av_read_frame);
  format.Find("av_seek_frame", calls.av_seek_frame);
  format.Find("avformat_alloc_context", calls.avformat_alloc_context);
  format.Find("avformat_close_input", calls.avformat_close_input);
  format.Find("avformat_find_stream_info", calls.avformat_find_stream_info);
  format.Find("avformat_open_input", calls.avformat_open_input);
  format.Find("avio_alloc_context", calls.avio_alloc_context);
  format.Find("avio_context_free", calls.avio_context_free);
  return format.Whole();
}

LibavCalls Load() {
  LibavCalls calls;
  calls.loaded = FindCodecCalls(calls) && FindFormatCalls(calls);
  return calls;
}

/// A process without a handle to spare can load no library, and may have one later.
bool HandleCanBeHad() {
  const int handle = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
  if (handle < 0) return false;
  ::close(handle);
  return true;
}

}  // namespace

const LibavCalls& Libav() {
  static std::mutex loading;
  static std::optional<LibavCalls> kept;
  const std::lock_guard hold(loading);
  if (!kept) {
    const LibavCalls calls = Load();
    if (!calls.loaded && !HandleCanBeHad()) throw std::bad_alloc();
    kept = calls;
  }
  return *kept;
}

}  // namespace tavlo::platform
