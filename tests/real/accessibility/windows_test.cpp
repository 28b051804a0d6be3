#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "accessibility/listening_desk.h"
#include "ftp_view/ftp_states.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

/// What a screen reader meets in each window.
class Windows : public ListeningDesk {
 protected:
  /// Each control that the keyboard can reach has a role that says what it is, a name that no other
  /// of its kind has, and if it is a slider a value with a unit.
  static void ExpectEveryControlIsNamed(const std::string& window, std::size_t atLeast) {
    static const std::set<std::string> kRoles{
        "push button", "check box", "radio button",  "slider",   "table",
        "text",        "combo box", "page tab list", "page tab", "password text"};
    std::set<std::string> met;
    for (const HeardNode& node : reader->Tree()) {
      if (!node.Is("FOCUSABLE")) continue;
      const std::string who = window + ": " + node.role + " " + node.name;
      EXPECT_NE(node.name, "") << who;
      EXPECT_TRUE(kRoles.contains(node.role)) << who;
      EXPECT_TRUE(met.insert(node.role + " " + node.name).second) << who << " is there twice";
      if (node.role == "slider") ExpectSliderIsMeasured(node, who);
    }
    EXPECT_GE(met.size(), atLeast) << window;
  }
  static void ExpectSliderIsMeasured(const HeardNode& node, const std::string& who) {
    ASSERT_NE(node.value, "") << who;
    EXPECT_LT(std::stod(node.minimum), std::stod(node.maximum)) << who;
    EXPECT_GE(std::stod(node.value), std::stod(node.minimum)) << who;
    EXPECT_LE(std::stod(node.value), std::stod(node.maximum)) << who;
    static const std::set<std::string> kUnits{"percent", "seconds", "dB", "percent to the right",
                                              "directory"};
    EXPECT_TRUE(kUnits.contains(node.description)) << who << " in " << node.description;
  }
  /// The table has exactly these columns, and whichever way leads to a cell, it is the same cell
  /// under the same heading.
  static void ExpectGrid(const std::string& table, const std::vector<std::string>& headings) {
    const auto lines = reader->Table(table);
    ASSERT_FALSE(lines.empty());
    EXPECT_EQ(lines[0], headings) << table;
    const std::vector<HeardCell> cells = reader->Grid(table);
    ASSERT_EQ(cells.size(), headings.size() * (lines.size() - 1)) << table;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::size_t row = i / headings.size();
      const std::size_t column = i % headings.size();
      const std::string place = std::to_string(row) + "," + std::to_string(column);
      EXPECT_EQ(cells[i].asked, place) << table;
      EXPECT_EQ(cells[i].named, place) << table;
      EXPECT_EQ(cells[i].found, place) << table;
      EXPECT_EQ(cells[i].header, headings[column]) << table << " at " << place;
      EXPECT_EQ(cells[i].text, lines[row + 1][column]) << table << " at " << place;
      EXPECT_EQ(cells[i].child, cells[i].text) << table << " at " << place;
    }
  }
  static HeardNode Slider(const std::string& name) { return reader->Find("slider", name); }
};

TEST_F(Windows, TheSplashSaysWhatStartsAndHowFarItIs) {
  const auto has = [](const std::string& role, const std::string& name) {
    return std::any_of(splash.begin(), splash.end(), [&](const HeardNode& node) {
      return node.role == role && node.name.starts_with(name);
    });
  };
  EXPECT_TRUE(has("frame", "Tavlo Deck"));
  EXPECT_TRUE(has("label", "Version:"));
  EXPECT_TRUE(has("push button", "Start at once"));
  EXPECT_TRUE(has("progress bar", "Progress of the start"));
}

TEST_F(Windows, EveryControlOfTheDeckHasANameARoleAndAValue) {
  ExpectEveryControlIsNamed("deck", 14);
  EXPECT_TRUE(reader->Find("frame", "Tavlo Deck").Is("ACTIVE"));
  EXPECT_EQ(reader->Find("push button", "Rewind").role, "push button");
  EXPECT_EQ(reader->Find("status bar", "Document").role, "status bar");
  EXPECT_EQ(reader->Find("progress bar", "Left audio channel amplitude indicator").value, "0");
  EXPECT_EQ(Slider("Playback speed").value, "100");
}

TEST_F(Windows, EveryControlOfTheMiniPlayerHasANameARoleAndAValue) {
  Select("Brown");
  Play();
  ASSERT_TRUE(program->Until([] { return !Main().frameFiles.Visible; }));
  ExpectEveryControlIsNamed("mini-player", 13);
  EXPECT_TRUE(reader->Find("push button", "Stop").Is("ENABLED"));
  EXPECT_EQ(reader->Find("label", "Brown").description, "Author Name");
  EXPECT_EQ(reader->Find("table", "Queue").role, "");
  SkipDocument();
}

TEST_F(Windows, EveryControlOfEveryPageOfTheConfigurationHasANameARoleAndAValue) {
  OpenConfiguration();
  EXPECT_TRUE(Meets("check box", "Always On Top"));
  ExpectEveryControlIsNamed("settings", 20);
  EXPECT_EQ(reader->Find("text", "Line of your own on the deck").role, "text");
  EXPECT_EQ(Slider("Select the length of a wind step in seconds").value, "3");
  EXPECT_EQ(reader->Find("filler", "Lights while the left pedal is down").description, "Up");

  Keys({keys::kAlt, 'e'});
  EXPECT_TRUE(Meets("push button", "Save Custom"));
  ExpectEveryControlIsNamed("equalizer", 20);
  program->Do([] { Configuration().sldEQ[0].Value = -7; });
  EXPECT_TRUE(Until([] { return Slider("Gain at 31 Hz").value == "7"; }));
  program->Do([] { Configuration().sldEQ[0].Value = 0; });

  Keys({keys::kAlt, 'm'});
  // The label beside a box is its name on this desktop; its own is what it shows.
  EXPECT_TRUE(Meets("combo box", "System default"));
  EXPECT_EQ(reader->Find("label", "Audio device").role, "label");
  EXPECT_EQ(reader->Find("check box", "Mute Output").role, "check box");
  ExpectEveryControlIsNamed("mixer", 8);

  Keys({keys::kAlt, 'p'});
  EXPECT_TRUE(Meets("push button", "Default path for .eW2 files"));
  ExpectEveryControlIsNamed("paths", 9);

  Keys({keys::kAlt, 'f'});
  EXPECT_TRUE(Meets("push button", "Memorize"));
  EXPECT_EQ(reader->Find("push button", "Go to the next server profile").role, "push button");
  EXPECT_EQ(reader->Find("label", "Profile 1 of 25").role, "label");
  ExpectEveryControlIsNamed("servers", 18);

  Keys({keys::kAlt, 'k'});
  EXPECT_TRUE(Meets("text", "Key for Play, and stop again"));
  EXPECT_EQ(reader->Find("text", "Key for Skip").description, "No key");
  EXPECT_TRUE(Meets("check box", "Say nothing about the document on the bus"));
  ExpectEveryControlIsNamed("keys", 13);
  CloseConfiguration();
}

TEST_F(Windows, OfAPasswordNothingIsGivenOutButItsLength) {
  std::string told;
  const auto type = [](const char* box, const forms::Text& text, const std::string& letters) {
    ASSERT_TRUE(TabTo(box));
    for (const char letter : letters) Keys({static_cast<std::uint32_t>(letter)});
    EXPECT_TRUE(program->Until([&] { return text.Value.Get() == letters; })) << box;
  };
  const auto hears = [&told](const std::string& letters) {
    return Until([&] {
      for (const std::string& piece : reader->Typed()) told += piece;
      return told.find_first_of(letters) != told.npos;
    });
  };
  OpenConfiguration();
  Keys({keys::kAlt, 'f'});
  ASSERT_TRUE(Meets("push button", "Memorize"));
  // Of what showed before.
  reader->Typed();
  type("ePass", Configuration().ePass, "qzxv");
  EXPECT_EQ(program->Ask([] { return Configuration().ePass.Value.Get(); }), "qzxv");
  for (const HeardNode& node : reader->Tree()) {
    for (const std::string& said : {node.name, node.description, node.value}) {
      EXPECT_EQ(said.find("qzxv"), said.npos) << said;
    }
  }
  EXPECT_EQ(reader->Text("Password to log in with").find_first_of("qzxv"), std::string::npos);
  // What is told of the box behind it comes after all that was told of the password.
  type("eServerDir", Configuration().eServerDir, "mm");
  EXPECT_EQ(reader->Text("Directory to change to on the server"), "mm");
  EXPECT_TRUE(hears("m"));
  EXPECT_NE(told.find("****"), told.npos) << told;
  EXPECT_EQ(told.find_first_of("qzxv"), told.npos) << told;
  program->Do([] {
    Configuration().ePass.Value = "";
    Configuration().eServerDir.Value = "";
  });
  CloseConfiguration();
}

TEST_F(Windows, EveryControlOfTheImportViewHasANameARoleAndAValue) {
  Keys({keys::kAlt, 'v'});
  Keys({'i'});
  ASSERT_TRUE(Meets("table", "Import"));
  ASSERT_TRUE(program->Until([] { return Main().mnuView.Enabled.Get(); }));
  ExpectEveryControlIsNamed("import", 14);
  EXPECT_EQ(Slider("Select an import directory").value, "0");
  EXPECT_EQ(reader->Find("check box", "Link").role, "check box");
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  EXPECT_TRUE(program->Until([] { return Main().frameInQueue.Visible && Main().mnuFile.Enabled; }));
}

TEST_F(Windows, EveryControlOfTheFtpViewHasANameARoleAndAValue) {
  Keys({keys::kAlt, 'v'});
  Keys({'t'});
  ASSERT_TRUE(Meets("table", "Files on the server"));
  ASSERT_TRUE(program->Until([] { return Main().mnuView.Enabled.Get(); }));
  FtpStates states(Main());
  program->Do([&] {
    states.Idle();
    states.Listed(FtpStates::UsualNames());
    states.Chosen(3);
  });
  EXPECT_TRUE(Meets("table", "Files to download"));
  ExpectEveryControlIsNamed("ftp", 10);
  EXPECT_EQ(reader->Find("push button", "Move all files to the download list").role, "push button");
  EXPECT_EQ(reader->Table("Files to download").size(), 4u);
  program->Do([&] { states.Downloading(" 1204224 bytes  52%"); });
  EXPECT_TRUE(
      Until([] { return reader->Find("progress bar", "Progress of the file").value == "52"; }));
  EXPECT_TRUE(Meets("label", "Received: 1204224 bytes  52%"));
  EXPECT_TRUE(Meets("push button", "Halt"));
  program->Do([&] { states.Idle(); });
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  EXPECT_TRUE(program->Until([] { return Main().frameInQueue.Visible && Main().mnuFile.Enabled; }));
}

TEST_F(Windows, TheAboutBoxIsADialogThatIsReadAndLeftByEscape) {
  Keys({keys::kAlt, 'f'});
  Keys({'a'});
  EXPECT_TRUE(Meets("dialog", "About Tavlo Deck"));
  EXPECT_TRUE(Meets("push button", "System Info"));
  EXPECT_EQ(reader->Find("push button", "System Info").description,
            "Show what this computer is made of");
  const std::string text =
      program->Ask([] { return program->Windows().about.lblAboutDescription.Value.Get(); });
  EXPECT_EQ(reader->Find("label", text.substr(0, text.find('\n'))).role, "label") << text;
  Keys({keys::kEscape});
  EXPECT_TRUE(program->Until([] { return !program->Windows().about.frmAbout.Visible; }));
  EXPECT_TRUE(Active("frmMain"));
}

TEST_F(Windows, TheQueueIsATableWithHeadingsAndCells) {
  const auto rows = reader->Table("Queue");
  ASSERT_EQ(rows.size(), 4u);
  EXPECT_EQ(rows[0][0], "Pri");
  EXPECT_EQ(rows[0][2], "Author");
  EXPECT_EQ(rows[1][2], "Brown");
  EXPECT_EQ(rows[2][2], "Okafor");
  EXPECT_EQ(rows[2][7], "00:00:01");
}

TEST_F(Windows, TheQueueHasTheColumnsThatShowAndNoOthers) {
  ExpectGrid("Queue", {"Pri", "Saved", "Author", "Id", "Dept", "Work", "Subject", "Length", "Date",
                       "Time", "System"});
}

TEST_F(Windows, TheCompletedListHasNoColumnForASavedPosition) {
  Keys({keys::kAlt, 'v'});
  Keys({'c'});
  ASSERT_TRUE(Meets("table", "Completed"));
  ASSERT_TRUE(program->Until([] { return Main().mnuView.Enabled.Get(); }));
  ExpectGrid("Completed", {"Pri", "Author", "Id", "Dept", "Work", "Subject", "Length", "Date",
                           "Time", "System"});
  const auto rows = reader->Table("Completed");
  ASSERT_EQ(rows.size(), 2u);
  EXPECT_EQ(rows[1][1], "Done");
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  EXPECT_TRUE(program->Until([] { return Main().frameInQueue.Visible && Main().mnuFile.Enabled; }));
}

TEST_F(Windows, ASliderThatIsSetHasTheEffectOfAHand) {
  reader->Set("Playback volume", 40);
  EXPECT_TRUE(program->Until([] { return Main().sldVol.Value == 26214; }));
  EXPECT_EQ(program->Ask([] { return Main().txtVolume.Value.Get(); }), "26214");
  EXPECT_EQ(Slider("Playback volume").value, "40");
}

}  // namespace
}  // namespace tavlo::test
