#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "hostile/call_watch.h"
#include "hostile/system_calls.h"
#include "support/sound_files.h"
#include "support/sound_server.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr int kDocuments = 2000;
constexpr long kMostKilobytes = 200 * 1024;
constexpr long kHangMilliseconds = 2000;

/// Options of the encoders by the name of the file that they make.
const std::map<std::string, std::string> kEncodings{
    {"pcm.wav", "-c:a pcm_s16le"},
    {"mulaw.wav", "-c:a pcm_mulaw"},
    {"float.wav", "-c:a pcm_f32le -ac 2"},
    {"ima.wav", "-c:a adpcm_ima_wav"},
    {"ms.wav", "-c:a adpcm_ms"},
    {"sound.mp3", "-c:a libmp3lame -b:a 32k"},
    {"variable.mp3", "-c:a libmp3lame -q:a 6"},
    {"two.mp2", "-c:a mp2 -ar 16000"},
    {"sound.flac", ""},
    {"sound.ogg", "-c:a libvorbis -ar 16000"},
    {"opus.ogg", "-c:a libopus"},
    {"sound.m4a", "-c:a aac"},
    {"sound.mov", "-c:a pcm_s16le"},
    {"sound.avi", "-c:a pcm_s16le"},
    {"sound.wma", "-c:a wmav2 -ar 16000"},
    {"sound.aiff", ""},
    {"sound.au", ""},
    {"sound.caf", "-c:a pcm_s16le"},
    {"sound.w64", "-c:a pcm_s16le"},
    {"sound.aac", "-c:a aac -f adts"},
};
/// Hours of nothing, which take little room in a file and much once they are decoded.
const std::map<std::string, std::string> kSilences{
    {"silence.flac", "-t 14400"},
    {"silence.ogg", "-t 3600 -c:a libvorbis -ar 16000"},
    {"silence.m4a", "-t 3600 -c:a alac"},
};

bool Encode(const TemporaryFolder& originals) {
  const std::string tone = "-f lavfi -i 'sine=frequency=440:sample_rate=8000:duration=1' ";
  const std::string silence = "-f lavfi -i 'anullsrc=r=8000:cl=mono' ";
  bool made = true;
  for (const auto& [name, options] : kEncodings) {
    made = made && RunFfmpeg(tone + options + " " + (originals / name));
  }
  for (const auto& [name, options] : kSilences) {
    made = made && RunFfmpeg(silence + options + " " + (originals / name));
  }
  return made;
}

TEST(WatchOverADeck, NoticesAFileThatIsNotTheOneOfItsStep) {
  const TemporaryFolder desk;
  const std::string bait = desk.Write("bait.wav", "bait");
  ASSERT_GE(RunListenedTo({"cat", "/tavlo-mark/sound.wav", bait, "2>/dev/null"}, desk / "calls"),
            0);
  CallWatch watch({"InQueue"});
  for (const SystemCall& call : ReadSystemCalls(desk / "calls")) watch.Take(call);
  ASSERT_EQ(watch.Offences.size(), 1U);
  EXPECT_EQ(watch.Offences.front().substr(0, 18 + bait.size()), "sound.wav: openat " + bait);
}

TEST(TwoThousandHostileDocuments, AreListedAndPlayedOrRefusedAndReachNothing) {
  const TemporaryFolder originals;
  const TemporaryFolder desk;
  ASSERT_TRUE(Encode(originals));
  const std::string script = desk.Write("script", ScriptNaming(desk / "bait.wav"));
  SoundServer server;
  ASSERT_TRUE(server.Start());

  const int status = RunListenedTo({TAVLO_HOSTILE_DECK, originals.Path(), script, desk / "report"},
                                   desk / "calls");
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);

  std::map<std::string, long> report = ReadReport(desk / "report");
  for (const auto& [what, count] : report) RecordProperty(what, std::to_string(count));
  EXPECT_EQ(report["rows"], kDocuments);
  EXPECT_EQ(report["whole"], kDocuments);
  EXPECT_EQ(report["primed"] + report["empty"] + report["unplayable"], kDocuments);
  EXPECT_EQ(report["played"], report["primed"]);
  EXPECT_GT(report["played"], kDocuments / 5);
  EXPECT_GT(report["unplayable"], kDocuments / 5);
  EXPECT_GT(report["boxes"], 0);
  EXPECT_EQ(report["worked"], 10);
  EXPECT_LT(report["longestMs"], kHangMilliseconds);
  EXPECT_GT(report["peakKilobytes"], 0);
  EXPECT_LT(report["peakKilobytes"], kMostKilobytes);

  CallWatch watch({"InQueue"});
  for (const SystemCall& call : ReadSystemCalls(desk / "calls")) watch.Take(call);
  EXPECT_EQ(watch.Opened.size(), kDocuments) << "the listener missed some, or more was opened";
  EXPECT_EQ(watch.OpenedTwiceByAScan, std::set<std::string>());
  EXPECT_EQ(watch.Offences, std::vector<std::string>());
  EXPECT_FALSE(fs::exists(desk / "bait.wav"));
}

}  // namespace
}  // namespace tavlo::test
