#include "conversion/dss_writer.h"

extern "C" {
#include <libavcodec/avcodec.h>
}

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <random>
#include <string_view>

namespace tavlo::test {
namespace {

constexpr std::size_t kSamplesOfALongPlayFrame = 240;
constexpr char kFiller = '\x55';

void Must(bool holds) {
  if (!holds) std::abort();
}

void Put(std::string& bytes, std::size_t offset, std::string_view text) {
  bytes.replace(offset, text.size(), text);
}

std::string SwappedWords(std::string bytes) {
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) std::swap(bytes[i], bytes[i + 1]);
  return bytes;
}

/// One of FFmpeg's coders, opened.
struct Coder {
  explicit Coder(const AVCodec* codec, int rate) : context(avcodec_alloc_context3(codec)) {
    av_channel_layout_default(&context->ch_layout, 1);
    context->sample_rate = rate;
    context->sample_fmt = AV_SAMPLE_FMT_S16;
    context->bit_rate = 6300;
    Must(avcodec_open2(context, codec, nullptr) == 0);
  }
  ~Coder() {
    avcodec_free_context(&context);
    av_frame_free(&frame);
    av_packet_free(&packet);
  }
  Coder(const Coder&) = delete;

  AVCodecContext* context;
  AVFrame* frame = av_frame_alloc();
  AVPacket* packet = av_packet_alloc();
};

}  // namespace

void DssWriter::Append(const std::vector<std::string>& frames) {
  for (const std::string& frame : frames) AppendFrame(frame);
}

void DssWriter::Pause() {
  if (!blocks_.empty()) blocks_.back().bytes.resize(dss::kBlockBytes, kFiller);
  fresh_ = true;
}

void DssWriter::ChangeMode(dss::Mode mode) {
  Pause();
  mode_ = mode;
}

void DssWriter::AppendFrame(const std::string& frame) {
  if (fresh_ || blocks_.back().bytes.size() == dss::kBlockBytes) blocks_.push_back({.mode = mode_});
  fresh_ = false;
  Block& block = blocks_.back();
  if (!block.hasBegin) block.begin = block.bytes.size();
  block.hasBegin = true;
  ++block.frames;
  const std::size_t fits = std::min(frame.size(), dss::kBlockBytes - block.bytes.size());
  block.bytes += frame.substr(0, fits);
  if (fits == frame.size()) return;
  blocks_.push_back({.mode = mode_});
  blocks_.back().bytes += frame.substr(fits);
  blocks_.back().begin = blocks_.back().bytes.size();
}

std::string DssWriter::File(int toldSeconds) const {
  Must(!blocks_.empty());
  std::string file = Header(blocks_.front().mode, toldSeconds);
  for (const Block& block : blocks_) {
    std::string bytes = block.bytes;
    bytes.resize(dss::kBlockBytes, kFiller);
    if (block.mode == dss::Mode::StandardPlay) bytes = SwappedWords(bytes);
    const char swap = static_cast<char>(block.begin % 2 != 0 ? 0x80 : 0);
    const char mode = static_cast<char>(block.mode);
    const std::string header{
        swap,  static_cast<char>(block.begin / 2), static_cast<char>(block.frames), '\0', mode,
        '\xFF'};
    Put(bytes, 0, header);
    file += bytes;
  }
  return file;
}

std::string DssWriter::Header(dss::Mode mode, int toldSeconds, int blocks) {
  std::string header(static_cast<std::size_t>(blocks) * dss::kBlockBytes, '\0');
  header[0] = static_cast<char>(blocks);
  Put(header, 1, "dss");
  Put(header, 12, "BROWN");
  Put(header, 38, "040903140512");
  Put(header, 50, "040903141512");
  char length[32];
  std::snprintf(length, sizeof length, "%02d%02d%02d", toldSeconds / 3600, toldSeconds / 60 % 60,
                toldSeconds % 60);
  Put(header, 62, length);
  header[676] = static_cast<char>(mode);
  Put(header, 798, "The heart, and what we heard of it.");
  return header;
}

std::vector<std::string> LongPlayFrames(const std::vector<std::int16_t>& samples) {
  Coder coder(avcodec_find_encoder_by_name("g723_1"), 8000);
  std::vector<std::string> frames;
  const auto takePackets = [&] {
    while (avcodec_receive_packet(coder.context, coder.packet) == 0) {
      frames.emplace_back(reinterpret_cast<const char*>(coder.packet->data),
                          static_cast<std::size_t>(coder.packet->size));
      av_packet_unref(coder.packet);
    }
  };
  for (std::size_t at = 0; at + kSamplesOfALongPlayFrame <= samples.size();
       at += kSamplesOfALongPlayFrame) {
    AVFrame* const frame = coder.frame;
    av_frame_unref(frame);
    frame->format = AV_SAMPLE_FMT_S16;
    frame->sample_rate = 8000;
    frame->nb_samples = static_cast<int>(kSamplesOfALongPlayFrame);
    av_channel_layout_default(&frame->ch_layout, 1);
    Must(av_frame_get_buffer(frame, 0) == 0);
    std::memcpy(frame->data[0], samples.data() + at, 2 * kSamplesOfALongPlayFrame);
    Must(avcodec_send_frame(coder.context, frame) == 0);
    takePackets();
  }
  return frames;
}

std::vector<std::string> StandardPlayFrames(int count, unsigned seed) {
  std::mt19937 random(seed);
  std::vector<std::string> frames;
  for (int i = 0; i < count; ++i) {
    std::string frame(41, '\0');
    for (char& byte : frame) byte = static_cast<char>(random());
    frames.push_back(frame);
  }
  return frames;
}

std::vector<std::int16_t> DecodedFrames(dss::Mode mode, const std::vector<std::string>& frames) {
  const bool standard = mode == dss::Mode::StandardPlay;
  Coder coder(avcodec_find_decoder_by_name(standard ? "dss_sp" : "g723_1"),
              standard ? 11000 : 8000);
  std::vector<std::int16_t> samples;
  for (std::string bytes : frames) {
    if (standard) bytes = SwappedWords(bytes + '\0');
    Must(av_new_packet(coder.packet, static_cast<int>(bytes.size())) == 0);
    std::memcpy(coder.packet->data, bytes.data(), bytes.size());
    Must(avcodec_send_packet(coder.context, coder.packet) == 0);
    av_packet_unref(coder.packet);
    while (avcodec_receive_frame(coder.context, coder.frame) == 0) {
      const auto* values = reinterpret_cast<const std::int16_t*>(coder.frame->data[0]);
      samples.insert(samples.end(), values, values + coder.frame->nb_samples);
    }
  }
  return samples;
}

}  // namespace tavlo::test
