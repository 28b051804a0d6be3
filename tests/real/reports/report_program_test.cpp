#include <gtest/gtest.h>
#include <sched.h>
#include <sys/mount.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "reports/noted_start.h"
#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

std::string ContentsOf(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), {}};
}

/// The program with one document in its Queue, under a home whose path needs care, and with nothing
/// on the search path but what a test installs.
struct ReportProgram : testing::Test {
  const TemporaryFolder above;
  const std::string odd = MakeFolder(above / "Ann's \"own\" home");
  const Home home{odd};
  const TemporaryFolder bin;
  const std::string reports = home.Root() + "/Reports";
  const std::string report = reports + "/Tavlo_Deck_Queue_Report.txt";
  const std::string pathBefore = std::getenv("PATH");
  bool mounted = false;

  ReportProgram() { ::setenv("PATH", bin.Path().c_str(), 1); }
  ~ReportProgram() override {
    ::setenv("PATH", pathBefore.c_str(), 1);
    if (mounted) ::umount2(reports.c_str(), MNT_DETACH);
  }

  static std::string MakeFolder(const std::string& path) {
    fs::create_directories(path);
    return path;
  }
  void Prepare(const std::string& wordProcessor) const {
    home.MakeRoot(QuietSettings({{"WordProcessorPath", wordProcessor}}));
    home.AddToQueue(DocumentName("Brown"), WaveBytes(Chirp(8000, 8000)));
  }
  /// Prints the Queue in the real program by the keyboard, then runs `look` and leaves.
  void Print(const std::function<void(DrivenProgram&)>& look) const {
    DrivenProgram program(home);
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      program.AnswerBox();  // There is no sound card.
      ASSERT_TRUE(Until([&] { return program.IsReady(); }));
      program.Keys({keys::kAlt, 'r'});
      look(program);
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }
  void ExpectWholeReport() const {
    const std::string text = ContentsOf(report);
    EXPECT_TRUE(text.starts_with("Tavlo Deck ")) << text;
    EXPECT_NE(text.find("Brown          1234"), std::string::npos) << text;
    EXPECT_TRUE(text.ends_with("End of Queue Report\n")) << text;
  }
  Lines NamesOfReports() const {
    Lines names;
    for (const auto& entry : fs::directory_iterator(reports)) {
      names.push_back(entry.path().filename());
    }
    return names;
  }
  /// Puts a file system of its own in the place of the reports, for this process alone. False when
  /// this user may not.
  bool MountReports(const std::string& options) {
    fs::create_directories(reports);
    mounted = ::unshare(CLONE_NEWNS) == 0 &&
              ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
              ::mount("tmpfs", reports.c_str(), "tmpfs", 0, options.c_str()) == 0;
    return mounted;
  }
};

TEST_F(ReportProgram, WordProcessorGetsThePathOfTheReportAsOneArgument) {
  const NotedProgram writer(bin, "Bob's \"best\" writer");
  Prepare("'" + bin.Path() + "/Bob'\"'\"'s \"best\" writer' --new \"a b\"");
  Print([&](DrivenProgram& program) {
    EXPECT_EQ(writer.Noted(), (Lines{"Bob's \"best\" writer", "--new", "a b", report}));
    EXPECT_EQ(program.Box(), "");
    ExpectWholeReport();
    EXPECT_EQ(NamesOfReports(), Lines{"Tavlo_Deck_Queue_Report.txt"});
  });
}

TEST_F(ReportProgram, PathWithBlanksNeedsNoQuotes) {
  const NotedProgram writer(bin, "My \"own\" writer");
  Prepare(writer.Path);
  Print([&](DrivenProgram&) { EXPECT_EQ(writer.Noted(), (Lines{"My \"own\" writer", report})); });
}

TEST_F(ReportProgram, DesktopOpensItWhereTheWordProcessorIsNotThere) {
  const NotedProgram opener(bin, "xdg-open");
  Prepare("write.exe");
  Print([&](DrivenProgram& program) {
    EXPECT_EQ(opener.Noted(), (Lines{"xdg-open", report}));
    EXPECT_EQ(program.Box(), "");
  });
}

TEST_F(ReportProgram, WithoutAnyProgramABoxNamesTheReport) {
  Prepare("");
  Print([&](DrivenProgram& program) {
    EXPECT_EQ(program.AnswerBox(), "Tavlo Deck - Report: The report is in the file\n" + report +
                                       "\n\nNo program could be started to show it.");
    ExpectWholeReport();
  });
}

TEST_F(ReportProgram, ReadOnlyFolderIsToldAndKeepsItsReport) {
  Prepare("");
  if (!MountReports("size=64k")) GTEST_SKIP() << "this user may mount nothing";
  std::ofstream(report) << "of yesterday";
  ASSERT_EQ(::mount("none", reports.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
  Print([&](DrivenProgram& program) {
    EXPECT_EQ(
        program.AnswerBox(),
        "Tavlo Deck - Report: The report could not be written: access is denied.\n\n" + report);
    EXPECT_EQ(ContentsOf(report), "of yesterday");
    EXPECT_EQ(NamesOfReports(), Lines{"Tavlo_Deck_Queue_Report.txt"});
  });
}

TEST_F(ReportProgram, FullFolderIsToldAndKeepsItsReport) {
  Prepare("");
  if (!MountReports("size=8k")) GTEST_SKIP() << "this user may mount nothing";
  std::ofstream(report) << std::string(8192, 'x');
  Print([&](DrivenProgram& program) {
    EXPECT_EQ(
        program.AnswerBox(),
        "Tavlo Deck - Report: The report could not be written: the disk is full.\n\n" + report);
    EXPECT_EQ(ContentsOf(report), std::string(8192, 'x'));
    EXPECT_EQ(NamesOfReports(), Lines{"Tavlo_Deck_Queue_Report.txt"});
  });
}

}  // namespace
}  // namespace tavlo::test
