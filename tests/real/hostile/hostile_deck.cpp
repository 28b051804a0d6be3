#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <map>
#include <thread>

#include "hostile/hostile_run.h"
#include "hostile/mutations.h"
#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_files.h"

/// The real program with a Queue of mutants: they are listed, each is primed and played, and some
/// are clicked in the window and put in work. Says in a report what it has seen.
///
///     hostile_deck ORIGINALS SCRIPT REPORT
///
/// ORIGINALS is a folder of sound files, SCRIPT a file whose text is put into some of them. Before
/// each step the program asks for a file that does not exist, so that whoever listens to its system
/// calls knows which document the next ones may open.
namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
namespace column = forms::document_column;

constexpr int kDocuments = 2000;
constexpr unsigned kSeed = 20'040'309;
/// Of the documents so many, evenly picked, are also clicked in the window.
constexpr int kClicked = 200;
/// Of those that sounded after a click, so many are put in work.
constexpr int kWorkedOn = 10;

/// The script of a run, and what it saw.
class Run {
 public:
  Run(const Home& home, Mutations mutations) : home_(home), mutations_(std::move(mutations)) {}

  void Script(DrivenProgram& program) {
    if (!program.Begin()) return;
    FillQueue();
    for (int scan = 0; scan < 2; ++scan) {
      Mark("scan");
      Refresh(program);
    }
    const std::vector<std::string> names = program.Ask([&] { return Listed(program); });
    Seen["rows"] = std::ssize(names);
    for (const std::string& name : names) Prime(program, name);
    Settle(program);
    for (std::size_t at = 0; at < names.size(); at += kDocuments / kClicked) {
      Click(program, names[at]);
    }
    Settle(program);
    Mark("exit");
    program.Exit();
  }

  void CountWhole() {
    for (const auto& [name, made] : made_) {
      std::ifstream file(home_.QueuePath() + "/" + name, std::ios::binary);
      std::string now(made.size, '\0');
      file.read(now.data(), std::ssize(now));
      if (file && std::hash<std::string>()(now) == made.hash) ++Seen["whole"];
    }
  }

  std::map<std::string, long> Seen{
      {"rows", 0},    {"primed", 0},    {"empty", 0},    {"unplayable", 0}, {"played", 0},
      {"refused", 0}, {"clicked", 0},   {"boxes", 0},    {"sounded", 0},    {"worked", 0},
      {"whole", 0},   {"refreshMs", 0}, {"longestMs", 0}};
  std::string Slowest;

 private:
  void FillQueue() {
    for (int i = 0; i < kDocuments; ++i) {
      const Mutant mutant = mutations_.Next();
      const std::string path = home_.AddToQueue(mutant.name, mutant.bytes);
      if (mutant.size > mutant.bytes.size()) {
        fs::resize_file(path, mutant.size);
        fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
      }
      made_[mutant.name] = {mutant.bytes.size(), std::hash<std::string>()(mutant.bytes)};
    }
  }

  static std::vector<std::string> Listed(DrivenProgram& program) {
    const forms::Table& list = program.Main().listViewInQueue;
    std::vector<std::string> names;
    for (int row = 0; row < std::ssize(list.Rows()); ++row) {
      names.push_back(list.TextAt(row, column::FileName));
    }
    return names;
  }

  void Refresh(DrivenProgram& program) {
    const auto done = Post([this, &program] {
      const long before = ComputedMilliseconds();
      program.Main().cmdUpdateFileList.Press();
      Seen["refreshMs"] = std::max(Seen["refreshMs"], ComputedMilliseconds() - before);
    });
    EXPECT_TRUE(Until([&] { return done->load(); }));
  }

  /// What a click does with a document, without the window: every one of them goes this way.
  void Prime(DrivenProgram& program, const std::string& name) {
    program.Do([&] {
      playback::AudioEngine& engine = program.Rooms().engine;
      Mark(name);
      const long before = ComputedMilliseconds();
      engine.StopPlay();
      engine.CloseFile();
      program.Rooms().documentInWork.CurrentDocumentPath = home_.QueuePath() + "/" + name;
      Count(engine.Prime());
      if (engine.HoldsDocument()) {
        program.Rooms().documentInWork.CurrentSamplePosition =
            program.Rooms().documentInWork.FileLength / 2;
        engine.StartPlay();
        Seen["played"] += engine.IsPlaying ? 1 : 0;
      }
      Weigh(ComputedMilliseconds() - before, name);
    });
  }

  void Count(playback::Primed primed) {
    ++Seen[primed == playback::Primed::Yes          ? "primed"
           : primed == playback::Primed::Empty      ? "empty"
           : primed == playback::Primed::Refused    ? "refused"
           : primed == playback::Primed::OutOfReach ? "out of reach"
                                                    : "unplayable"];
  }

  void Click(DrivenProgram& program, const std::string& name) {
    const int row = program.RowOf(name);
    const auto done = Post([&program, row, name] {
      Mark(name);
      program.Main().listViewInQueue.RowClick(row);
    });
    EXPECT_TRUE(Until([&] { return done->load() || !program.Box().empty(); })) << name;
    ++Seen["clicked"];
    if (CloseBox(program)) ++Seen["boxes"];
    EXPECT_TRUE(Until([&] { return done->load(); })) << name;
    if (!program.Ask([&] { return program.Rooms().engine.IsPlaying; })) return;
    ++Seen["sounded"];
    if (Seen["worked"] < kWorkedOn) WorkOn(program, name);
  }

  void WorkOn(DrivenProgram& program, const std::string& name) {
    forms::MainForm& form = program.Main();
    program.Do([&] { form.cmdPlay.Press(); });
    program.Do([&] {
      form.slPosition.Press();
      form.slPosition.Change(form.slPosition.Bounds.maximum / 2);
      form.slPosition.Release();
    });
    std::this_thread::sleep_for(20ms);
    // A skip lists the Queue again.
    const auto done = Post([&form] {
      Mark("scan");
      form.cmdSkip.Press();
    });
    EXPECT_TRUE(Until([&] { return done->load() || !program.Box().empty(); })) << name;
    CloseBox(program);
    EXPECT_TRUE(Until([&] { return done->load() && program.IsReady(); })) << name;
    ++Seen["worked"];
  }

  void Settle(DrivenProgram& program) {
    program.Do([&] {
      program.Rooms().engine.StopPlay();
      program.Rooms().engine.CloseFile();
    });
  }

  void Weigh(long milliseconds, const std::string& name) {
    if (milliseconds <= Seen["longestMs"]) return;
    Seen["longestMs"] = milliseconds;
    Slowest = name;
  }

  /// What was put into the Queue, to be known again.
  struct Made {
    std::size_t size;
    std::size_t hash;
  };

  const Home& home_;
  Mutations mutations_;
  std::map<std::string, Made> made_;
};

}  // namespace

int RunHostileDeck(const std::string& originals, const std::string& script,
                   const std::string& report) {
  const Home home;
  home.MakeRoot({{"AutoPreview", "5"}});
  Run run(home, Mutations(ReadOriginals(originals), ReadFile(script), kSeed));
  DrivenProgram program(home);
  const int status = program.Run([&] { run.Script(program); });
  run.CountWhole();
  run.Seen["peakKilobytes"] = PeakKilobytes();
  std::ofstream out(report);
  for (const auto& [what, count] : run.Seen) out << what << ' ' << count << '\n';
  std::printf("slowest: %s\n", run.Slowest.c_str());
  const bool failed = testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed();
  return status == 0 && !failed ? 0 : 1;
}

}  // namespace tavlo::test

int main(int argc, char** argv) {
  if (argc != 4) return 2;
  return tavlo::test::RunHostileDeck(argv[1], argv[2], argv[3]);
}
