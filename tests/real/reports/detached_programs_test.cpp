#include "platform/desktop/detached_programs.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "reports/noted_start.h"
#include "support/temporary_folder.h"

namespace tavlo::test {
namespace {

using platform::Errands;
using platform::desktop::DetachedPrograms;
using Lines = std::vector<std::string>;

/// Runs all at once, save at the place that gives no answer: what was asked there is kept.
class ErrandsHere : public Errands {
 public:
  std::string Silent;
  std::vector<std::function<void(Sign&)>> Kept;
  Lines Asked;

  bool Run(const std::string& path, std::function<void(Sign&)> work) override {
    Asked.push_back(path);
    if (OutOfReach(path)) {
      Kept.push_back(std::move(work));
      return false;
    }
    NoSign sign;
    work(sign);
    return true;
  }
  bool OutOfReach(const std::string& path) override {
    return !Silent.empty() && path.starts_with(Silent);
  }

  struct NoSign : Sign {
    void Give() override {}
  };
};

struct DetachedProgramsTest : testing::Test {
  TemporaryFolder bin;
  ErrandsHere errands;
  DetachedPrograms programs{errands};
  const std::string pathBefore = std::getenv("PATH");

  DetachedProgramsTest() { SearchIn(bin.Path()); }
  ~DetachedProgramsTest() override { SearchIn(pathBefore); }

  static void SearchIn(const std::string& folders) { ::setenv("PATH", folders.c_str(), 1); }
};

TEST_F(DetachedProgramsTest, ProgramThatIsNotThereDoesNotStart) {
  EXPECT_FALSE(programs.StartProgram("write.exe", {"/root/report.txt"}));
  EXPECT_FALSE(programs.StartProgram("/nowhere/writer", {}));
  EXPECT_FALSE(programs.StartProgram("", {}));
  EXPECT_FALSE(programs.StartProgram(std::string("/bin/true\0 and more", 18), {}));
  EXPECT_FALSE(programs.OpenTextFile("/root/report.txt"));
}

TEST_F(DetachedProgramsTest, EachByteOfEachArgumentArrives) {
  const NotedProgram writer(bin, "My \"best\" writer's");
  ASSERT_TRUE(
      programs.StartProgram(writer.Path, {"", "-n", "a  b", "$HOME `id` 'q' \"q\" *", "\xFC"}));
  EXPECT_EQ(writer.Noted(),
            (Lines{"My \"best\" writer's", "", "-n", "a  b", "$HOME `id` 'q' \"q\" *", "\xFC"}));
}

TEST_F(DetachedProgramsTest, NameIsLookedForAlongTheSearchPath) {
  const TemporaryFolder second;
  const NotedProgram writer(second, "writer");
  SearchIn(":relative:" + bin.Path() + "/none:" + bin.Path() + "::" + second.Path());
  ASSERT_TRUE(programs.StartProgram("writer", {"x"}));
  EXPECT_EQ(writer.Noted(), (Lines{"writer", "x"}));
  // What does not begin at the root is passed over.
  for (const std::string& asked : errands.Asked) EXPECT_TRUE(asked.starts_with('/')) << asked;
}

TEST_F(DetachedProgramsTest, WhatCanNotRunDoesNotStart) {
  EXPECT_FALSE(programs.StartProgram(bin.Path(), {}));
  const std::string text = bin.Write("text", "just a text");
  EXPECT_FALSE(programs.StartProgram(text, {}));
  // No shell reads what names no reader of its own.
  std::filesystem::permissions(text, std::filesystem::perms(0755));
  EXPECT_FALSE(programs.StartProgram(text, {}));
  const std::string script = bin.Write("script", "#!/nowhere/shell\n");
  std::filesystem::permissions(script, std::filesystem::perms(0755));
  EXPECT_FALSE(programs.StartProgram(script, {}));
}

TEST_F(DetachedProgramsTest, ProgramStartsAsFromAShellAndKeepsNothingOfOurs) {
  // A number that the shell of the script does not use by itself.
  const int leaked = ::fcntl(STDERR_FILENO, F_DUPFD, 50);
  const auto before = std::signal(SIGPIPE, SIG_IGN);
  const NotedProgram writer(
      bin, "writer",
      "/bin/cat; echo fds: $(/bin/ls /proc/$$/fd); echo session: $(/bin/ps -o "
      "sid= -p $$); /bin/grep SigIgn /proc/$$/status");
  ASSERT_TRUE(programs.StartProgram(writer.Path, {}));
  const Lines noted = writer.Noted();
  std::signal(SIGPIPE, before);
  ASSERT_EQ(noted.size(), 4u);
  EXPECT_EQ((noted[1] + " ").find(" " + std::to_string(leaked) + " "), std::string::npos)
      << noted[1];
  EXPECT_NE(noted[2], "session: " + std::to_string(::getsid(0)));
  EXPECT_EQ(noted[3], "SigIgn:\t0000000000000000");
  ::close(leaked);
}

TEST_F(DetachedProgramsTest, NoProcessIsLeftForUsToWaitFor) {
  const NotedProgram writer(bin, "writer");
  ASSERT_TRUE(programs.StartProgram("writer", {}));
  EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_EQ(errno, ECHILD);
  writer.Noted();
}

TEST_F(DetachedProgramsTest, TextIsOpenedByWhatKnowsTheUsersChoiceFirst) {
  const NotedProgram editor(bin, "mousepad");
  ASSERT_TRUE(programs.OpenTextFile("/root/a report.txt"));
  EXPECT_EQ(editor.Noted(), (Lines{"mousepad", "/root/a report.txt"}));
  std::filesystem::remove(bin / "noted");
  const NotedProgram opener(bin, "xdg-open");
  ASSERT_TRUE(programs.OpenTextFile("/root/a report.txt"));
  EXPECT_EQ(opener.Noted(), (Lines{"xdg-open", "/root/a report.txt"}));
}

TEST_F(DetachedProgramsTest, ProgramWhosePlaceGivesNoAnswerGivesWayToTheNextAndStartsNoMore) {
  const TemporaryFolder second;
  const NotedProgram late(bin, "writer");
  const NotedProgram other(second, "writer");
  SearchIn(bin.Path() + ":" + second.Path());
  errands.Silent = bin.Path();
  ASSERT_TRUE(programs.StartProgram("writer", {"x"}));
  EXPECT_EQ(other.Noted(), (Lines{"writer", "x"}));

  EXPECT_FALSE(programs.StartProgram(late.Path, {}));
  // The answers come when nobody waits for them.
  ASSERT_EQ(errands.Kept.size(), 2u);
  ErrandsHere::NoSign sign;
  for (const auto& work : errands.Kept) work(sign);
  ASSERT_EQ(::waitpid(-1, nullptr, WNOHANG), -1);
  EXPECT_FALSE(late.HasStarted());
}

}  // namespace
}  // namespace tavlo::test
