#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QLabel>
#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

#include "store/saved_position.h"
#include "support/driven_program.h"
#include "support/few_handles.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_files.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr int kRate = 8000;

unsigned ModeOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(::stat(path.c_str(), &status), 0) << path;
  return status.st_mode & 07777;
}

/// What becomes of files under the hands of a typist whose program has a sound card.
struct ProgramFiles : testing::Test {
  void SetUp() override {
    ASSERT_TRUE(server.Start());
    home.MakeRoot(QuietSettings());
  }

  void Run(const std::function<void()>& script) {
    program = std::make_unique<DrivenProgram>(home);
    const int status = program->Run([&] {
      ASSERT_TRUE(program->Begin());
      ASSERT_TRUE(Until([&] { return program->IsReady(); }));
      script();
      program->Exit();
    });
    EXPECT_EQ(status, 0);
  }
  std::string Drop(const std::string& name) const {
    return home.AddToQueue(name, WaveBytes(Chirp(kRate, kRate)));
  }
  /// Puts a document in work, stopped at its end.
  void PutInWork(const std::string& name) {
    program->ClickRow(program->RowOf(name));
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdPlay.Enabled.Get(); }));
    program->Click("cmdPlay");
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdSkipEnd.Enabled.Get(); }));
    program->Click("cmdSkipEnd");
    ASSERT_TRUE(program->Until([&] { return program->Main().cmdComplete.Enabled.Get(); }));
  }
  void Finish(const char* key) {
    program->Click(key);
    ASSERT_TRUE(Until([&] { return program->IsReady(); }));
  }
  /// What the quiet line shows in the window; empty while it is not there.
  std::string Line() {
    return program->Ask([]() -> std::string {
      for (QWidget* const widget : QApplication::allWidgets()) {
        const auto* const label = qobject_cast<QLabel*>(widget);
        if (label && label->objectName() == "lblNotice" && label->isVisible()) {
          return label->text().toStdString();
        }
      }
      return {};
    });
  }

  SoundServer server;
  Home home;
  std::unique_ptr<DrivenProgram> program;
};

TEST_F(ProgramFiles, CompleteOfASavedDocumentLeavesAWaitingOneOfItsFirstNameAlone) {
  const std::string saved = DocumentName("Brown", 0, 4000);
  const std::string first = DocumentName("Brown");
  const std::string bytes = ReadFile(Drop(saved));
  home.AddToQueue(first, "another dictation");
  Run([&] {
    PutInWork(saved);
    Finish("cmdComplete");
    EXPECT_EQ(ReadFile(home.CompletedPath() + "/" + first), bytes);
    EXPECT_EQ(ReadFile(home.QueuePath() + "/" + first), "another dictation");
    EXPECT_FALSE(fs::exists(home.QueuePath() + "/" + saved));
    EXPECT_EQ(Line(), "");
  });
}

TEST_F(ProgramFiles, SaveThatFindsItsNameTakenSaysSoUntilTheNextCommand) {
  const std::string name = DocumentName("Brown");
  const std::string bytes = ReadFile(Drop(name));
  Run([&] {
    PutInWork(name);
    const double position =
        program->Ask([&] { return program->Rooms().documentInWork.CurrentSamplePosition; });
    const std::string taken = store::WithSavedPosition(name, position);
    ASSERT_NE(taken, name);
    home.AddToQueue(taken, "another dictation");
    Finish("cmdSave");
    EXPECT_EQ(Line(),
              "The position was not saved: another document of that name waits. Document: " + name);
    EXPECT_EQ(ReadFile(home.QueuePath() + "/" + name), bytes);
    EXPECT_EQ(ReadFile(home.QueuePath() + "/" + taken), "another dictation");
    program->ClickRow(0);
    EXPECT_TRUE(program->Until([&] { return !program->Main().lblNotice.Visible; }));
    EXPECT_TRUE(Until([&] { return Line().empty(); }));
  });
}

TEST_F(ProgramFiles, CompleteWithoutItsFolderNamesTheRescueFolder) {
  const std::string name = DocumentName("Brown");
  const std::string bytes = ReadFile(Drop(name));
  Run([&] {
    fs::remove_all(home.CompletedPath());
    PutInWork(name);
    Finish("cmdComplete");
    const std::string rescued = home.Root() + "/Files/Rescued/" + name;
    EXPECT_EQ(ReadFile(rescued), bytes);
    EXPECT_EQ(Line(),
              "Not moved to Completed: there is no such file or folder. The document is in "
              "the rescue folder: " +
                  rescued);
  });
}

TEST_F(ProgramFiles, DictationThatIsItsOwnersAloneStaysSoOnAnotherFileSystem) {
  const TemporaryFolder memory("/dev/shm");
  struct stat here = {};
  struct stat there = {};
  ASSERT_EQ(::stat(home.Path().c_str(), &here), 0);
  ASSERT_EQ(::stat(memory.Path().c_str(), &there), 0);
  if (here.st_dev == there.st_dev) GTEST_SKIP() << "/dev/shm is no file system of its own here.";
  fs::create_directory_symlink(memory.Path(), home.CompletedPath());
  const std::string name = DocumentName("Brown");
  ASSERT_EQ(::chmod(Drop(name).c_str(), 0600), 0);
  ::umask(022);
  Run([&] {
    PutInWork(name);
    Finish("cmdComplete");
    EXPECT_EQ(ModeOf(memory.Path() + "/" + name), 0600u);
    EXPECT_FALSE(fs::exists(home.QueuePath() + "/" + name));
  });
}

TEST_F(ProgramFiles, SettingsAreTheOwnersAlone) {
  const std::string journal = home.SettingsPath() + "-journal";
  std::ofstream(journal).close();
  for (const std::string& file : {home.SettingsPath(), journal}) {
    ASSERT_EQ(::chmod(file.c_str(), 0644), 0);
  }
  Run([&] {
    EXPECT_EQ(ModeOf(home.SettingsPath()), 0600u);
    EXPECT_EQ(ModeOf(journal), 0600u);
  });
  EXPECT_EQ(ModeOf(home.SettingsPath()), 0600u);
}

TEST_F(ProgramFiles, SettingsOfAFirstStartAreTheOwnersAlone) {
  fs::remove_all(home.Path() + "/Lyrane");
  ::umask(022);
  Run([&] { EXPECT_EQ(ModeOf(home.SettingsPath()), 0600u); });
}

;

TEST_F(ProgramFiles, ScanWithoutHandlesSaysThatTheListIsNotWholeAndTheNextOneListsAll) {
  Run([&] {
    constexpr int kDocuments = 21;
    for (int minute = 0; minute < kDocuments; ++minute) Drop(DocumentName("Brown", minute));
    const auto rows = [&] {
      return program->Ask([&] { return program->Main().listViewInQueue.Rows().size(); });
    };
    std::unique_ptr<FewHandles> few;
    program->Do([&] { few = std::make_unique<FewHandles>(1); });
    program->Keys({keys::kF5});
    EXPECT_TRUE(Until([&] { return !Line().empty(); }));
    EXPECT_TRUE(Until([&] { return program->IsReady(); }));
    program->Do([&] { few.reset(); });
    EXPECT_LT(rows(), std::size_t{kDocuments});
    EXPECT_EQ(Line(),
              "The Queue list is not whole: the program has no file handles or memory left. The "
              "next list shows the rest.");
    EXPECT_EQ(program->Box(), "");
    program->Keys({keys::kF5});
    EXPECT_TRUE(Until([&] { return rows() == std::size_t{kDocuments}; }));
    EXPECT_TRUE(Until([&] { return program->IsReady(); }));
    EXPECT_EQ(Line(), "");
  });
}

}  // namespace
}  // namespace tavlo::test
