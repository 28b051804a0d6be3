#include "arrivals/deliveries.h"

#include <array>
#include <random>
#include <span>

#include "conversion/converter_library.h"
#include "conversion/dss_writer.h"
#include "support/home.h"
#include "support/sound_files.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

constexpr int kMostFrames = 40;
constexpr int kFramesOfHalfAMinute = 1250;
constexpr std::size_t kMostBytes = 6000;

using Random = std::mt19937;

std::string Noise(Random& random) {
  std::string bytes(64 + random() % kMostBytes, '\0');
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

/// A wave whose samples are noise.
std::string WaveOfNoise(Random& random) {
  return RiffBytes(ChunkBytes("fmt ", FormatBytes(1, 1, 8000, 8)) +
                   ChunkBytes("data", Noise(random)));
}

std::string Dictation(int frames, Random& random) {
  DssWriter writer(dss::Mode::StandardPlay);
  writer.Append(StandardPlayFrames(frames, static_cast<unsigned>(random())));
  return writer.File(0);
}

/// What a pass makes of files by a library.
class Converted {
 public:
  std::string Dictation(const std::string& bytes) const {
    return WaveOf(bytes, [this](const auto& source, const auto& wave) {
      return codec_.WriteFile(source, wave);
    });
  }
  std::string Telephone(const std::string& bytes) const {
    return WaveOf(bytes, [this](const auto& source, const auto& wave) {
      return header_.AddHdr(source, wave);
    });
  }

 private:
  template <typename Call>
  std::string WaveOf(const std::string& bytes, const Call& call) const {
    const std::string source = folder_.Write("source", bytes);
    EXPECT_EQ(call(source, folder_ / "wave"), ConversionCode::Done);
    return folder_.Read("wave");
  }

  /// In memory: each conversion flushes what it made.
  const TemporaryFolder folder_{"/dev/shm"};
  const ConverterLibrary codec_{"DssCodec/DssCodec11"};
  const ConverterLibrary header_{"MuLawHeader"};
};

/// Gives the file its bytes by the end of its name.
void Fill(Delivery& delivery, Random& random, const Converted& converted) {
  const std::string ending = delivery.name.substr(delivery.name.size() - 4);
  if (ending == ".dS2") {
    delivery.bytes = Dictation(1 + static_cast<int>(random() % kMostFrames), random);
    delivery.arrived = converted.Dictation(delivery.bytes);
  } else if (ending == ".eU2") {
    delivery.bytes = Noise(random);
    delivery.arrived = converted.Telephone(delivery.bytes);
  } else {
    delivery.arrived = delivery.bytes = WaveOfNoise(random);
  }
}

std::string NameOf(int number, const std::string& ending) {
  const std::string name = DocumentName("Writer" + std::to_string(number));
  return name.substr(0, name.rfind('.')) + ending;
}

struct Kind {
  DropFolder folder;
  const char* ending;
};

std::vector<Delivery> Make(int count, unsigned seed, std::span<const Kind> kinds) {
  const Converted converted;
  Random random(seed);
  std::vector<Delivery> deliveries;
  for (int number = 0; number < count; ++number) {
    const Kind& kind = kinds[random() % kinds.size()];
    Delivery& delivery = deliveries.emplace_back();
    delivery.folder = kind.folder;
    delivery.name = NameOf(number, kind.ending);
    Fill(delivery, random, converted);
  }
  return deliveries;
}

}  // namespace

std::vector<Delivery> MakeDeliveries(int count, unsigned seed) {
  constexpr std::array kKinds{
      Kind{DropFolder::Current, ".eE2"}, Kind{DropFolder::Ew2, ".eW2"},
      Kind{DropFolder::Ds2, ".dS2"},     Kind{DropFolder::Eu2, ".eU2"},
      Kind{DropFolder::Ftp, ".eW2"},     Kind{DropFolder::Ftp, ".dS2"},
      Kind{DropFolder::Ftp, ".eU2"},     Kind{DropFolder::Ftp, ".mp3"},
  };
  return Make(count, seed, kKinds);
}

std::vector<Delivery> MakeRecordings(int count, unsigned seed) {
  const Converted converted;
  Random random(seed);
  std::vector<Delivery> deliveries;
  for (int number = 0; number < count; ++number) {
    Delivery& delivery = deliveries.emplace_back();
    delivery.folder = DropFolder::Ds2;
    delivery.name = NameOf(number, ".dS2");
    delivery.bytes = Dictation(kFramesOfHalfAMinute, random);
    delivery.arrived = converted.Dictation(delivery.bytes);
  }
  return deliveries;
}

std::vector<Delivery> MakeWaves(int count, unsigned seed) {
  constexpr std::array kKinds{Kind{DropFolder::Ew2, ".eW2"}};
  return Make(count, seed, kKinds);
}

}  // namespace tavlo::test
