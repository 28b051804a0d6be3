#include "playback/prompts.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "playback/prompt_names.h"
#include "support/settings_bench.h"
#include "support/simulated_audio.h"
#include "support/simulated_prompts.h"

namespace tavlo::test {
namespace {

using Lines = std::vector<std::string>;

struct PromptsTest : testing::Test, SettingsBench {
  PromptsTest() {
    binding.AudioPromptsOn = true;
    config.txtPromptVolume.Value = "20000";
  }

  SimulatedPlayer player{loop};
  SimulatedPromptControl control;
  playback::Prompts prompts{config, binding, folders, player, control};
};

TEST_F(PromptsTest, SpokenPromptSoundsWholeAtThePromptVolume) {
  prompts.PlayPrompt("Complete");
  EXPECT_EQ(control.Told,
            (Lines{"Close", "type WaveAudio", "file /root/Prompts/Complete.wav", "Open", "Play"}));
  EXPECT_EQ(control.Sounded, Lines{"/root/Prompts/Complete.wav"});
  EXPECT_EQ(player.Volumes, std::vector<int>{20'000});
}

struct Tones : PromptsTest, testing::WithParamInterface<playback::PromptName> {};

TEST_P(Tones, SoundForTheFirst50MillisecondsAtHalfThePromptVolume) {
  prompts.PlayPrompt(GetParam());
  const std::string path =
      std::string("/root/Prompts/") + std::string(std::string_view(GetParam())) + ".wav";
  EXPECT_EQ(control.Told,
            (Lines{"Close", "type WaveAudio", "file " + path, "Open", "from 0", "to 50", "Play"}));
  EXPECT_EQ(control.Sounded, Lines{path + " 0-50"});
  EXPECT_EQ(player.Volumes, std::vector<int>{10'000});
  EXPECT_EQ(prompts.PromptVolumeHalf, 10'000.0);
}

INSTANTIATE_TEST_SUITE_P(Names, Tones,
                         testing::Values(playback::PromptName("RewindTone"),
                                         playback::PromptName("ForwardTone")));

TEST_F(PromptsTest, EndsOfADocumentAreSpokenAndNoTones) {
  prompts.PlayPrompt("RewindEnd");
  prompts.PlayPrompt("ForwardEnd");
  EXPECT_EQ(control.Sounded,
            (Lines{"/root/Prompts/RewindEnd.wav", "/root/Prompts/ForwardEnd.wav"}));
  EXPECT_EQ(player.Volumes, (std::vector<int>{20'000, 20'000}));
}

TEST_F(PromptsTest, SpokenPromptAfterAToneSoundsWhole) {
  prompts.PlayPrompt("ForwardTone");
  prompts.PlayPrompt("ForwardEnd");
  EXPECT_EQ(control.Sounded.back(), "/root/Prompts/ForwardEnd.wav");
}

TEST_F(PromptsTest, NothingAtAllHappensWhilePromptsAreOff) {
  binding.AudioPromptsOn = false;
  prompts.PlayPrompt("Complete");
  prompts.PlayPrompt("RewindTone");
  EXPECT_TRUE(control.Told.empty());
  EXPECT_TRUE(player.Volumes.empty());
}

struct VolumeCase {
  const char* text;
  int spoken;
  int tone;
  double half;
};

struct PromptVolumes : PromptsTest, testing::WithParamInterface<VolumeCase> {};

TEST_P(PromptVolumes, FollowTheSettingAndStayWithinTheSlider) {
  config.txtPromptVolume.Value = GetParam().text;
  prompts.PlayPrompt("Save");
  prompts.PlayPrompt("RewindTone");
  EXPECT_EQ(player.Volumes, (std::vector<int>{GetParam().spoken, GetParam().tone}));
  EXPECT_EQ(prompts.PromptVolumeHalf, GetParam().half);
}

INSTANTIATE_TEST_SUITE_P(Texts, PromptVolumes,
                         testing::Values(VolumeCase{"0", 0, 0, 0}, VolumeCase{"", 0, 0, 0},
                                         VolumeCase{"65535", 65'535, 32'768, 32'767.5},
                                         VolumeCase{"55000 loud", 55'000, 27'500, 27'500},
                                         VolumeCase{"-4000", 0, 0, 0},
                                         VolumeCase{"400000", 65'535, 65'535, 200'000}));

TEST_F(PromptsTest, HalfVolumeIs15000BeforeTheFirstTone) {
  EXPECT_EQ(prompts.PromptVolumeHalf, 15'000.0);
  prompts.PlayPrompt("Welcome");
  EXPECT_EQ(prompts.PromptVolumeHalf, 15'000.0);
}

TEST_F(PromptsTest, MissingRecordingIsSilentAndTheNextPromptSounds) {
  control.Missing.insert("/root/Prompts/Save.wav");
  prompts.PlayPrompt("Complete");
  prompts.PlayPrompt("Save");
  EXPECT_FALSE(control.Sounds);
  EXPECT_TRUE(loop.Shown.empty());
  prompts.PlayPrompt("Return");
  EXPECT_EQ(control.Sounded, (Lines{"/root/Prompts/Complete.wav", "/root/Prompts/Return.wav"}));
}

TEST_F(PromptsTest, RecordingThatCannotBeReadInTimeIsSilentAndTheNextPromptSounds) {
  control.Late.insert("/root/Prompts/Save.wav");
  prompts.PlayPrompt("Complete");
  prompts.PlayPrompt("Save");
  EXPECT_FALSE(control.Sounds);
  EXPECT_TRUE(loop.Shown.empty());
  prompts.PlayPrompt("Return");
  EXPECT_EQ(control.Sounded, (Lines{"/root/Prompts/Complete.wav", "/root/Prompts/Return.wav"}));
}

TEST_F(PromptsTest, MachineWithoutSoundIsSilent) {
  control.HasDevice = false;
  prompts.PlayPrompt("Complete");
  prompts.PlayPrompt("RewindTone");
  EXPECT_TRUE(control.Sounded.empty());
  EXPECT_TRUE(loop.Shown.empty());
}

TEST_F(PromptsTest, StopEndsThePromptAndCloseLetsGoOfTheRecording) {
  prompts.PlayPrompt("Welcome");
  prompts.StopPrompt();
  EXPECT_FALSE(control.Sounds);
  EXPECT_TRUE(control.IsOpen());
  prompts.Close();
  EXPECT_FALSE(control.IsOpen());
}

TEST_F(PromptsTest, StopWorksWhilePromptsAreOff) {
  prompts.PlayPrompt("Welcome");
  binding.AudioPromptsOn = false;
  prompts.StopPrompt();
  EXPECT_FALSE(control.Sounds);
}

TEST_F(PromptsTest, PromptDoesNotStopTheDocument) {
  player.SetOutputFormat(8000, 1);
  ASSERT_TRUE(player.StartOutput());
  prompts.PlayPrompt("NewDocInQ");
  EXPECT_TRUE(player.IsRunning());
  EXPECT_EQ(player.Stops, 0);
}

}  // namespace
}  // namespace tavlo::test
