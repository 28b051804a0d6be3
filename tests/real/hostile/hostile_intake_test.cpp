#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "conversion/dss_writer.h"
#include "hostile/call_watch.h"
#include "hostile/system_calls.h"
#include "support/sound_files.h"
#include "support/sound_server.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

constexpr long kMostKilobytes = 200 * 1024;
constexpr long kHangMilliseconds = 2000;

/// A short run, unless the environment asks by TAVLO_LONG for a long one.
int Files() { return std::getenv("TAVLO_LONG") ? 5000 : 800; }

void WriteDictations(const TemporaryFolder& originals) {
  constexpr int kFrames = 100;
  DssWriter fast(dss::Mode::StandardPlay);
  fast.Append(StandardPlayFrames(kFrames, 1));
  fast.Pause();
  fast.Append(StandardPlayFrames(kFrames, 2));
  DssWriter slow(dss::Mode::LongPlay);
  slow.Append(LongPlayFrames(Chirp(16'000, 8000)));
  for (const char* ending : {".dS2", ".dss"}) {
    originals.Write(std::string("fast") + ending, fast.File(0));
    originals.Write(std::string("slow") + ending, slow.File(0));
  }
}

bool WriteOriginals(const TemporaryFolder& originals) {
  WriteDictations(originals);
  const std::string tone = "-f lavfi -i 'sine=frequency=440:sample_rate=8000:duration=1' ";
  const std::map<std::string, std::string> encodings{
      {"raw.eU2", "-c:a pcm_mulaw -f mulaw"},
      {"wave.eU2", "-c:a pcm_mulaw -f wav"},
      {"wave.eW2", "-c:a pcm_s16le -f wav"},
      {"sound.mp3", "-c:a libmp3lame -b:a 32k"},
      {"variable.mp3", "-c:a libmp3lame -q:a 6"},
      {"sound.wma", "-c:a wmav2 -ar 16000"},
      {"sound.avi", "-c:a pcm_s16le"},
      {"adpcm.avi", "-c:a adpcm_ima_wav -ar 22050"},
      {"sound.vox", "-c:a pcm_u8 -f u8"},
  };
  bool made = true;
  for (const auto& [name, options] : encodings) {
    made = made && RunFfmpeg(tone + options + " " + (originals / name));
  }
  return made;
}

TEST(HostileFilesInTheDropFolders, AreRetrievedConvertedAndHeardOrRefusedAndNoneIsLost) {
  const TemporaryFolder originals;
  const TemporaryFolder desk;
  ASSERT_TRUE(WriteOriginals(originals));
  const std::string script = desk.Write("script", ScriptNaming(desk / "bait.wav"));
  SoundServer server;
  ASSERT_TRUE(server.Start());

  const int status = RunListenedTo(
      {TAVLO_HOSTILE_INTAKE, originals.Path(), script, desk / "report", std::to_string(Files())},
      desk / "calls");
  ASSERT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 0);

  std::map<std::string, long> report = ReadReport(desk / "report");
  for (const auto& [what, count] : report) RecordProperty(what, std::to_string(count));
  EXPECT_EQ(report["lost"], 0);
  EXPECT_EQ(report["whole"] + report["converted"], Files());
  EXPECT_GT(report["converted"], Files() / 50);
  EXPECT_GT(report["boxes"], Files() / 50);
  EXPECT_GT(report["primed"], Files() / 10);
  EXPECT_GT(report["clicked"], 0);
  EXPECT_LT(report["longestMs"], kHangMilliseconds);
  EXPECT_LT(report["convertMs"], kHangMilliseconds);
  EXPECT_GT(report["peakKilobytes"], 0);
  EXPECT_LT(report["peakKilobytes"], kMostKilobytes);

  CallWatch watch({"InQueue", "ImportQueue", "dS2Queue", "eU2Queue", "eW2Queue", "FtpQueue"});
  for (const SystemCall& call : ReadSystemCalls(desk / "calls")) watch.Take(call);
  EXPECT_EQ(watch.Offences, std::vector<std::string>());
  EXPECT_FALSE(fs::exists(desk / "bait.wav"));
}

}  // namespace
}  // namespace tavlo::test
