#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "platform/ffmpeg/ffmpeg_audio_file.h"
#include "support/memory_peak.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using platform::FfmpegAudioFile;
using playback::SampleCount;

struct UntrustedSoundTest : testing::Test {
  ScratchFolder folder;
  FfmpegAudioFile file;

  std::string File(const std::string& name, const std::string& bytes) {
    WriteFile(folder / name, bytes);
    return folder / name;
  }
  void ExpectFault(const std::string& path) {
    EXPECT_FALSE(Opens(file, path)) << path;
    EXPECT_EQ(file.OpenStatus(), 0) << path;
    EXPECT_EQ(file.TotalSamples(), 0) << path;
    EXPECT_TRUE(file.ReadArray(100).values.empty()) << path;
  }
};

std::size_t OpenHandles() {
  std::size_t count = 0;
  for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
    ++count;
  return count;
}

TEST_F(UntrustedSoundTest, WhatIsNoSoundIsAFault) {
  ExpectFault(File("empty.wav", ""));
  ExpectFault(File("byte.wav", "R"));
  ExpectFault(File("cut.wav", WaveBytes({1, 2, 3}).substr(0, 20)));
  for (const char* name : {"text.wav", "text.mp3", "text.avi", "text.dss"}) {
    std::string text;
    for (int i = 0; i < 500; ++i) text += "These are minutes of a meeting, not its recording.\n";
    ExpectFault(File(name, text));
  }
  ExpectFault(File("zeros.mp3", std::string(200'000, '\0')));
  ExpectFault(File("ones.mp3", std::string(200'000, '\xFF')));
}

TEST_F(UntrustedSoundTest, LinkIsFollowedAndAFileBeyondTheBoundIsAFaultWhereThatIsAccepted) {
  const std::string sound = File("sound.wav", WaveBytes(std::vector<std::int16_t>(1000, 7)));
  std::filesystem::create_symlink(sound, folder / "link.wav");
  std::filesystem::create_symlink("/dev/zero", folder / "endless.wav");
  ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
  FfmpegAudioFile accepting({}, {.links = platform::Links::Followed, .mostBytes = 4096});
  ASSERT_TRUE(Opens(accepting, folder / "link.wav"));
  EXPECT_EQ(accepting.ReadArray(2000).Samples(), 1000);
  EXPECT_FALSE(Opens(accepting, folder / "endless.wav"));
  EXPECT_FALSE(Opens(accepting, folder / "pipe.wav"));
  EXPECT_FALSE(Opens(accepting, File("long.wav", WaveBytes(std::vector<std::int16_t>(3000, 7)))));
}

TEST_F(UntrustedSoundTest, WhatIsNoPlainFileIsAFault) {
  const std::string sound = File("sound.wav", WaveBytes({1, 2, 3}));
  ASSERT_TRUE(Opens(file, sound));
  ExpectFault(folder.Path());
  ExpectFault(folder / "vanished.wav");
  std::filesystem::create_symlink(sound, folder / "link.wav");
  ExpectFault(folder / "link.wav");
  std::filesystem::create_symlink(folder / "nowhere", folder / "dangling.wav");
  ExpectFault(folder / "dangling.wav");
  ASSERT_EQ(::mkfifo((folder / "pipe.wav").c_str(), 0600), 0);
  ExpectFault(folder / "pipe.wav");
  ExpectFault("/dev/zero");
  ExpectFault("");
  ExpectFault(std::string("sound.wav\0.txt", 14));
}

TEST_F(UntrustedSoundTest, SoundThatBecomesALinkIsAFaultThoughItWasMeasured) {
  const std::string sound = File("sound.wav", WaveBytes({1, 2, 3}));
  ASSERT_TRUE(Opens(file, sound));
  std::filesystem::rename(sound, folder / "moved.wav");
  std::filesystem::create_symlink(folder / "moved.wav", sound);
  ExpectFault(sound);
}

TEST_F(UntrustedSoundTest, NoHandlesLeftIsTroubleOfTheProcessAndPasses) {
  const std::string sound = File("sound.wav", WaveBytes({1, 2, 3}));
  rlimit before{};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
  rlimit none = before;
  none.rlim_cur = 0;
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
  const bool opened = Opens(file, sound);
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &before), 0);
  EXPECT_FALSE(opened);
  EXPECT_LT(file.OpenStatus(), 0);
  EXPECT_TRUE(Opens(file, sound));
  EXPECT_EQ(file.OpenStatus(), 0);
}

/// Opens a document with one handle left, which the document itself takes, and again with enough of
/// them. The status says where it went otherwise than it must.
[[noreturn]] void OpenWithoutAHandleForTheDecoders(const std::string& sound) {
  FfmpegAudioFile file;
  const int next = ::dup(STDIN_FILENO);
  ::close(next);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  rlimit one = before;
  one.rlim_cur = static_cast<rlim_t>(next) + 1;
  ::setrlimit(RLIMIT_NOFILE, &one);
  const bool openedWithout = Opens(file, sound);
  const int status = file.OpenStatus();
  ::setrlimit(RLIMIT_NOFILE, &before);
  if (openedWithout || status >= 0) std::_Exit(1);
  std::_Exit(Opens(file, sound) ? 0 : 2);
}

TEST_F(UntrustedSoundTest, NoHandleForTheDecodersIsTroubleOfTheProcessAndPasses) {
  // A process of its own, for one that has the decoders keeps them.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const std::string sound = folder / "sound.flac";
  WriteFile(folder / "sound.wav", WaveBytes(Chirp(8000, 8000)));
  ASSERT_TRUE(RunFfmpeg("-i " + (folder / "sound.wav") + " " + sound));
  EXPECT_EXIT(OpenWithoutAHandleForTheDecoders(sound), testing::ExitedWithCode(0), "");
}

/// A file and a server that a hostile document names. They must not be touched.
class Bait {
 public:
  explicit Bait(const ScratchFolder& folder) : path_(folder / "bait.wav") {
    WriteFile(path_, WaveBytes(Chirp(8000, 8000)));
    watch_ = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ::inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_ACCESS);
    server_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof(address);
    auto* plain = reinterpret_cast<sockaddr*>(&address);
    EXPECT_EQ(::bind(server_, plain, size), 0);
    ::listen(server_, 8);
    ::getsockname(server_, plain, &size);
    port_ = ntohs(address.sin_port);
  }
  ~Bait() {
    ::close(watch_);
    ::close(server_);
  }
  Bait(const Bait&) = delete;

  const std::string& Path() const { return path_; }
  std::string Url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/x.wav"; }

  /// Whether the file was opened or the server called since the last question.
  bool Touched() {
    char events[4096];
    const bool opened = ::read(watch_, events, sizeof(events)) > 0;
    pollfd caller{server_, POLLIN, 0};
    const bool called = ::poll(&caller, 1, 0) > 0;
    if (called) ::close(::accept(server_, nullptr, nullptr));
    return opened || called;
  }

 private:
  std::string path_;
  int watch_ = -1;
  int server_ = -1;
  int port_ = 0;
};

TEST_F(UntrustedSoundTest, BaitNoticesWhoeverTouchesIt) {
  Bait bait(folder);
  EXPECT_FALSE(bait.Touched());
  ReadFile(bait.Path());
  EXPECT_TRUE(bait.Touched());
  EXPECT_FALSE(bait.Touched());
}

TEST_F(UntrustedSoundTest, SoundThatWasMeasuredIsNotOpenedAgainUntilItIsRead) {
  Bait bait(folder);
  ASSERT_TRUE(Opens(file, bait.Path()));
  EXPECT_TRUE(bait.Touched());
  ASSERT_TRUE(Opens(file, bait.Path()));
  EXPECT_EQ(file.TotalSamples(), 8000);
  EXPECT_FALSE(bait.Touched());
  EXPECT_EQ(file.ReadArray(100).Samples(), 100);
  EXPECT_TRUE(bait.Touched());
}

TEST_F(UntrustedSoundTest, PlaylistUnderAnyNameIsAFaultAndReachesNothing) {
  Bait bait(folder);
  for (const std::string& target :
       {bait.Path(), "file://" + bait.Path(), "concat:" + bait.Path(), bait.Url()}) {
    const std::string hls =
        "#EXTM3U\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:10.0,\n" + target + "\n#EXT-X-ENDLIST\n";
    const std::string concat = "ffconcat version 1.0\nfile '" + target + "'\n";
    const std::string sdp =
        "v=0\no=- 0 0 IN IP4 127.0.0.1\nc=IN IP4 127.0.0.1\nm=audio 5004 RTP/AVP 0\n";
    const std::string dash =
        "<?xml version=\"1.0\"?><MPD><Period><BaseURL>" + target + "</BaseURL></Period></MPD>";
    const std::string m3u = "[playlist]\nFile1=" + target + "\n";
    for (const std::string& list : {hls, concat, sdp, dash, m3u}) {
      for (const char* name : {"list.wav", "list.avi", "list.mp3", "list.m3u8", "list.sdp"})
        ExpectFault(File(name, list));
    }
  }
  EXPECT_FALSE(bait.Touched());
}

TEST_F(UntrustedSoundTest, PlaylistInsideAnAviReachesNothing) {
  Bait bait(folder);
  const std::string avi = folder / "sound.avi";
  WriteFile(folder / "source.wav", WaveBytes(Chirp(16'000, 8000)));
  ASSERT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " -c:a pcm_s16le " + avi));
  const std::string good = ReadFile(avi);
  const std::string list = "#EXTM3U\n#EXT-X-MEDIA-SEQUENCE:0\n#EXTINF:1.0,\n" + bait.Path() +
                           "\n#EXTINF:1.0,\n" + bait.Url() + "\n#EXT-X-ENDLIST\n";
  // A subtitle track that carries its text as a file inside a packet, and that file is a playlist.
  const std::string gab2 = std::string("GAB2\0\x02\0", 7) + Number(2, 4) + std::string(2, '\0') +
                           Number(4, 2) + Number(list.size(), 4) + list;
  const std::size_t movie = good.find("movi") + 4;
  const std::string inside = good.substr(0, movie) + ChunkBytes("01tx", gab2) + good.substr(movie);
  std::string text = good;
  text.replace(text.find("auds"), 4, "txts");
  for (const std::string& bytes : {inside, text, good.substr(0, movie) + list}) {
    if (Opens(file, File("bad.avi", bytes))) ReadAll(file);
  }
  EXPECT_FALSE(bait.Touched());
}

TEST_F(UntrustedSoundTest, MovieThatKeepsItsSoundInAnotherFileReachesNothing) {
  Bait bait(folder);
  const std::string path = folder / "sound.mov";
  WriteFile(folder / "source.wav", WaveBytes(Chirp(16'000, 8000)));
  ASSERT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " -c:a pcm_s16le " + path));
  std::string bytes = ReadFile(path);
  const std::size_t reference = bytes.find("url ");
  ASSERT_NE(reference, std::string::npos);
  // A reference without the mark that says the sound is in this file, then the other's name.
  bytes.replace(reference + 4, 4, std::string(4, '\0'));
  bytes.insert(reference + 8, bait.Path());
  if (Opens(file, File("outside.mov", bytes))) ReadAll(file);
  EXPECT_FALSE(bait.Touched());
}

/// Opens what a document has become and does all that the program may do with it. Whatever comes
/// must keep the promises of the interface.
void UseUp(FfmpegAudioFile& file, const std::string& path) {
  if (!Opens(file, path)) return;
  ASSERT_GE(file.TotalSamples(), 0);
  ASSERT_GE(file.LengthMilliseconds(), 0);
  ASSERT_TRUE(file.ChannelCount() == 1 || file.ChannelCount() == 2);
  ASSERT_TRUE(file.SampleRate() >= 1000 && file.SampleRate() <= 384'000);
  for (const playback::SampleCount target : {file.TotalSamples() / 2, playback::SampleCount{0}}) {
    file.SeekSample(target);
    const playback::SampleArray block = file.ReadArray(4000);
    ASSERT_LE(block.Samples(), 4000);
    for (const float value : block.values) ASSERT_TRUE(value >= -1.0F && value <= 1.0F);
  }
}

class MutatedSoundTest : public UntrustedSoundTest,
                         public testing::WithParamInterface<const char*> {};

TEST_P(MutatedSoundTest, RandomDamageIsRefusedOrPlayedAndNeverMore) {
  const std::string name = GetParam();
  WriteFile(folder / "source.wav", WaveBytes(Chirp(4000, 8000)));
  const std::string options = name == "ima.wav" ? "-c:a adpcm_ima_wav" : "";
  ASSERT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " " + options + " " + (folder / name)));
  const std::string good = ReadFile(folder / name);
  constexpr unsigned kSeed = 20'040'309;
  std::mt19937 random(kSeed);
  const auto upTo = [&](std::size_t end) { return random() % std::max<std::size_t>(end, 1); };
  for (int round = 0; round < 250; ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    std::string bytes = good;
    if (round % 5 == 0) bytes.resize(1 + upTo(bytes.size()));
    // Every other round the damage is in the header, where it does most.
    const std::size_t front =
        round % 2 == 0 ? std::min<std::size_t>(bytes.size(), 128) : bytes.size();
    for (std::size_t i = 0; i <= upTo(8); ++i) bytes[upTo(front)] = static_cast<char>(random());
    if (round % 7 == 0)
      bytes.insert(upTo(front), std::string(upTo(40), static_cast<char>(random())));
    WriteFile(folder / name, bytes);
    UseUp(file, folder / name);
    if (HasFatalFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Kinds, MutatedSoundTest,
                         testing::Values("a.wav", "ima.wav", "a.mp3", "a.flac", "a.avi", "a.m4a",
                                         "a.ogg", "a.wma"));

/// Bytes that this process has read so far.
std::uint64_t BytesRead() {
  std::ifstream figures("/proc/self/io");
  std::string word;
  std::uint64_t bytes = 0;
  while (figures >> word >> bytes && word != "rchar:") {
  }
  return bytes;
}

class HollowSoundTest : public UntrustedSoundTest,
                        public testing::WithParamInterface<const char*> {};

TEST_P(HollowSoundTest, GigabytesOfNothingBehindASoundAreNotReadThrough) {
  const std::string path = folder / GetParam();
  WriteFile(folder / "source.wav", WaveBytes(Chirp(8000, 8000)));
  ASSERT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " " + path));
  std::filesystem::resize_file(path, (std::uintmax_t{1} << 32) + 4096);
  const std::uint64_t before = BytesRead();
  UseUp(file, path);
  constexpr SampleCount kHour = 3600 * 8000;
  for (SampleCount read = 0; read < kHour;) {
    const SampleCount got = file.ReadArray(4000).Samples();
    if (got == 0) break;
    read += got;
  }
  EXPECT_LT((BytesRead() - before) >> 20, 1024U) << "megabytes";
}

INSTANTIATE_TEST_SUITE_P(Kinds, HollowSoundTest,
                         testing::Values("a.mp3", "a.flac", "a.avi", "a.m4a", "a.mov", "a.ogg",
                                         "a.wma", "a.caf", "a.aiff", "a.aac"),
                         [](const auto& kind) { return std::string(kind.param).substr(2); });

TEST_F(UntrustedSoundTest, TableThatClaimsMillionsOfSamplesTakesNoMemoryForThem) {
  const std::string path = folder / "sound.m4a";
  WriteFile(folder / "source.wav", WaveBytes(Chirp(16'000, 8000)));
  ASSERT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " -c:a aac " + path));
  std::string bytes = ReadFile(path);
  const std::string millions{0, '\x7F', '\xFF', '\xFF'};
  // All samples are one byte long, in one run, in one chunk.
  bytes.replace(bytes.find("stsz") + 8, 8, std::string("\0\0\0\1", 4) + millions);
  bytes.replace(bytes.find("stts") + 12, 4, millions);
  bytes.replace(bytes.find("stsc") + 16, 4, millions);
  ForgetPeak();
  const long before = PeakMegabytes();
  UseUp(file, File("millions.m4a", bytes));
  EXPECT_LT(PeakMegabytes() - before, 100);
}

TEST_F(UntrustedSoundTest, NoHandleIsLeftBehind) {
  WriteFile(folder / "source.wav", WaveBytes(Chirp(4000, 8000)));
  std::vector<std::string> paths{folder / "source.wav", File("bad.wav", "RIFF....WAVEfmt "),
                                 folder.Path()};
  for (const char* name : {"a.mp3", "a.flac", "a.avi"}) {
    ASSERT_TRUE(RunFfmpeg("-i " + (folder / "source.wav") + " " + (folder / name)));
    paths.push_back(folder / name);
  }
  paths.push_back(File("cut.flac", ReadFile(folder / "a.flac").substr(0, 60)));
  file.CloseFile();
  const std::size_t before = OpenHandles();
  for (int i = 0; i < 1000; ++i) {
    FfmpegAudioFile fresh;
    if (Opens(fresh, paths[static_cast<std::size_t>(i) % paths.size()])) fresh.ReadArray(10);
    if (Opens(file, paths[static_cast<std::size_t>(i) % paths.size()])) file.ReadArray(10);
  }
  file.CloseFile();
  EXPECT_EQ(OpenHandles(), before);
}

}  // namespace
}  // namespace tavlo::test
