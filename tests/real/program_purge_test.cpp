#include <gtest/gtest.h>
#include <sys/stat.h>

#include <QAbstractEventDispatcher>
#include <QObject>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "lists/completed_purge.h"
#include "support/driven_program.h"
#include "support/effort.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Names = std::set<std::string>;

constexpr int kDocuments = 20'000;
constexpr int kMostInARun = lists::CompletedPurge::kMostNamesInARun;
/// Of processor time; a paint waits no longer than that.
constexpr auto kLongestStretch = 20ms;

/// All of the year 2004.
std::string OldDocument(int number) {
  const auto text = [](int n) { return std::to_string(n); };
  return "0007 0 Brown " + text(1 + number) + " " + text(1 + number * 7 % 12) + " " +
         text(1 + number * 11 % 28) + " 2004 " + text(number * 5 % 24) + " " +
         text(number * 13 % 60) + " 0 2 0 17 cardio 0 0_.wav";
}

/// None of these holds to the grammar, or tells of a day that exists.
Names MalformedNames() {
  const std::string good = OldDocument(0);
  const auto with = [&](const std::string& part, const std::string& other) {
    return std::string(good).replace(good.find(part), part.size(), other);
  };
  return {"letter.dss",
          " ",
          "_.wav",
          "\xFF\xFE.wav",
          "line\nbreak.wav",
          std::string(255, 'x'),
          std::string(15, ' ') + "_.wav",
          with(" 1 1 2004", " 2 31 2004"),
          with(" 1 1 2004", " 13 1 2004"),
          with(" 1 1 2004", " 1 1 99999999999999999999"),
          with(" 1 1 2004 0", " 1 1 2004 -1"),
          with(" 1 1 2004 0", " 1 1 2004 "),
          with("_.wav", "_ 7 0 0.wav"),
          with("cardio", "two words"),
          with("0_.wav", "X_.wav")};
}

/// While `Begin` and `End` hold it open: how often the program's thread looks at the desktop's
/// events, and the most that it computes between two looks.
class Attention : public QObject {
 public:
  Attention() {
    connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake, this,
            [this] { Look(); });
  }
  void Begin() { sinceLast_.emplace(); }
  void End() {
    Look();
    sinceLast_.reset();
  }

  int Looks = 0;
  std::chrono::milliseconds LongestStretch{0};

 private:
  void Look() {
    if (!sinceLast_) return;
    ++Looks;
    LongestStretch = std::max(LongestStretch, sinceLast_->Computed());
    sinceLast_.emplace();
  }

  std::optional<Effort> sinceLast_;
};

struct ProgramThatPurges : testing::Test {
  ProgramThatPurges() {
    home.MakeRoot(QuietSettings({{"DeleteCompletedFiles", "22"}}));
    fs::create_directories(home.CompletedPath());
    fs::rename(home.AddToQueue("sound", WaveBytes(Chirp(400, 8000))), sound);
  }

  std::string Completed(const std::string& name) const { return home.CompletedPath() + "/" + name; }
  void Keep(int number) const { fs::create_hard_link(sound, Completed(OldDocument(number))); }

  /// None of these is a plain file that lists show, though the names are those of documents.
  Names KeepUnlisted() const {
    const Names names{"." + OldDocument(0), OldDocument(kDocuments), OldDocument(kDocuments + 1),
                      OldDocument(kDocuments + 2)};
    fs::copy(sound, Completed("." + OldDocument(0)));
    fs::create_directory(Completed(OldDocument(kDocuments)));
    fs::create_symlink(sound, Completed(OldDocument(kDocuments + 1)));
    EXPECT_EQ(::mkfifo(Completed(OldDocument(kDocuments + 2)).c_str(), 0600), 0);
    return names;
  }

  /// In the folder's own order, hidden ones, too.
  std::vector<std::string> Listed() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(home.CompletedPath())) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  Names Kept() const {
    const auto names = Listed();
    return {names.begin(), names.end()};
  }
  /// The documents that stand before the first name that ends a run. Nobody sees the unlisted.
  Names DocumentsBefore(const Names& ends, const Names& unlisted) const {
    Names documents;
    for (const std::string& name : Listed()) {
      if (ends.contains(name)) break;
      if (!unlisted.contains(name)) documents.insert(name);
    }
    return documents;
  }
  /// The names that the log tells of, one of each line.
  Names Told() const {
    std::ifstream log(home.Root() + "/Reports/Tavlo_Deck_Purge_Log.txt");
    Names told;
    for (std::string line; std::getline(log, line);) {
      told.insert(line.substr(std::min(line.size(), line.find(": ") + 2)));
    }
    return told;
  }
  void ExpectThatWhatWentIsTold() const {
    const Names kept = Kept();
    const Names told = Told();
    for (int number = 0; number < kDocuments; ++number) {
      const std::string name = OldDocument(number);
      ASSERT_NE(kept.contains(name), told.contains(name)) << name;
    }
  }

  const Home home;
  const std::string sound = home.Path() + "/sound";
};

/// The box of the missing sound card stands before the purge, which waits for the answer.
bool Begin(DrivenProgram& program) {
  if (!program.Begin()) return false;
  program.AnswerBox();
  return Until([&] { return program.IsReady(); });
}

TEST_F(ProgramThatPurges, TakesAThousandOfTwentyThousandAtItsStartAndLooksUpAllThrough) {
  for (int number = 0; number < kDocuments; ++number) Keep(number);
  DrivenProgram program(home);
  std::optional<Attention> attention;
  auto longest = std::chrono::milliseconds::max();
  int rounds = 0;
  const int status = program.Run([&] {
    ASSERT_TRUE(Begin(program));
    EXPECT_EQ(Kept().size(), std::size_t{kDocuments - kMostInARun});
    ExpectThatWhatWentIsTold();
    program.Do([&] { attention.emplace(); });
    // What else runs on the machine makes the same steps longer now and then.
    for (; rounds < 5 && longest > kLongestStretch; ++rounds) {
      longest = program.Ask([&] {
        attention->LongestStretch = 0ms;
        attention->Begin();
        program.Rooms().completedPurge.PurgeCompletedFiles(22);
        attention->End();
        return attention->LongestStretch;
      });
    }
    const std::size_t left = Kept().size();
    EXPECT_EQ(left, static_cast<std::size_t>(kDocuments - kMostInARun * (1 + rounds)));
    program.Do([&] { program.Main().mnuViewCompleted.Press(forms::By::Hand); });
    EXPECT_TRUE(
        program.Until([&] { return program.Main().listViewCompleted.Rows().size() == left; }));
    program.Do([&] { program.Main().mnuViewQueue.Press(forms::By::Hand); });
    program.Do([&] {
      // One look of each round is that of its end.
      EXPECT_GT(attention->Looks, rounds);
      attention.reset();
    });
    program.Exit();
  });
  EXPECT_EQ(status, 0);
  EXPECT_LE(longest, kLongestStretch) << longest.count() << " ms";
  RecordProperty("longest_stretch_ms", static_cast<int>(longest.count()));
  ExpectThatWhatWentIsTold();
}

TEST_F(ProgramThatPurges, KeepsWhatItCanNotReadTheAgeOfAndAllBehindThat) {
  const Names unlisted = KeepUnlisted();
  // A folder shows what was made first, or last, or anything first.
  for (int number = 0; number < 200; ++number) Keep(number);
  Names malformed = MalformedNames();
  for (const std::string& name : malformed) fs::copy(sound, Completed(name));
  for (int number = 200; number < 400; ++number) Keep(number);
  // Those at its front would end the run before anything has gone.
  for (const std::string& name : Listed()) {
    if (malformed.erase(name) > 0) {
      fs::remove(Completed(name));
    } else if (!unlisted.contains(name)) {
      break;
    }
  }
  const Names doomed = DocumentsBefore(malformed, unlisted);
  ASSERT_FALSE(doomed.empty());
  Names spared = Kept();
  for (const std::string& name : doomed) spared.erase(name);

  DrivenProgram program(home);
  const int status = program.Run([&] {
    ASSERT_TRUE(Begin(program));
    program.Exit();
  });
  EXPECT_EQ(status, 0);
  EXPECT_EQ(Kept(), spared);
  EXPECT_EQ(Told(), doomed);
}

}  // namespace
}  // namespace tavlo::test
