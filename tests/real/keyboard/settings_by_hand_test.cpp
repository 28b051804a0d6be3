#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <functional>
#include <string>
#include <vector>

#include "support/driven_program.h"
#include "support/keys.h"
#include "support/screen.h"
#include "support/sound_server.h"

namespace tavlo::test {
namespace {

/// The real program, whose settings are changed by mouse and keyboard, left, and started again.
class SettingsByHand : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(server_.Start());
    home_.MakeRoot(QuietSettings({{"WorkWaitingAlertMode", "1"},
                                  {"AutoQueueRefreshInterval", "120"},
                                  {"NewDictationAlertInterval", "30"},
                                  {"DeleteCompletedFiles", "0"},
                                  {"ViewDelay", "0"},
                                  {"WordProcessorPath", "/usr/bin/writer --draft"}}));
  }

  /// One run of the program, which begins and ends with its settings open.
  void Run(const std::function<void(DrivenProgram&)>& script) {
    DrivenProgram program(home_);
    const int status = program.Run([&] {
      ASSERT_TRUE(program.Begin());
      forms::Window& window = Form(program).frmConfiguration;
      program.Do([&] { program.Main().mnuConfiguration.Press(forms::By::Hand); });
      // The page is filled when the window has become the active one.
      ASSERT_TRUE(program.Until([] {
        const QWidget* const active = QApplication::activeWindow();
        return active && active->objectName() == "frmConfiguration";
      }));
      script(program);
      program.Keys({keys::kEscape});
      ASSERT_TRUE(program.Until([&] { return !window.Visible; }));
      program.Exit();
    });
    EXPECT_EQ(status, 0);
  }
  static forms::ConfigurationForm& Form(DrivenProgram& program) {
    return program.Windows().configuration;
  }

  /// Empties a box as one does who is about to type another text into it.
  static void Empty(DrivenProgram& program, const char* box) {
    program.Click(box);
    ASSERT_TRUE(program.Until([&] {
      const QWidget* const holder = QApplication::focusWidget();
      return holder && holder->objectName() == box;
    })) << box;
    program.Keys({keys::kEnd});
    const int letters = program.Ask([] {
      const auto* const edit = qobject_cast<QLineEdit*>(QApplication::focusWidget());
      return edit ? static_cast<int>(edit->text().size()) : 0;
    });
    for (int letter = 0; letter < letters; ++letter) program.Keys({keys::kBackspace});
  }
  static void ExpectNumber(DrivenProgram& program, forms::Text& box, const char* number) {
    EXPECT_TRUE(program.Until([&] { return box.Value.Get() == number; }))
        << box.Name << " reads " << program.Ask([&] { return box.Value.Get(); });
  }

 private:
  SoundServer server_;
  Home home_;
};

TEST_F(SettingsByHand, ANumberThatIsClearedGivesWayToTheNextOneTyped) {
  Run([](DrivenProgram& program) {
    forms::ConfigurationForm& form = Form(program);
    program.Click("chkAutoRefreshMode");
    Empty(program, "txtAutoQueueRefreshInterval");
    ExpectNumber(program, form.txtAutoQueueRefreshInterval, "1");
    program.Keys({'6'});
    program.Keys({'0'});
    ExpectNumber(program, form.txtAutoQueueRefreshInterval, "60");
  });
}

TEST_F(SettingsByHand, ADoubleClickEmptiesTheWordProcessor) {
  Run([](DrivenProgram& program) {
    forms::Text& path = Form(program).txtWordProcessorPath;
    ExpectNumber(program, path, "/usr/bin/writer --draft");
    program.DoubleClick("txtWordProcessorPath");
    ExpectNumber(program, path, "");
    for (const char letter : std::string("ed")) {
      program.Keys({static_cast<std::uint32_t>(letter)});
    }
  });
  Run([](DrivenProgram& program) {
    ExpectNumber(program, Form(program).txtWordProcessorPath, "ed");
  });
}

TEST_F(SettingsByHand, TabGoesThroughTheAlertsFromTopToBottom) {
  Run([](DrivenProgram& program) {
    program.Click("chkWorkWaitingAlertMode");
    const auto next = [&] {
      program.Keys({keys::kTab});
      return program.Ask([] { return QApplication::focusWidget()->objectName().toStdString(); });
    };
    std::vector<std::string> passed;
    while (passed.size() < 6) passed.push_back(next());
    EXPECT_EQ(passed,
              (std::vector<std::string>{"optNewWorkWaitingAllJobs", "optNewWorkWaitingPriority",
                                        "txtNewDictationAlertInterval", "chkAutoImportMode",
                                        "chkAutoQueueJob", "txtDeleteCompletedFiles"}));
  });
}

}  // namespace
}  // namespace tavlo::test
