#include <gtest/gtest.h>

#include <QApplication>
#include <string>

#include "accessibility/listening_desk.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

/// Message boxes and menus: what stands before the windows for a moment.
class Boxes : public ListeningDesk {
 protected:
  /// A box with that title reads its text and has the keyboard on its default button.
  static void ExpectABoxIsHeard(const std::string& title, const std::string& text,
                                const std::string& defaultButton) {
    EXPECT_TRUE(Meets("alert", title));
    EXPECT_EQ(reader->Find("label", text).role, "label") << text;
    EXPECT_TRUE(Until([&] { return reader->Find("push button", defaultButton).Is("FOCUSED"); }))
        << defaultButton;
    EXPECT_TRUE(reader->Find("push button", defaultButton).Is("DEFAULT")) << defaultButton;
  }
  static void ExpectEscapeCloses() {
    Keys({keys::kEscape});
    EXPECT_TRUE(Until([] { return program->Box().empty(); })) << program->Box();
  }
  static void OpenMenu(std::uint32_t letter, const std::string& name) {
    Keys({keys::kAlt, letter});
    EXPECT_TRUE(Meets("popup menu", name));
  }
  static void CloseMenu() {
    Keys({keys::kEscape});
    ASSERT_TRUE(program->Until([] { return !QApplication::activePopupWidget(); }));
    // A menu bar keeps the keyboard until it is told a second time.
    Keys({keys::kEscape});
    EXPECT_TRUE(Until([] { return !Focus().empty(); }));
  }
  static bool ViewShows(const forms::Pane& frame) {
    return program->Until([&] { return frame.Visible && Main().mnuFile.Enabled; });
  }
};

TEST_F(Boxes, TheQuestionOfTheExitIsReadAndEscapeIsNo) {
  Keys({keys::kAlt, 'f'});
  Keys({'e'});
  ExpectABoxIsHeard("Tavlo Deck - Exit", "Are you sure you want to exit the Tavlo Deck?", "Yes");
  EXPECT_TRUE(reader->Find("push button", "No").Is("FOCUSABLE"));
  ExpectEscapeCloses();
  EXPECT_TRUE(Until([] { return Focus() == "txtFocus"; })) << Focus();
}

TEST_F(Boxes, TheQuestionOfADeletionIsReadAndEscapeIsNo) {
  Keys({keys::kAlt, 'v'});
  Keys({'c'});
  ASSERT_TRUE(ViewShows(Main().frameCompleted));
  ASSERT_TRUE(TabTo("listViewCompleted"));
  Keys({keys::kDown});
  ASSERT_TRUE(program->Until([] { return Main().cmdDeleteOneCompleted.Enabled.Get(); }));
  reader->Press("Delete One");
  ExpectABoxIsHeard("Tavlo Deck - Delete",
                    "Are you sure you want to delete the selected Completed document?", "No");
  ExpectEscapeCloses();
  EXPECT_EQ(program->Ask([] { return Main().listViewCompleted.Rows().size(); }), 1u);
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  EXPECT_TRUE(ViewShows(Main().frameInQueue));
}

TEST_F(Boxes, AnErrorIsReadAndEscapeLeavesIt) {
  Select("Wreck");
  Keys({keys::kAlt, 'p'});
  ExpectABoxIsHeard(
      "Tavlo Deck - Unrecognized Audio Format",
      "This file can not be played. You may press Complete to remove it from the queue.", "OK");
  ExpectEscapeCloses();
}

TEST_F(Boxes, AnOpenMenuNamesItsEntriesAndWhereTheKeyboardIs) {
  OpenMenu('f', "File");
  for (const char* const entry : {"Configuration", "Minimize", "About", "Exit"}) {
    EXPECT_EQ(reader->Find("menu item", entry).role, "menu item") << entry;
  }
  Keys({keys::kDown});
  EXPECT_TRUE(Until([] { return reader->Find("menu item", "Minimize").Is("FOCUSED"); }));
  CloseMenu();
  OpenMenu('v', "View");
  EXPECT_EQ(reader->Find("menu item", "Completed").role, "menu item");
  CloseMenu();
}

TEST_F(Boxes, TheMenuOfAListNamesTheColumns) {
  ASSERT_TRUE(TabTo("listViewInQueue"));
  Keys({keys::kMenu});
  ASSERT_TRUE(program->Until([] { return QApplication::activePopupWidget() != nullptr; }));
  reader->Heard();
  for (int entry = 0; entry < 3; ++entry) Keys({keys::kDown});
  EXPECT_TRUE(Heard("state-changed:focused|menu item|Sort by Author"));
  CloseMenu();
}

}  // namespace
}  // namespace tavlo::test
