#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/inotify.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <thread>

#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
namespace column = forms::document_column;

constexpr std::size_t kMostBytesOfAName = 255;

/// A file and a port of this machine that a document may name and that must not be touched for it.
class Bait {
 public:
  Bait() : path_(folder_.Write("bait.wav", WaveBytes(Chirp(8000, 8000)))) {
    watch_ = ::inotify_init1(IN_CLOEXEC);
    ::inotify_add_watch(watch_, path_.c_str(), IN_OPEN | IN_ACCESS);
    port_ = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{.sin_family = AF_INET};
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    ::bind(port_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    ::listen(port_, 8);
    socklen_t size = sizeof address;
    ::getsockname(port_, reinterpret_cast<sockaddr*>(&address), &size);
    url_ = "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/bait.wav";
  }
  ~Bait() {
    ::close(watch_);
    ::close(port_);
  }
  Bait(const Bait&) = delete;

  std::string Playlist() const {
    return "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\nfile://" + path_ + "\n#EXTINF:9,\n" +
           url_ + "\n#EXT-X-ENDLIST\n";
  }
  std::string Concatenation() const {
    return "ffconcat version 1.0\nfile '" + path_ + "'\nfile '" + url_ + "'\n";
  }
  bool WasRead() const { return IsReady(watch_); }
  bool WasCalled() const { return IsReady(port_); }

 private:
  static bool IsReady(int handle) {
    pollfd look{.fd = handle, .events = POLLIN};
    return ::poll(&look, 1, 0) > 0;
  }

  const TemporaryFolder folder_;
  const std::string path_;
  std::string url_;
  int watch_ = -1;
  int port_ = -1;
};

/// A file that comes and goes as fast as the disk lets it.
class Flicker {
 public:
  explicit Flicker(std::string path)
      : path_(std::move(path)), bytes_(WaveBytes(Chirp(800, 8000))), thread_([this] { Run(); }) {}
  ~Flicker() {
    over_ = true;
    thread_.join();
  }
  Flicker(const Flicker&) = delete;

 private:
  void Run() {
    while (!over_) {
      WriteFile(path_, bytes_);
      fs::remove(path_);
    }
  }

  const std::string path_;
  const std::string bytes_;
  std::atomic<bool> over_ = false;
  std::thread thread_;
};

enum class Answer { Sound, Box, Silence };

/// The documents of the Queue that stand still, each with what a click on it must give.
std::map<std::string, Answer> FillQueue(const Home& home, const Bait& bait) {
  const std::string good = WaveBytes(Chirp(16000, 8000));
  const std::string head = good.substr(0, 44);
  std::string longest = DocumentName("Brown");
  longest.insert(longest.find(" 0 0_.wav"), std::string(kMostBytesOfAName - longest.size(), 'x'));
  std::string claim = head + std::string(100, '\0');
  claim.replace(4, 4, 4, '\xFF').replace(40, 4, 4, '\xFF');
  const std::map<std::string, std::pair<std::string, Answer>> documents{
      {longest, {good, Answer::Sound}},
      {"not \xFF\xFE text.wav", {good, Answer::Sound}},
      {"two\nlines.wav", {good, Answer::Sound}},
      {"empty.wav", {"", Answer::Box}},
      {"byte.wav", {"R", Answer::Box}},
      {"cut.wav", {head.substr(0, 20), Answer::Box}},
      {"head.wav", {head, Answer::Silence}},
      {"claim.wav", {claim, Answer::Sound}},
      {"text.wav", {"#!/bin/sh\nrm -rf /nowhere\n", Answer::Box}},
      {"playlist.wav", {bait.Playlist(), Answer::Box}},
      {"playlist.avi", {bait.Playlist(), Answer::Box}},
      {"concat.avi", {bait.Concatenation(), Answer::Box}},
  };
  std::map<std::string, Answer> answers;
  for (const auto& [name, document] : documents) {
    home.AddToQueue(name, document.first);
    answers[name] = document.second;
  }
  return answers;
}

/// What stands in the folder and is no document.
void AddWhatIsNoFile(const Home& home) {
  fs::create_directory(home.QueuePath() + "/folder.wav");
  ASSERT_EQ(::mkfifo((home.QueuePath() + "/pipe.wav").c_str(), 0666), 0);
  fs::create_symlink("/nowhere/at/all.wav", home.QueuePath() + "/link.wav");
}

/// Has the list made anew, and waits until it stands.
void Refresh(DrivenProgram& program) {
  const auto rows = [&] { return program.Main().listViewInQueue.RowsVersion(); };
  const unsigned before = program.Ask(rows);
  program.Keys({keys::kF5});
  ASSERT_TRUE(program.Until([&] { return rows() != before; }));
  ASSERT_TRUE(Until([&] { return program.IsReady(); }));
}

/// Looks in every pass of the program's loop whether a document plays, and so sees the shortest
/// sound, which ends some passes after its begin. Made and destroyed on the program's thread.
class Ear {
 public:
  Ear(DrivenProgram& program, const std::string& name)
      : tick_(program.Loop(), "ear", 1ms, base::TimerKind::Feed) {
    tick_.OnTick = [this, &program, name] { Heard = Heard || Sounds(program.Rooms(), name); };
    tick_.Start();
  }

  static bool Sounds(shell::Rooms& rooms, const std::string& name) {
    return rooms.opening.SelectedQueueFile == name && rooms.engine.IsPlaying;
  }

  bool Heard = false;

 private:
  base::Timer tick_;
};

Answer AnswerTo(DrivenProgram& program, const std::string& name) {
  std::unique_ptr<Ear> ear;
  program.Do([&] { ear = std::make_unique<Ear>(program, name); });
  program.ClickRow(program.RowOf(name));
  // The click yields once while the pause is up; what it gives stands when that is over.
  const auto answered = [&] {
    shell::Rooms& rooms = program.Rooms();
    return rooms.opening.SelectedQueueFile == name && rooms.mainWindow.guards.ListsMayChange();
  };
  EXPECT_TRUE(Until([&] { return program.Box() != "" || program.Ask(answered); }));
  const bool sounded =
      program.Ask([&] { return ear->Heard || Ear::Sounds(program.Rooms(), name); });
  program.Do([&] { ear.reset(); });
  if (sounded) return Answer::Sound;
  if (program.Box().empty()) return Answer::Silence;
  EXPECT_EQ(program.AnswerBox(),
            "Tavlo Deck - Unrecognized Audio Format: This file can not be played.\nYou may press "
            "Complete to remove it from the queue.");
  return Answer::Box;
}

std::map<std::string, std::string> Documents(const Home& home) {
  auto all = home.Everything();
  std::erase_if(all,
                [](const auto& entry) { return entry.first.find("/Files/") == entry.first.npos; });
  return all;
}

TEST(ProgramWithAHostileQueue, ListsIsClickedThroughAndEndsAndTouchesNothing) {
  SoundServer server;
  ASSERT_TRUE(server.Start());
  const Home home;
  home.MakeRoot({{"AutoPreview", "5"}});
  const Bait bait;
  const auto documents = FillQueue(home, bait);
  AddWhatIsNoFile(home);
  const std::string flickering = home.QueuePath() + "/flicker.wav";
  DrivenProgram program(home);
  std::map<std::string, std::string> before;
  const int status = program.Run([&] {
    ASSERT_TRUE(program.Begin());
    before = Documents(home);
    {
      const Flicker flicker(flickering);
      for (int refresh = 0; refresh < 3; ++refresh) {
        Refresh(program);
        EXPECT_EQ(program.Box(), "");
      }
    }
    Refresh(program);
    EXPECT_EQ(program.Ask([&] { return program.Main().listViewInQueue.Rows().size(); }),
              documents.size());
    for (const auto& [name, answer] : documents) {
      SCOPED_TRACE(name);
      ASSERT_GE(program.RowOf(name), 0);
      EXPECT_EQ(AnswerTo(program, name), answer);
    }
    program.Exit();
  });
  EXPECT_EQ(status, 0);
  EXPECT_FALSE(bait.WasRead());
  EXPECT_FALSE(bait.WasCalled());
  EXPECT_EQ(Documents(home), before);
}

}  // namespace
}  // namespace tavlo::test
