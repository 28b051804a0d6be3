#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <set>
#include <string>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "playback/prompt_names.h"
#include "support/sound_analysis.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

const fs::path kFolder = TAVLO_PROMPTS;

bool IsTone(std::string_view name) { return name.ends_with("Tone"); }

TEST(Recordings, AreThereForAllThatTheDeckSaysAndForNothingElse) {
  std::set<std::string> recorded;
  for (const auto& entry : fs::directory_iterator(kFolder)) {
    recorded.insert(entry.path().filename().string());
  }
  std::set<std::string> spoken;
  for (const std::string_view name : playback::kPromptNames) {
    spoken.insert(std::string(name) + ".wav");
  }
  EXPECT_EQ(recorded, spoken);
}

struct Recording : testing::TestWithParam<std::string_view> {
  void SetUp() override {
    ASSERT_TRUE(Opens(file, kFolder / (std::string(GetParam()) + ".wav")));
    sound = {.samples = ReadAll(file), .rate = file.SampleRate()};
  }

  platform::FfmpegAudioFile file;
  Sound sound;
};

TEST_P(Recording, IsOneChannelAtTheSameLevelAsTheOthers) {
  EXPECT_EQ(file.ChannelCount(), 1);
  EXPECT_EQ(file.SampleRate(), 22050);
  float peak = 0;
  for (const float value : sound.samples) peak = std::max(peak, std::abs(value));
  EXPECT_NEAR(20 * std::log10(peak), -3, 0.1);
}

TEST_P(Recording, BeginsAndEndsWithoutAPauseOrAClick) {
  constexpr double kLongestPause = 0.03;
  constexpr float kSilence = 0.002F;
  const Extent audible = Audible(sound, kSilence);
  EXPECT_LE(static_cast<double>(audible.begin) / sound.rate, kLongestPause);
  EXPECT_LE(static_cast<double>(sound.samples.size() - audible.end) / sound.rate, kLongestPause);
  EXPECT_LT(std::abs(sound.samples.front()), 0.001F);
  EXPECT_LT(std::abs(sound.samples.back()), 0.001F);
}

TEST_P(Recording, IsShort) {
  const double longest = IsTone(GetParam()) ? 0.05 : 3.5;
  EXPECT_LE(sound.Seconds(), longest);
  EXPECT_GT(sound.Seconds(), IsTone(GetParam()) ? 0.045 : 0.3);
}

INSTANTIATE_TEST_SUITE_P(Prompts, Recording, testing::ValuesIn(playback::kPromptNames),
                         [](const auto& each) { return std::string(each.param); });

/// The pitch of a tone in its first and in its second half.
std::pair<double, double> HalvesOf(const std::string& name) {
  platform::FfmpegAudioFile file;
  EXPECT_TRUE(Opens(file, kFolder / name));
  const Sound tone{.samples = ReadAll(file), .rate = file.SampleRate()};
  return {PitchOf(tone.Between(0.003, 0.025)), PitchOf(tone.Between(0.025, 0.047))};
}

TEST(Tones, FallForRewindAndRiseForForwardWhichIsTheHigher) {
  const auto [rewindFirst, rewindLast] = HalvesOf("RewindTone.wav");
  const auto [forwardFirst, forwardLast] = HalvesOf("ForwardTone.wav");
  EXPECT_GT(Cents(rewindFirst, rewindLast), 100);
  EXPECT_GT(Cents(forwardLast, forwardFirst), 100);
  EXPECT_GT(Cents(std::min(forwardFirst, forwardLast), std::max(rewindFirst, rewindLast)), 200);
}

}  // namespace
}  // namespace tavlo::test
