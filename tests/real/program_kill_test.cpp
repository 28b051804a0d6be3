#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;

using Button = forms::Command forms::MainForm::*;

/// Plays the one document of the Queue to its end and presses the button; `moment` is told before.
void FinishDocument(DrivenProgram& program, Button button, int moment) {
  const auto press = [&](Button which) { program.Do([&] { (program.Main().*which).Press(); }); };
  program.Do([&] { program.Windows().splash.picIcon.Click(); });
  ASSERT_TRUE(Until([&] { return program.IsReady(); }));
  program.Do([&] { program.Main().listViewInQueue.RowClick(0); });
  press(&forms::MainForm::cmdPlay);
  press(&forms::MainForm::cmdSkipEnd);
  ASSERT_EQ(::write(moment, "!", 1), 1);
  press(button);
}

/// The program in a process that does as told and is then killed. Several stand on one desktop, so
/// its buttons are pressed from within.
class DoomedProgram {
 public:
  DoomedProgram(const Home& home, Button button) {
    if (::pipe2(moment_.data(), O_CLOEXEC) != 0) return;
    process_ = ::fork();
    if (process_ != 0) return;
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    DrivenProgram program(home);
    program.Run([&] { FinishDocument(program, button, moment_[1]); });
    ::_exit(0);
  }
  ~DoomedProgram() {
    Kill();
    ::close(moment_[0]);
    ::close(moment_[1]);
  }
  DoomedProgram(const DoomedProgram&) = delete;

  /// Returns when the button is about to be pressed.
  bool AwaitMoment() {
    pollfd look{.fd = moment_[0], .events = POLLIN};
    return ::poll(&look, 1, kManyLooks * 20) == 1;
  }
  void Kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    process_ = -1;
  }

 private:
  std::array<int, 2> moment_{-1, -1};
  pid_t process_ = -1;
};

/// Some minutes of sound: enough for a copy to take a while.
const std::string& LongDocument() {
  static const std::string bytes = WaveBytes(Chirp(44'100 * 200, 44'100));
  return bytes;
}

/// How many whole documents a list would show; fails the test for one that is not whole.
int WholeDocuments(const fs::path& folder) {
  int whole = 0;
  std::error_code missing;
  for (const auto& entry : fs::directory_iterator(folder, missing)) {
    if (entry.path().filename().string().starts_with(".")) continue;
    const bool equal = ReadFile(entry.path().string()) == LongDocument();
    EXPECT_TRUE(equal) << entry.path();
    if (equal) ++whole;
  }
  return whole;
}

struct Trial {
  Trial(Button pressed, std::optional<std::chrono::microseconds> wait)
      : button(pressed), delay(wait) {}

  /// The Queue folder has no document any more.
  bool QueueIsEmpty() const { return fs::is_empty(home.QueuePath()); }

  const Button button;
  /// How long after the press the program is killed; nothing where it has time enough.
  const std::optional<std::chrono::microseconds> delay;
  Home home;
  /// Where this trial's Completed folder really lies: on a file system of its own, so that
  /// the document is copied there.
  TemporaryFolder completed{"/dev/shm"};
};

TEST(ProgramThatIsKilled, LosesNoDictationOfASaveOrAComplete) {
  SoundServer server;
  ASSERT_TRUE(server.Start());
  const unsigned seed = std::random_device{}();
  SCOPED_TRACE("seed " + std::to_string(seed));
  std::mt19937 dice(seed);
  std::vector<std::unique_ptr<Trial>> trials;
  const auto add = [&](Button button, std::optional<std::chrono::microseconds> delay) {
    trials.push_back(std::make_unique<Trial>(button, delay));
    const Trial& trial = *trials.back();
    trial.home.MakeRoot({{"AutoPreview", "0"}, {"AudioPromptsFlag", "N"}});
    trial.home.AddToQueue(DocumentName("Brown"), LongDocument());
    fs::create_directory_symlink(trial.completed.Path(), trial.home.CompletedPath());
  };
  add(&forms::MainForm::cmdSave, std::chrono::microseconds(dice() % 4'000));
  for (int i = 0; i < 4; ++i) {
    add(&forms::MainForm::cmdComplete, std::chrono::microseconds(dice() % 60'000));
  }
  // One has time enough, and shows that the others were really at it.
  add(&forms::MainForm::cmdComplete, {});

  std::vector<std::unique_ptr<DoomedProgram>> programs;
  for (const auto& trial : trials) {
    programs.push_back(std::make_unique<DoomedProgram>(trial->home, trial->button));
  }
  std::vector<std::thread> killers;
  for (std::size_t i = 0; i < trials.size(); ++i) {
    killers.emplace_back([&, i] {
      EXPECT_TRUE(programs[i]->AwaitMoment());
      if (trials[i]->delay) {
        std::this_thread::sleep_for(*trials[i]->delay);
      } else {
        EXPECT_TRUE(Until([&] { return trials[i]->QueueIsEmpty(); }));
      }
      programs[i]->Kill();
    });
  }
  for (std::thread& killer : killers) killer.join();
  for (const auto& trial : trials) {
    SCOPED_TRACE(trial->delay ? trial->delay->count() : -1);
    EXPECT_GE(WholeDocuments(trial->home.QueuePath()) + WholeDocuments(trial->completed.Path()), 1);
  }
  EXPECT_EQ(WholeDocuments(trials.back()->home.QueuePath()), 0);
  EXPECT_EQ(WholeDocuments(trials.back()->completed.Path()), 1);
}

}  // namespace
}  // namespace tavlo::test
