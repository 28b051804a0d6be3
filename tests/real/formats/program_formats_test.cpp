#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "base/text.h"
#include "kinds.h"
#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"
#include "support/sound_recorder.h"
#include "support/sound_server.h"
#include "support/takes.h"

namespace tavlo::test {
namespace {

/// One kind of each format.
constexpr std::array kOfEachFormat{
    "WaveOf16Bits",   "WaveGsm610", "Mp3AtVariableRate", "WmaVersion2",
    "AviWithPicture", "Vox",        "AmrNarrowBand",     "AmrWideBand",
    "M4aAac",         "Aac",        "OggVorbis",         "OpusOfTelephoneQuality",
    "Flac",           "Aiff"};

/// A document of one kind in the Queue.
struct Document {
  Kind kind;
  std::string name;
  std::int64_t milliseconds = 0;  ///< As a whole decode by other tools has it.
};

/// Where in its document a recording ends, by its pitch, which climbs from 200 Hz to 1600 Hz.
double PlaceAtEndOf(const Sound& heard) {
  const double end = static_cast<double>(Audible(heard, 0.02F).end) / heard.rate;
  const double pitch = PitchOf(heard.Between(end - 0.105, end - 0.005));
  return (pitch - 200) * kSecondsOfSound / 1400 + 0.055;
}

struct ProgramFormats : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.StartWithPrecedence());
    ASSERT_TRUE(recorder.Start());
    home.MakeRoot(QuietSettings({{"AutoPreview", "3"}}));
    for (const char* name : kOfEachFormat) AddDocument(name);
    program = std::make_unique<DrivenProgram>(home);
  }

  void AddDocument(const std::string& kindName) {
    const auto& all = AllKinds();
    const auto kind =
        std::find_if(all.begin(), all.end(), [&](const Kind& one) { return one.name == kindName; });
    ASSERT_NE(kind, all.end()) << kindName;
    const std::string made = folder / kind->file;
    ASSERT_TRUE(MakeFile(*kind, folder.Path(), made)) << kindName;
    const int rate = kind->traits.decodedRate != 0 ? kind->traits.decodedRate : kind->rate;
    const auto samples =
        static_cast<std::int64_t>(ReferenceOf(*kind, made).size()) / kind->channels;

    const int minute = static_cast<int>(documents.size());
    std::string name = DocumentName(kindName, minute);
    name.replace(name.rfind('.'), std::string::npos, std::filesystem::path(made).extension());
    home.AddToQueue(name, ReadFile(made));
    documents.push_back({*kind, name, samples * 1000 / rate});
  }

  bool Playing() {
    return program->Ask([&] { return program->Rooms().engine.IsPlaying; });
  }
  /// Seconds of the document.
  double Position() {
    return program->Ask([&] {
      playback::AudioEngine& engine = program->Rooms().engine;
      return program->Rooms().documentInWork.CurrentSamplePosition / engine.File().SampleRate();
    });
  }

  /// Clicks the row and lets its beginning sound.
  void Preview(const Document& document) {
    const double from = recorder.Seconds();
    program->ClickRow(program->RowOf(document.name));
    ASSERT_TRUE(Until([&] { return AudibleSeconds(recorder.Since(from), 0.02F) > 0.5; }));
    EXPECT_EQ(program->Box(), "");
    EXPECT_EQ(program->Ask([&] { return program->Main().lblFileLengthHMS.Value.Get(); }),
              base::FormatHMS(static_cast<double>(document.milliseconds)));
    program->Click("cmdImportCompleteSnipetStop");
    ASSERT_TRUE(Until([&] { return !Playing(); }));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
  }
  /// Plays, goes on from another place by the slider, and stops there; returns what was heard.
  Sound PlayFromTheSlider(int percent) {
    program->Click("cmdPlay");
    EXPECT_TRUE(Until([&] { return Playing(); }));
    program->Drag("slPosition", percent);
    const double there = 0.9 * percent * kSecondsOfSound / 100;
    EXPECT_TRUE(Until([&] { return Position() > there; }));
    const double from = recorder.Seconds();
    EXPECT_TRUE(recorder.Pass(0.5));
    program->Click("cmdStop");
    EXPECT_TRUE(Until([&] { return !Playing(); }));
    EXPECT_TRUE(recorder.Pass(0.4));
    return recorder.Since(from);
  }
  void Leave() {
    program->Click("cmdSkip");
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  }

  SoundServer server;
  SoundRecorder recorder;
  Home home;
  ScratchFolder folder;
  std::vector<Document> documents;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(ProgramFormats, AreListedAtTheirLengthsPreviewedAndPlayedFromWhereTheSliderIsPut) {
  const int status = program->Run([&] {
    ASSERT_TRUE(program->Begin());
    double total = 0;
    for (const Document& document : documents) {
      SCOPED_TRACE(document.kind.name);
      const int row = program->RowOf(document.name);
      ASSERT_GE(row, 0);
      EXPECT_EQ(program->Ask([&] {
        return program->Main().listViewInQueue.TextAt(row, forms::document_column::Length);
      }),
                base::FormatHMS(static_cast<double>(document.milliseconds)));
      total += static_cast<double>(document.milliseconds);
    }
    EXPECT_EQ(program->Ask([&] { return program->Main().frameInQueue.Caption.Get(); }),
              "Queue:     " + std::to_string(documents.size()) + "     " + base::FormatHMS(total));

    for (const Document& document : documents) {
      SCOPED_TRACE(document.kind.name);
      Retake([&] {
        Preview(document);
        const Sound heard = PlayFromTheSlider(60);
        EXPECT_GT(AudibleSeconds(heard, 0.02F), 0.35);
        // The wide band's frames are noise, which has no pitch.
        if (document.kind.traits.make == nullptr) {
          EXPECT_NEAR(PlaceAtEndOf(heard), Position(), 0.040);
        }
        Leave();
      });
    }
    program->Exit();
  });
  EXPECT_EQ(status, 0);
}

}  // namespace
}  // namespace tavlo::test
