#include "speech_decoder.h"

// FFmpeg's headers are C and do not say so.
extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/log.h>
}

#include <algorithm>
#include <cstring>
#include <new>

namespace tavlo::dss {
namespace {

constexpr int kStandardPlayRate = 11000;
constexpr int kLongPlayRate = 8000;
constexpr int kMostPacketBytes = 42;

}  // namespace

int NativeRate(Mode mode) { return mode == Mode::StandardPlay ? kStandardPlayRate : kLongPlayRate; }

void SpeechDecoder::Free::operator()(AVCodecContext* context) const {
  avcodec_free_context(&context);
}
void SpeechDecoder::Free::operator()(AVFrame* frame) const { av_frame_free(&frame); }
void SpeechDecoder::Free::operator()(AVPacket* packet) const { av_packet_free(&packet); }

SpeechDecoder::SpeechDecoder(Mode mode) : mode_(mode) {}

ConversionCode SpeechDecoder::Open() {
  // Its own messages would tell of broken dictations on the standard error.
  av_log_set_level(AV_LOG_QUIET);
  const char* const name = mode_ == Mode::StandardPlay ? "dss_sp" : "g723_1";
  const AVCodec* const codec = avcodec_find_decoder_by_name(name);
  if (codec == nullptr) return ConversionCode::NoDecoder;
  context_.reset(avcodec_alloc_context3(codec));
  packet_.reset(av_packet_alloc());
  frame_.reset(av_frame_alloc());
  if (!context_ || !packet_ || !frame_) return ConversionCode::NoMemory;
  av_channel_layout_default(&context_->ch_layout, 1);
  context_->sample_rate = NativeRate(mode_);
  context_->thread_count = 1;
  if (avcodec_open2(context_.get(), codec, nullptr) < 0) return ConversionCode::NoDecoder;
  const bool made = av_new_packet(packet_.get(), kMostPacketBytes) == 0;
  return made ? ConversionCode::Done : ConversionCode::NoMemory;
}

void SpeechDecoder::Pack(const Frame& frame) {
  std::memset(packet_->data, 0, kMostPacketBytes);
  std::copy_n(frame.bytes.begin(), frame.size, packet_->data);
  packet_->size = static_cast<int>(frame.size);
  if (mode_ == Mode::LongPlay) return;
  // The decoder takes words as they are stored, the later byte first.
  for (int i = 0; i < kMostPacketBytes; i += 2) std::swap(packet_->data[i], packet_->data[i + 1]);
  packet_->size = kMostPacketBytes;
}

ConversionCode SpeechDecoder::Decode(const Frame& frame, std::vector<std::int16_t>& samples) {
  Pack(frame);
  if (avcodec_send_packet(context_.get(), packet_.get()) < 0) return ConversionCode::DecodeFailed;
  int result = 0;
  while ((result = avcodec_receive_frame(context_.get(), frame_.get())) == 0) {
    const bool plain = frame_->format == AV_SAMPLE_FMT_S16 || frame_->format == AV_SAMPLE_FMT_S16P;
    if (!plain || frame_->ch_layout.nb_channels != 1) return ConversionCode::DecodeFailed;
    const auto* const values = reinterpret_cast<const std::int16_t*>(frame_->data[0]);
    samples.insert(samples.end(), values, values + frame_->nb_samples);
  }
  return result == AVERROR(EAGAIN) ? ConversionCode::Done : ConversionCode::DecodeFailed;
}

}  // namespace tavlo::dss
