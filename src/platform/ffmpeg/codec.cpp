#include "platform/ffmpeg/codec.h"

#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <type_traits>

#include "platform/ffmpeg/libav_calls.h"
#include "platform/ffmpeg/sample_fold.h"
#include "platform/ffmpeg/sound_limits.h"

namespace tavlo::platform {
namespace {

/// Decoders of audio alone, each for a kind of file that dictation comes in.
constexpr const char* kListedDecoders =
    "mp1,mp1float,mp2,mp2float,mp3,mp3float,aac,flac,alac,vorbis,opus,wmav1,wmav2,wmapro,wmavoice,"
    "amrnb,amrwb,gsm,gsm_ms,truespeech,g722,g726,g726le,adpcm_g722,adpcm_g726,adpcm_g726le,"
    "adpcm_ima_wav,adpcm_ima_qt,adpcm_ms,adpcm_yamaha,adpcm_swf,"
    "pcm_u8,pcm_s8,pcm_s16le,pcm_s16be,pcm_s24le,pcm_s24be,pcm_s32le,pcm_s32be,pcm_s64le,"
    "pcm_f32le,pcm_f32be,pcm_f64le,pcm_f64be,pcm_mulaw,pcm_alaw";

bool IsListed(std::string_view name) {
  std::string_view rest = kListedDecoders;
  while (!rest.empty()) {
    const std::size_t end = std::min(rest.find(','), rest.size());
    if (rest.substr(0, end) == name) return true;
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
  return false;
}

template <typename T>
float FloatFrom(T value) {
  if constexpr (std::is_floating_point_v<T>) {
    return Tamed(static_cast<float>(value));
  } else if constexpr (std::is_same_v<T, std::uint8_t>) {
    return static_cast<float>(value - 128) / 128.0F;
  } else {
    constexpr double kScale = -static_cast<double>(std::numeric_limits<T>::min());
    return static_cast<float>(static_cast<double>(value) / kScale);
  }
}

template <typename T>
void AppendAs(const AVFrame& frame, bool planar, int played, std::vector<float>& values) {
  const int stored = std::min(frame.ch_layout.nb_channels, kMostChannels);
  std::array<float, kMostChannels> moment{};
  std::size_t at = values.size();
  values.resize(at + static_cast<std::size_t>(frame.nb_samples) * static_cast<std::size_t>(played));
  for (int i = 0; i < frame.nb_samples; ++i) {
    for (int channel = 0; channel < stored; ++channel) {
      const std::uint8_t* plane = frame.extended_data[planar ? channel : 0];
      const int index = planar ? i : i * frame.ch_layout.nb_channels + channel;
      T value;
      std::memcpy(&value, plane + static_cast<std::size_t>(index) * sizeof(T), sizeof(T));
      moment[static_cast<std::size_t>(channel)] = FloatFrom(value);
    }
    FoldMoment(moment.data(), stored, played, values.data() + at);
    at += static_cast<std::size_t>(played);
  }
}

/// What the library gives only when it has memory for it.
template <typename T>
Owned<T> Had(Owned<T> given) {
  if (!given) throw std::bad_alloc();
  return given;
}

}  // namespace

void FreeFfmpeg::operator()(AVCodecContext* context) const {
  Libav().avcodec_free_context(&context);
}
void FreeFfmpeg::operator()(AVCodecParameters* parameters) const {
  Libav().avcodec_parameters_free(&parameters);
}
void FreeFfmpeg::operator()(AVFrame* frame) const { av_frame_free(&frame); }
void FreeFfmpeg::operator()(AVPacket* packet) const { Libav().av_packet_free(&packet); }

Owned<AVCodecParameters> NewParameters() {
  return Libav().loaded ? Had(Owned<AVCodecParameters>(Libav().avcodec_parameters_alloc()))
                        : nullptr;
}

Owned<AVPacket> NewPacket() {
  return Libav().loaded ? Had(Owned<AVPacket>(Libav().av_packet_alloc())) : nullptr;
}

void QuietFfmpeg() { av_log_set_level(AV_LOG_QUIET); }

void AppendFrame(const AVFrame& frame, int played, std::vector<float>& values) {
  if (frame.nb_samples <= 0 || frame.ch_layout.nb_channels <= 0) return;
  const auto format = static_cast<AVSampleFormat>(frame.format);
  const bool planar = av_sample_fmt_is_planar(format) != 0;
  switch (av_get_packed_sample_fmt(format)) {
    case AV_SAMPLE_FMT_U8:
      return AppendAs<std::uint8_t>(frame, planar, played, values);
    case AV_SAMPLE_FMT_S16:
      return AppendAs<std::int16_t>(frame, planar, played, values);
    case AV_SAMPLE_FMT_S32:
      return AppendAs<std::int32_t>(frame, planar, played, values);
    case AV_SAMPLE_FMT_S64:
      return AppendAs<std::int64_t>(frame, planar, played, values);
    case AV_SAMPLE_FMT_FLT:
      return AppendAs<float>(frame, planar, played, values);
    case AV_SAMPLE_FMT_DBL:
      return AppendAs<double>(frame, planar, played, values);
    default:
      return;
  }
}

void AppendSilence(std::int64_t samples, int played, std::vector<float>& values) {
  values.resize(values.size() +
                static_cast<std::size_t>(samples) * static_cast<std::size_t>(played));
}

const char* Codec::Listed() { return kListedDecoders; }

Codec::Codec(Owned<AVCodecContext> context, Owned<AVFrame> frame, Owned<AVPacket> packet)
    : context_(std::move(context)), frame_(std::move(frame)), packet_(std::move(packet)) {}

std::unique_ptr<Codec> Codec::Open(const AVCodecParameters& parameters,
                                   const AVRational* timeBase) {
  const LibavCalls& libav = Libav();
  if (!libav.loaded) return nullptr;
  const AVCodec* decoder = libav.avcodec_find_decoder(parameters.codec_id);
  if (decoder == nullptr || decoder->type != AVMEDIA_TYPE_AUDIO || !IsListed(decoder->name))
    return nullptr;
  Owned<AVCodecContext> context = Had(Owned<AVCodecContext>(libav.avcodec_alloc_context3(decoder)));
  Owned<AVFrame> frame = Had(Owned<AVFrame>(av_frame_alloc()));
  Owned<AVPacket> packet = NewPacket();
  if (libav.avcodec_parameters_to_context(context.get(), &parameters) < 0) return nullptr;
  context->thread_count = 1;
  if (timeBase != nullptr) context->pkt_timebase = *timeBase;
  // A broken frame may not claim more than a few seconds of memory.
  context->max_samples = std::int64_t{1} << 20;
  if (libav.avcodec_open2(context.get(), decoder, nullptr) < 0) return nullptr;
  return std::unique_ptr<Codec>(new Codec(std::move(context), std::move(frame), std::move(packet)));
}

bool Codec::Send(const AVPacket* packet) {
  return Libav().avcodec_send_packet(context_.get(), packet) >= 0;
}

const AVFrame* Codec::Receive() {
  return Libav().avcodec_receive_frame(context_.get(), frame_.get()) >= 0 ? frame_.get() : nullptr;
}

void Codec::Flush() { Libav().avcodec_flush_buffers(context_.get()); }

bool Codec::DecodeBytes(Bytes bytes, int played, std::vector<float>& values) {
  // Decoders read in words and may look a little past the end.
  padded_.assign(bytes.size() + AV_INPUT_BUFFER_PADDING_SIZE, 0);
  std::memcpy(padded_.data(), bytes.data(), bytes.size());
  packet_->data = padded_.data();
  packet_->size = static_cast<int>(bytes.size());
  const std::size_t before = values.size();
  if (Send(packet_.get())) {
    while (const AVFrame* frame = Receive()) AppendFrame(*frame, played, values);
  }
  packet_->data = nullptr;
  packet_->size = 0;
  return values.size() > before;
}

}  // namespace tavlo::platform
