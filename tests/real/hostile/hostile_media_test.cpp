#include <gtest/gtest.h>
#include <sys/wait.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "hostile/system_calls.h"
#include "support/other_program.h"
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

/// What a harmful document would have its reader fetch.
std::string ScriptNaming(const std::string& target) {
  return "#EXTM3U\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:9,\nfile://" + target +
         "\n#EXTINF:9,\nhttp://127.0.0.1:1/x.wav\n#EXT-X-ENDLIST\nffconcat version 1.0\nfile '" +
         target + "'\n#!/bin/sh\ntouch " + target + "\n";
}

std::map<std::string, long> ReadReport(const std::string& path) {
  std::map<std::string, long> report;
  std::ifstream in(path);
  std::string what;
  for (long count = 0; in >> what >> count;) report[what] = count;
  return report;
}

/// Holds the calls of the deck against what each step of it may open.
class Watch {
 public:
  void Take(const SystemCall& call) {
    constexpr std::string_view kMark = "/tavlo-mark/";
    if (call.path.starts_with(kMark)) {
      before_ = std::exchange(step_, call.path.substr(kMark.size()));
      openedInScan_.clear();
    } else if (step_ != "" && step_ != "exit" && !IsAllowed(call)) {
      Offences.push_back(step_ + ": " + call.name + " " + call.path + " " + call.arguments);
    }
  }

  std::vector<std::string> Offences;
  std::set<std::string> Opened;  ///< Documents of the Queue.
  std::set<std::string> OpenedTwiceByAScan;

 private:
  bool IsAllowed(const SystemCall& call) {
    if (call.name == "socket") return call.arguments.starts_with("AF_UNIX");
    if (call.name == "connect")
      return call.arguments.find("sa_family=AF_UNIX") != std::string::npos;
    if (!call.name.starts_with("open")) return false;
    constexpr std::string_view kQueue = "/Lyrane/TavloDeck/Files/InQueue/";
    const std::size_t queue = call.path.find(kQueue);
    if (queue == std::string::npos) return IsOwnOrSystem(call.path);
    const std::string name = call.path.substr(queue + kQueue.size());
    if (name.empty()) {
      // A scan begins with its folder.
      openedInScan_.clear();
      return step_ == "scan";
    }
    Opened.insert(name);
    // What is opened by its whole path behind a scan is the document that Auto Queue takes.
    const bool byItsFolder = !call.arguments.starts_with("AT_FDCWD");
    if (step_ == "scan" && byItsFolder && !openedInScan_.insert(name).second) {
      OpenedTwiceByAScan.insert(name);
    }
    // A thread reads what plays, and may only be about to open the document of the step before.
    const bool atHand = step_ == "scan" || step_ == name || before_ == name;
    return name.find('/') == name.npos && atHand;
  }

  /// What a toolkit and a sound library read for themselves, and what the deck keeps in its root.
  static bool IsOwnOrSystem(const std::string& path) {
    if (path.find("/../") != path.npos) return false;
    for (const std::string_view folder :
         {"/usr/", "/lib/", "/etc/", "/proc/", "/sys/", "/dev/", "/var/cache/fontconfig/"}) {
      if (path.starts_with(folder)) return true;
    }
    // One of the retrieval's passes lists the folder that the process works in.
    if (path == fs::current_path().string() + "/.") return true;
    return path.find("/Lyrane/TavloDeck") != path.npos;
  }

  std::string step_;
  std::string before_;
  std::set<std::string> openedInScan_;
};

/// The wait status of a command whose system calls were written to a file.
int RunListenedTo(const std::vector<std::string>& command, const std::string& logPath) {
  std::string words;
  for (const std::string& word : ListenedTo(command, logPath)) words += word + " ";
  return RunShell(words);
}

TEST(WatchOverADeck, NoticesAFileThatIsNotTheOneOfItsStep) {
  const TemporaryFolder desk;
  const std::string bait = desk.Write("bait.wav", "bait");
  ASSERT_GE(RunListenedTo({"cat", "/tavlo-mark/sound.wav", bait, "2>/dev/null"}, desk / "calls"),
            0);
  Watch watch;
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

  Watch watch;
  for (const SystemCall& call : ReadSystemCalls(desk / "calls")) watch.Take(call);
  EXPECT_EQ(watch.Opened.size(), kDocuments) << "the listener missed some, or more was opened";
  EXPECT_EQ(watch.OpenedTwiceByAScan, std::set<std::string>());
  EXPECT_EQ(watch.Offences, std::vector<std::string>());
  EXPECT_FALSE(fs::exists(desk / "bait.wav"));
}

}  // namespace
}  // namespace tavlo::test
