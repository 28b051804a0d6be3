#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <regex>

#include "hostile/hostile_run.h"
#include "hostile/mutations.h"
#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_files.h"

/// The real program with mutants in its drop folders: they are retrieved, converted or refused,
/// listed and heard. Says in a report what it has seen.
///
///     hostile_intake ORIGINALS SCRIPT REPORT COUNT
///
/// As hostile_deck, with so many files. None comes twice, and none is lost.
namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr unsigned kSeed = 20'040'312;
/// One in so many rows of the Import list is also clicked.
constexpr std::size_t kEveryClicked = 20;
/// A name with the number of a sort, and with a claim before it, still has to fit.
constexpr std::size_t kLongestName = 200;

/// Weighs what the whole process computes for each file that it has claimed. A telephone recording
/// that has its header already is copied, so each megabyte may cost a millisecond.
class ClaimScale {
 public:
  ClaimScale(DrivenProgram& program, std::vector<std::string> folders)
      : folders_(std::move(folders)), tick_(program.Loop(), "scale", 20ms, base::TimerKind::Feed) {
    tick_.OnTick = [this] { Look(); };
    tick_.Start();
  }

  long Longest = 0;

 private:
  void Look() {
    const std::string claimed = Claimed();
    if (claimed != claimed_) begun_ = ComputedMillisecondsOfAll();
    claimed_ = claimed;
    if (claimed.empty()) return;
    std::error_code gone;
    const auto size = fs::file_size(claimed, gone);
    const long allowed = gone ? 0 : static_cast<long>(size / 1'000'000);
    Longest = std::max(Longest, ComputedMillisecondsOfAll() - begun_ - allowed);
  }
  std::string Claimed() const {
    for (const std::string& folder : folders_) {
      for (const auto& entry : fs::directory_iterator(folder)) {
        const std::string name = entry.path().filename();
        if (name.starts_with(".TavloClaim ")) return entry.path();
      }
    }
    return {};
  }

  const std::vector<std::string> folders_;
  std::string claimed_;
  long begun_ = 0;
  base::Timer tick_;
};

/// The script of a run, and what it saw.
class Intake {
 public:
  Intake(const Home& home, Mutations mutations, int files)
      : home_(home), mutations_(std::move(mutations)), files_(files) {
    for (const char* folder : {"dS2Queue", "eU2Queue", "eW2Queue", "FtpQueue", "ImportQueue"}) {
      fs::create_directories(Files(folder));
    }
  }

  void Script(DrivenProgram& program) {
    if (!program.Begin()) return;
    program.Do([&] {
      scale_ = std::make_unique<ClaimScale>(
          program, std::vector{Files("dS2Queue"), Files("eU2Queue"), Files("ImportQueue")});
    });
    Deliver();
    Mark("scan");
    Press(program, program.Main().cmdUpdateFileList);
    PutAsideWhatWasRefused();
    Press(program, program.Main().mnuViewImport);
    program.Do([&] {
      Seen["convertMs"] = scale_->Longest;
      scale_.reset();
    });
    PrimeAll(program, Files("ImportQueue"), Names(program, program.Main().listViewImport, 1));
    PrimeAll(program, home_.QueuePath(),
             Names(program, program.Main().listViewInQueue, forms::document_column::FileName));
    ClickSome(program);
    Settle(program);
    Mark("exit");
    Press(program, program.Main().mnuViewQueue);
    program.Do([&] { program.Loop().Quit(0); });
  }

  /// A file stands whole in one of the folders, or as the wave that was made of it.
  void CountWhole() {
    for (const auto& [name, made] : made_) {
      const bool whole = std::ranges::any_of(PlacesOf(name), [&](const auto& place) {
        return HoldsAt(place.path, place.front, made);
      });
      const bool converted = !whole && fs::exists(WaveOf(name));
      ++Seen[whole ? "whole" : converted ? "converted" : "lost"];
      if (!whole && !converted) std::printf("lost: %s\n", name.c_str());
    }
  }

  std::map<std::string, long> Seen{{"boxes", 0},   {"rows", 0},      {"primed", 0},
                                   {"clicked", 0}, {"whole", 0},     {"converted", 0},
                                   {"lost", 0},    {"longestMs", 0}, {"convertMs", 0}};
  std::string Slowest;

 private:
  struct Made {
    std::size_t size;
    std::size_t hash;
  };
  struct Place {
    std::string path;
    std::size_t front = 0;  ///< Bytes that a header takes.
  };

  std::string Files(const std::string& folder) const { return home_.Root() + "/Files/" + folder; }
  std::string FolderFor(const std::string& name) {
    for (const char* kind : {"dS2", "eU2", "eW2"}) {
      if (name.ends_with(std::string(".") + kind)) return Files(std::string(kind) + "Queue");
    }
    return Files(made_.size() % 2 == 0 ? "FtpQueue" : "ImportQueue");
  }
  void Deliver() {
    for (int i = 0; i < files_; ++i) {
      const Mutant mutant = mutations_.Next();
      std::string name = mutant.name;
      if (name.size() > kLongestName) {
        name = name.substr(0, kLongestName) + name.substr(name.rfind('.'));
      }
      const std::string path = FolderFor(name) + "/" + name;
      WriteFile(path, mutant.bytes);
      if (mutant.size > mutant.bytes.size()) fs::resize_file(path, mutant.size);
      fs::last_write_time(path, fs::file_time_type::clock::now() - std::chrono::hours(1));
      made_[name] = {mutant.bytes.size(), std::hash<std::string>()(mutant.bytes)};
    }
  }

  /// Answers each box with OK until what the command does is over.
  void Press(DrivenProgram& program, forms::Command& command) {
    const auto done = Post([&command] { command.Press(); });
    // As long as boxes come it goes on.
    while (Until([&] { return done->load() || !program.Box().empty(); }) && !done->load()) {
      if (CloseBox(program)) ++Seen["boxes"];
    }
    EXPECT_TRUE(done->load()) << program.Box();
  }
  /// It would be refused at each retrieval.
  void PutAsideWhatWasRefused() {
    fs::create_directories(home_.Path() + "/refused");
    for (const char* folder : {"dS2Queue", "eU2Queue"}) {
      for (const auto& entry : fs::directory_iterator(Files(folder))) {
        fs::rename(entry.path(), Refused(entry.path().filename()));
      }
    }
  }
  std::string Refused(const std::string& name) const { return home_.Path() + "/refused/" + name; }

  static std::vector<std::string> Names(DrivenProgram& program, const forms::Table& list,
                                        int column) {
    return program.Ask([&] {
      std::vector<std::string> names;
      for (int row = 0; row < std::ssize(list.Rows()); ++row) {
        names.push_back(list.TextAt(row, column));
      }
      return names;
    });
  }

  void PrimeAll(DrivenProgram& program, const std::string& folder,
                const std::vector<std::string>& names) {
    Seen["rows"] += std::ssize(names);
    for (const std::string& name : names) Prime(program, folder + "/" + name, name);
    Settle(program);
  }
  void Prime(DrivenProgram& program, const std::string& path, const std::string& name) {
    program.Do([&] {
      playback::AudioEngine& engine = program.Rooms().engine;
      Mark(name);
      const long before = ComputedMilliseconds();
      engine.StopPlay();
      engine.CloseFile();
      program.Rooms().documentInWork.CurrentDocumentPath = path;
      Seen["primed"] += engine.Prime() == playback::Primed::Yes ? 1 : 0;
      if (engine.HoldsDocument()) engine.StartPlay();
      Weigh(ComputedMilliseconds() - before, name);
    });
  }
  void ClickSome(DrivenProgram& program) {
    const forms::Table& list = program.Main().listViewImport;
    const std::vector<std::string> names = Names(program, list, forms::import_column::FileName);
    for (std::size_t row = 0; row < names.size(); row += kEveryClicked) {
      const auto done = Post([&program, row, &names] {
        Mark(names[row]);
        program.Main().listViewImport.RowClick(static_cast<int>(row));
      });
      EXPECT_TRUE(Until([&] { return CloseBox(program) || done->load(); })) << names[row];
      EXPECT_TRUE(Until([&] { return done->load(); })) << names[row];
      ++Seen["clicked"];
    }
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

  static std::string Renamed(const std::string& name, const std::string& ending) {
    return name.substr(0, name.size() - 4) + ending;
  }
  /// Where the file itself may have come.
  std::vector<Place> PlacesOf(const std::string& name) {
    constexpr std::size_t kHeader = 58;
    if (name.ends_with(".eW2")) return {{home_.QueuePath() + "/" + Renamed(name, ".wav")}};
    if (name.ends_with(".dS2")) return {{Refused(name)}};
    if (name.ends_with(".eU2")) {
      const std::string wave = home_.QueuePath() + "/" + Renamed(name, ".wav");
      return {{wave}, {wave, kHeader}, {Refused(name)}};
    }
    if (inImport_.empty()) ListImport();
    return {{inImport_[name]}};
  }
  /// A name that came by FTP has the number of its sort in it.
  void ListImport() {
    const std::regex number("_[0-9]{8,16}\\.");
    for (const auto& entry : fs::directory_iterator(Files("ImportQueue"))) {
      inImport_[std::regex_replace(entry.path().filename().string(), number, ".")] = entry.path();
    }
  }
  std::string WaveOf(const std::string& name) {
    if (name.ends_with(".dS2")) return home_.QueuePath() + "/" + Renamed(name, ".wav");
    return inImport_[Renamed(name, ".wav")];
  }
  static bool HoldsAt(const std::string& path, std::size_t front, const Made& made) {
    std::ifstream file(path, std::ios::binary);
    std::string now(made.size, '\0');
    file.seekg(static_cast<std::streamoff>(front));
    file.read(now.data(), std::ssize(now));
    return file && std::hash<std::string>()(now) == made.hash;
  }

  const Home& home_;
  Mutations mutations_;
  const int files_;
  std::map<std::string, Made> made_;
  std::map<std::string, std::string> inImport_;
  std::unique_ptr<ClaimScale> scale_;
};

int RunHostileIntake(const std::string& originals, const std::string& script,
                     const std::string& report, int files) {
  const Home home;
  home.MakeRoot({{"AutoPreview", "5"}});
  Intake run(home, Mutations(ReadOriginals(originals), ReadFile(script), kSeed), files);
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

}  // namespace
}  // namespace tavlo::test

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  return tavlo::test::RunHostileIntake(argv[1], argv[2], argv[3], std::atoi(argv[4]));
}
