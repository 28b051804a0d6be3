#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "accessibility/screen_reader.h"
#include "support/driven_program.h"
#include "support/screen.h"
#include "support/sound_files.h"

namespace tavlo::test {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t kEscape = 0xFF1B;

/// The real program with two documents in its Queue, and a screen reader that is listening.
class Accessibility : public testing::Test {
 protected:
  Accessibility() {
    home.MakeRoot({{"AutoPreview", "0"}});
    home.AddToQueue(DocumentName("Brown", 1), WaveBytes(Chirp(8000, 8000)));
    home.AddToQueue(DocumentName("Okafor", 2), WaveBytes(Chirp(16000, 8000)));
  }

  void Run(const std::function<void()>& script) {
    DrivenProgram driven(home);
    program = &driven;
    ScreenReader screenReader;
    reader = &screenReader;
    const int status = driven.Run([&] {
      ASSERT_TRUE(driven.Begin());
      driven.AnswerBox();
      ASSERT_TRUE(Until([&] { return driven.IsReady(); }));
      script();
      driven.Exit();
    });
    EXPECT_EQ(status, 0);
  }

  /// No control that the keyboard can reach is without a name, and each has a role that says what
  /// it is.
  void ExpectEveryControlIsNamed(const std::string& window) {
    static const std::set<std::string> kRoles{
        "push button",   "button",   "check box", "radio button", "slider",   "table",     "text",
        "page tab list", "page tab", "menu item", "combo box",    "menu bar", "tree table"};
    int controls = 0;
    for (const HeardNode& node : reader->Tree()) {
      if (!node.Is("FOCUSABLE")) continue;
      ++controls;
      EXPECT_NE(node.name, "") << window << ": a " << node.role << " without a name";
      EXPECT_TRUE(kRoles.contains(node.role) || node.role == "filler" || node.role == "panel" ||
                  node.role == "frame" || node.role == "dialog")
          << window << ": " << node.role << " " << node.name;
      if (node.role != "slider") continue;
      EXPECT_NE(node.value, "") << node.name;
      EXPECT_LT(std::stod(node.minimum), std::stod(node.maximum)) << node.name;
    }
    EXPECT_GT(controls, 1) << window;
  }

  Home home;
  DrivenProgram* program = nullptr;
  ScreenReader* reader = nullptr;
};

TEST_F(Accessibility, EveryControlOfTheWindowsHasANameARoleAndAValue) {
  Run([&] {
    ExpectEveryControlIsNamed("deck");
    EXPECT_EQ(reader->Find("push button", "Rewind").role, "push button");
    EXPECT_EQ(reader->Find("status bar", "Document").role, "status bar");
    EXPECT_EQ(reader->Find("progress bar", "Left audio channel amplitude indicator").value, "0");
    EXPECT_EQ(reader->Find("label", "Document length: of 00:00:00").role, "label");
    program->Do([&] { program->Main().mnuAbout.Press(); });
    ASSERT_TRUE(program->Until([&] { return program->Windows().about.frmAbout.Visible.Get(); }));
    EXPECT_TRUE(
        Until([&] { return reader->Find("push button", "System Info").Is("FOCUSABLE"); }, 5s));
    ExpectEveryControlIsNamed("about");
    program->Do([&] { program->Windows().about.mnuClose.Press(); });
    program->Do([&] { program->Main().mnuConfiguration.Press(); });
    EXPECT_TRUE(
        Until([&] { return reader->Find("check box", "Always On Top").Is("FOCUSABLE"); }, 5s));
    EXPECT_EQ(reader->Find("text", "Line of your own on the deck").role, "text");
    ExpectEveryControlIsNamed("configuration");
    program->Keys({kEscape});
    EXPECT_TRUE(program->Until(
        [&] { return !program->Windows().configuration.frmConfiguration.Visible.Get(); }));
  });
}

TEST_F(Accessibility, TheQueueIsATableWithHeadingsAndCells) {
  Run([&] {
    const auto rows = reader->Table("Queue");
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0][0], "Pri");
    EXPECT_EQ(rows[0][2], "Author");
    EXPECT_EQ(rows[1][2], "Brown");
    EXPECT_EQ(rows[2][2], "Okafor");
    EXPECT_EQ(rows[2][7], "00:00:02");
  });
}

TEST_F(Accessibility, ASliderThatIsSetHasTheEffectOfAHand) {
  Run([&] {
    reader->Set("Playback volume", 40);
    EXPECT_TRUE(program->Until([&] { return program->Main().sldVol.Value == 26214; }));
    EXPECT_EQ(program->Ask([&] { return program->Main().txtVolume.Value.Get(); }), "26214");
    const HeardNode volume = reader->Find("slider", "Playback volume");
    EXPECT_EQ(volume.value, "40");
    EXPECT_EQ(volume.description, "percent");
  });
}

TEST_F(Accessibility, TheStateOfTheDeckIsToldInWordsAndTheRunningTimeIsNot) {
  Run([&] {
    program->ClickRow(1);
    const auto told = [&](const std::string& words) {
      return Until(
          [&] {
            for (const std::string& event : reader->Heard()) {
              if (event == "state-changed:showing|notification|" + words) return true;
            }
            return false;
          },
          5s);
    };
    EXPECT_TRUE(told("Selected: Okafor, Subject: cardio"));

    // As the rules write it while a document sounds: this desk has no sound card.
    program->Do([&] {
      program->Main().cmdSkip.Enabled = true;
      program->Main().lblFilePositionHMS.Visible = true;
      program->Main().DeckRuns = true;
    });
    EXPECT_TRUE(told("Playing"));
    for (int second = 1; second <= 5; ++second) {
      program->Do([&] {
        program->Main().lblFilePositionHMS.Value = "00:00:0" + std::to_string(second);
        program->Main().MeterLeft.Value = 50 + second;
      });
      std::this_thread::sleep_for(200ms);
    }
    EXPECT_EQ(reader->Heard(), std::vector<std::string>{});
    EXPECT_EQ(reader->Find("label", "Current position in document: 00:00:05").role, "label");

    program->Do([&] { program->Main().DeckWinds = forms::Winding::Back; });
    EXPECT_TRUE(told("Rewinding"));
    program->Do([&] {
      program->Main().DeckWinds = forms::Winding::No;
      program->Main().DeckRuns = false;
    });
    EXPECT_TRUE(told("Stopped at 00:00:05"));
    program->Do([&] { program->Main().cmdSkip.Enabled = false; });
  });
}

}  // namespace
}  // namespace tavlo::test
