#include "kinds.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <random>

#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using Samples = std::vector<std::int16_t>;

/// What a codec that adapts to what was before, or fills in noise, may be off after a seek.
constexpr float kAdapts = 0.02F;
constexpr Traits kCut{.playsWhenCut = true};
constexpr Traits kLossless{.reference = Reference::Source};
constexpr Traits kLosslessCut{.reference = Reference::Source, .playsWhenCut = true};
constexpr Traits kAdapting{.seekTolerance = kAdapts};
constexpr Traits kAdaptingCut{.seekTolerance = kAdapts, .playsWhenCut = true};

std::string DataOf(const Samples& samples) {
  std::string data;
  for (const std::int16_t value : samples) data += Number(static_cast<std::uint16_t>(value), 2);
  return data;
}

std::string Format16(int rate) { return ChunkBytes("fmt ", FormatBytes(1, 1, rate, 16)); }
std::string List() { return ChunkBytes("LIST", "INFOICMTsome words of an odd length"); }
std::string Fact(const Samples& samples) { return ChunkBytes("fact", Number(samples.size(), 4)); }
std::string Bext() { return ChunkBytes("bext", std::string(602, 'b')); }

std::string ChunksInFront(const Samples& samples, int rate) {
  return RiffBytes(Bext() + List() + Format16(rate) + Fact(samples) +
                   ChunkBytes("data", DataOf(samples)));
}

std::string ChunksBehind(const Samples& samples, int rate) {
  return RiffBytes(Format16(rate) + ChunkBytes("data", DataOf(samples)) + Fact(samples) + List() +
                   Bext());
}

std::string SoundBeforeFormat(const Samples& samples, int rate) {
  return RiffBytes(ChunkBytes("data", DataOf(samples)) + List() + Format16(rate));
}

std::string ClaimOfNothing(const Samples& samples, int rate) {
  return RiffBytes(Format16(rate)) + "data" + Number(0, 4) + DataOf(samples);
}

std::string ClaimOfTheLargest(const Samples& samples, int rate) {
  return RiffBytes(Format16(rate)) + "data" + Number(0xFFFFFFFF, 4) + DataOf(samples);
}

/// Three bytes a sample and an odd count of them: the chunk is padded.
std::string OddSize(const Samples& samples, int rate) {
  std::string data;
  for (std::size_t i = samples.size() % 2 == 0 ? 1 : 0; i < samples.size(); ++i)
    data += '\0' + Number(static_cast<std::uint16_t>(samples[i]), 2);
  return RiffBytes(ChunkBytes("fmt ", FormatBytes(1, 1, rate, 24)) + ChunkBytes("data", data) +
                   List());
}

std::string Extensible(const Samples& samples, int rate) {
  const std::string guid("\x01\0\0\0\0\0\x10\0\x80\0\0\xAA\0\x38\x9B\x71", 16);
  return RiffBytes(ChunkBytes("fmt ", FormatBytes(0xFFFE, 1, rate, 16) + Number(22, 2) +
                                          Number(16, 2) + Number(4, 4) + guid) +
                   ChunkBytes("data", DataOf(samples)));
}

/// No tool of Debian writes this coding. Any bits are frames of it, so frames of chance stand in
/// for speech: 12.65 kbit a second, 32 bytes and a header each.
std::string WideBandFrames(const Samples& samples, int rate) {
  std::mt19937 chance(1);
  std::string bytes = "#!AMR-WB\n";
  for (std::size_t i = 0; i < samples.size() / static_cast<std::size_t>(rate / 50); ++i) {
    bytes += '\x14';
    for (int k = 0; k < 32; ++k) bytes += static_cast<char>(chance());
  }
  return bytes;
}

std::vector<float> DecodedBySox(const std::string& path) {
  const std::string raw = path + ".f32";
  if (std::system(("sox -V1 -r 8000 '" + path + "' '" + raw + "'").c_str()) != 0) return {};
  const std::string bytes = ReadFile(raw);
  std::vector<float> values(bytes.size() / sizeof(float));
  std::memcpy(values.data(), bytes.data(), values.size() * sizeof(float));
  return values;
}

constexpr Traits Made(std::string (*make)(const Samples&, int)) {
  return {.make = make, .reference = Reference::Source};
}

constexpr Traits kBigEndian{.command = "sox $IN -B $OUT", .reference = Reference::Source};
constexpr Traits kWithPicture{
    .command =
        "$FFMPEG -f lavfi -i testsrc=duration=5:size=64x48 -i $IN -c:v mjpeg "
        "-c:a libmp3lame $OUT"};
constexpr Traits kVox{.command = "sox $IN $OUT", .reference = Reference::Sox, .playsWhenCut = true};
constexpr Traits kAmr{
    .command = "sox $IN -t amr-nb $OUT", .seekTolerance = kAdapts, .playsWhenCut = true};
/// Frames of chance leave more behind in the decoder than speech does.
constexpr Traits kWideBand{.make = WideBandFrames, .seekTolerance = 0.1F, .playsWhenCut = true};
constexpr Traits kEdited{
    .command = "$FFMPEG -i $IN -c:a aac $OUT.m4a && $FFMPEG -ss 2.1 -i $OUT.m4a -c copy $OUT",
    .seekTolerance = kAdapts};

const Kind kWaves[] = {
    {"WaveOf8Bits", "a.wav", 11025, 1, "-c:a pcm_u8", kCut},
    {"WaveOf16Bits", "a.wav", 11025, 1, "-c:a pcm_s16le", kLossless},
    {"WaveOf16BitsStereo", "a.wav", 44100, 2, "", kLossless},
    {"WaveOf24Bits", "a.wav", 48000, 2, "-c:a pcm_s24le", kLossless},
    {"WaveOf32Bits", "a.wav", 16000, 1, "-c:a pcm_s32le", kLossless},
    {"WaveOfFloats", "a.wav", 16000, 2, "-c:a pcm_f32le", kLossless},
    {"WaveOfDoubles", "a.wav", 8000, 1, "-c:a pcm_f64le", kLossless},
    {"WaveMuLaw", "a.wav", 8000, 1, "-c:a pcm_mulaw", kCut},
    {"WaveALaw", "a.wav", 8000, 2, "-c:a pcm_alaw", kCut},
    {"WaveImaAdpcm", "a.wav", 11025, 1, "-c:a adpcm_ima_wav", kCut},
    {"WaveImaAdpcmStereo", "a.wav", 22050, 2, "-c:a adpcm_ima_wav"},
    {"WaveMsAdpcm", "a.wav", 11025, 1, "-c:a adpcm_ms", kCut},
    {"WaveMsAdpcmStereo", "a.wav", 22050, 2, "-c:a adpcm_ms"},
    {"WaveGsm610", "a.wav", 8000, 1, "-c:a libgsm_ms", kAdaptingCut},
    {"WaveG726At16Kbit", "a.wav", 8000, 1, "-c:a g726 -b:a 16k", kAdapting},
    {"WaveG726At24Kbit", "a.wav", 8000, 1, "-c:a g726 -b:a 24k", kAdapting},
    {"WaveG726At32Kbit", "a.wav", 8000, 1, "-c:a g726 -b:a 32k", kAdaptingCut},
    {"WaveG726At40Kbit", "a.wav", 8000, 1, "-c:a g726 -b:a 40k", kAdapting},
    {"WaveMp3", "a.wav", 16000, 1, "-c:a libmp3lame", kCut},
    {"WaveExtensible", "a.wav", 16000, 1, "", Made(Extensible)},
    {"WaveRf64", "a.wav", 16000, 2, "-rf64 always", kLossless},
    {"Wave64", "a.w64", 16000, 1, ""},
    {"WaveBigEndian", "a.wav", 16000, 1, "", kBigEndian},
    {"WaveWithChunksInFront", "a.wav", 16000, 1, "", Made(ChunksInFront)},
    {"WaveWithChunksBehind", "a.wav", 16000, 1, "", Made(ChunksBehind)},
    {"WaveWithSoundBeforeFormat", "a.wav", 16000, 1, "", Made(SoundBeforeFormat)},
    {"WaveThatClaimsNoData", "a.wav", 16000, 1, "", Made(ClaimOfNothing)},
    {"WaveThatClaimsTheMostData", "a.wav", 16000, 1, "", Made(ClaimOfTheLargest)},
    {"WaveOfOddSize", "a.wav", 16000, 1, "", {.make = OddSize}},
};

const Kind kPackets[] = {
    {"Mp3AtConstantRate", "a.mp3", 16000, 1, "-b:a 32k", kCut},
    {"Mp3AtVariableRate", "a.mp3", 44100, 2, "-q:a 4", kCut},
    {"Mp3AtVariableRateWithoutHeader", "a.mp3", 44100, 2, "-q:a 4 -write_xing 0"},
    {"Mp3WithTags", "a.mp3", 22050, 1, "-write_id3v1 1 -id3v2_version 4 -metadata title=Dictation"},
    {"Mp3OfTelephoneQuality", "a.mp3", 8000, 1, "-b:a 8k"},
    {"WmaVersion1", "a.wma", 44100, 2, "-c:a wmav1", kCut},
    {"WmaVersion2", "a.wma", 16000, 1, "-c:a wmav2", kAdaptingCut},
    {"AviPcm", "a.avi", 16000, 1, "-c:a pcm_s16le", kLosslessCut},
    {"AviMp3", "a.avi", 44100, 2, "-c:a libmp3lame", kCut},
    {"AviMp3AtVariableRate", "a.avi", 44100, 1, "-c:a libmp3lame -q:a 5"},
    {"AviAdpcm", "a.avi", 22050, 1, "-c:a adpcm_ima_wav"},
    {"AviWithPicture", "a.avi", 44100, 2, "", kWithPicture},
    {"Vox", "a.vox", 8000, 1, "", kVox},
    {"VoxThatIsAWave", "a.vox", 8000, 1, "-f wav", kLossless},
    {"AmrNarrowBand", "a.amr", 8000, 1, "", kAmr},
    {"AmrWideBand", "a.awb", 16000, 1, "", kWideBand},
    {"M4aAac", "a.m4a", 44100, 2, "-c:a aac", kAdapting},
    {"M4aAacHeaderFirst", "a.m4a", 16000, 1, "-c:a aac -movflags faststart", kAdaptingCut},
    {"M4aAacInFragments", "a.m4a", 44100, 1, "-c:a aac -movflags frag_keyframe+empty_moov",
     kAdaptingCut},
    {"M4aAacEdited", "a.m4a", 44100, 1, "", kEdited},
    {"M4aLossless", "a.m4a", 44100, 2, "-c:a alac", kLossless},
    {"Aac", "a.aac", 44100, 2, "-c:a aac", kAdaptingCut},
    {"OggVorbis", "a.ogg", 44100, 2, "-c:a libvorbis", kCut},
    {"OggVorbisOfTelephoneQuality", "a.ogg", 8000, 1, "-c:a libvorbis"},
    {"Opus", "a.opus", 48000, 2, "-c:a libopus", kCut},
    {"OpusOfTelephoneQuality",
     "a.opus",
     8000,
     1,
     "-c:a libopus -b:a 12k",
     {.decodedRate = 48000, .seekTolerance = kAdapts}},
    {"Flac", "a.flac", 44100, 2, "", kLosslessCut},
    {"FlacOf24Bits", "a.flac", 16000, 1, "-sample_fmt s32", kLossless},
    {"Aiff", "a.aiff", 22050, 2, "", kLosslessCut},
    {"AiffMuLaw", "a.aif", 8000, 1, "-c:a pcm_mulaw -f aiff"},
    {"Au", "a.au", 8000, 1, "-c:a pcm_mulaw", kCut},
    {"Caf", "a.caf", 16000, 1, "", kLosslessCut},
};

}  // namespace

std::ostream& operator<<(std::ostream& out, const Kind& kind) { return out << kind.name; }

const std::vector<Kind>& AllKinds() {
  static const std::vector<Kind> all = [] {
    std::vector<Kind> kinds(std::begin(kWaves), std::end(kWaves));
    kinds.insert(kinds.end(), std::begin(kPackets), std::end(kPackets));
    return kinds;
  }();
  return all;
}

Samples SourceOf(const Kind& kind) {
  return Chirp(static_cast<int>(kSecondsOfSound * kind.rate), kind.rate, kind.channels);
}

bool MakeFile(const Kind& kind, const std::string& folder, const std::string& path) {
  const Samples samples = SourceOf(kind);
  if (kind.traits.make != nullptr) {
    WriteFile(path, kind.traits.make(samples, kind.rate));
    return true;
  }
  const std::string source = folder + "/source.wav";
  WriteFile(source, WaveBytes(samples, kind.rate, kind.channels));
  const std::string names = "IN='" + source + "' OUT='" + path + "' OPTIONS='" + kind.options +
                            "' FFMPEG='ffmpeg -nostdin -loglevel quiet -y'; ";
  return std::system((names + kind.traits.command).c_str()) == 0;
}

std::vector<float> ReferenceOf(const Kind& kind, const std::string& path) {
  std::vector<float> values;
  if (kind.traits.reference == Reference::Source) {
    for (const std::int16_t value : SourceOf(kind))
      values.push_back(static_cast<float>(value) / 32768.0F);
  } else if (kind.traits.reference == Reference::Ffmpeg) {
    values = DecodedByFfmpeg(path);
  } else {
    values = DecodedBySox(path);
  }
  // Codecs may go beyond full scale, which nothing behind the decoder can play.
  for (float& value : values) value = std::clamp(value, -1.0F, 1.0F);
  return values;
}

}  // namespace tavlo::test
