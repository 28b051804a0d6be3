#include "platform/ffmpeg/sound_probe.h"

#include <array>

#include "platform/ffmpeg/bytes.h"
#include "platform/ffmpeg/container_decoder.h"
#include "platform/ffmpeg/container_format.h"
#include "platform/ffmpeg/mp3_decoder.h"
#include "platform/ffmpeg/mp3_frames.h"
#include "platform/ffmpeg/sample_fold.h"
#include "platform/ffmpeg/vox_decoder.h"
#include "platform/ffmpeg/wave_decoder.h"
#include "platform/ffmpeg/wave_header.h"

namespace tavlo::platform {
namespace {

/// Enough for every header that is not built to be long, in one read.
constexpr std::size_t kHeadSize = 4096;

SoundProbe ProbeWave(const PlainFile& file, const WaveHeader& header, Want want) {
  SoundProbe probe;
  probe.figures = {.playable = true,
                   .samplesPerSecond = header.samplesPerSecond,
                   .channels = FoldedChannels(header.channels),
                   .totalSamples = header.totalSamples};
  if (want == Want::Decoder) probe.decoder = NewWaveDecoder(file, header);
  return probe;
}

SoundProbe ProbeMp3(const PlainFile& file, Bytes head, Want want) {
  SoundProbe probe;
  const auto stream = FindMp3Stream(file, head);
  if (!stream) return probe;
  probe.figures = {.playable = true,
                   .samplesPerSecond = stream->format.samplesPerSecond,
                   .channels = stream->format.channels,
                   .totalSamples = CountMp3Samples(file, *stream)};
  if (want == Want::Decoder)
    probe.decoder = NewMp3Decoder(file, *stream, probe.figures.totalSamples);
  return probe;
}

SoundProbe ProbeByDecoder(std::unique_ptr<Decoder> decoder) {
  SoundProbe probe;
  if (!decoder) return probe;
  probe.figures = {.playable = true,
                   .samplesPerSecond = decoder->SamplesPerSecond(),
                   .channels = decoder->Channels(),
                   .totalSamples = decoder->TotalSamples()};
  probe.decoder = std::move(decoder);
  return probe;
}

}  // namespace

SoundProbe ProbeSound(const PlainFile& file, std::string_view path, Want want) {
  std::array<std::uint8_t, kHeadSize> bytes;
  const Bytes head(bytes.data(), file.ReadAt(0, bytes));
  WaveHeader wave;
  switch (ReadWaveHeader(file, head, wave)) {
    case WaveVerdict::Readable:
      return ProbeWave(file, wave, want);
    case WaveVerdict::Broken:
      return {};
    case WaveVerdict::OtherCoding:
      return ProbeByDecoder(NewContainerDecoder(file, head));
    case WaveVerdict::NoWave:
      break;
  }
  if (FindContainerFormat(head) != nullptr) return ProbeByDecoder(NewContainerDecoder(file, head));
  // Any bytes at all may stand in a recording without a header, so nothing else is looked for.
  if (IsVoxName(path) && !HasMark(head, 0, "ID3")) return ProbeByDecoder(NewVoxDecoder(file));
  return ProbeMp3(file, head, want);
}

}  // namespace tavlo::platform
