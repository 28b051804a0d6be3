#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "accessibility/listening_desk.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

/// What the deck says of itself while a typist works.
class Announcements : public ListeningDesk {
 protected:
  static bool HasPlayedTo(const std::string& position) {
    return program->Until([&] { return Main().lblFilePositionHMS.Value.Get() >= position; });
  }
  /// What was told, without the slider that goes along: it is said to who has the keyboard on it.
  static std::vector<std::string> HeardButThePosition() {
    std::vector<std::string> heard = reader->Heard();
    std::erase(heard,
               "property-change:accessible-value|slider|Slide to desired position in document");
    return heard;
  }
  static void SetPreview(int seconds) {
    OpenConfiguration();
    reader->Set("Select the Auto Preview time in seconds", seconds);
    EXPECT_TRUE(program->Until([&] { return Configuration().sliderAutoPreview.Value == seconds; }));
    CloseConfiguration();
  }
};

TEST_F(Announcements, ASelectedDictationIsNamedWhileItsPreviewSoundsAndAfterIt) {
  SetPreview(15);
  Select("Brown");
  EXPECT_TRUE(Told("Previewing: Brown, Subject: cardio"));
  Keys({keys::kAlt, 's'});
  EXPECT_TRUE(Told("Selected: Brown, Subject: cardio"));
  SetPreview(0);
}

TEST_F(Announcements, PlayingIsSaidOnceAndTheRunningTimeWhenItIsAskedFor) {
  Select("Brown");
  Play();
  ASSERT_TRUE(HasPlayedTo("00:00:02"));
  EXPECT_EQ(HeardButThePosition(), std::vector<std::string>{});
  Keys({keys::kAlt, 's'});
  const std::string position = program->Ask([] { return Main().lblFilePositionHMS.Value.Get(); });
  EXPECT_TRUE(Told("Stopped at " + position));
  EXPECT_TRUE(Meets("label", "Current position in document: " + position));
  SkipDocument();
}

TEST_F(Announcements, WindingAndTheEndsAreSaid) {
  Select("Brown");
  Play();
  reader->Press("Fast Forward");
  EXPECT_TRUE(Told("Winding forward"));
  reader->Press("Rewind");
  EXPECT_TRUE(Told("Rewinding"));
  EXPECT_TRUE(Told("At the beginning"));
  reader->Press("Skip to end");
  EXPECT_TRUE(Told("At the end"));
  SkipDocument();
}

TEST_F(Announcements, ADictationThatPlaysToItsEndIsSaidToBeThere) {
  Select("Okafor");
  Play();
  EXPECT_TRUE(Told("At the end"));
  SkipDocument();
}

TEST_F(Announcements, AQuietRemarkIsToldOnceAndNotThatItGoes) {
  const std::string remark = "Not deleted: access is denied. Document: a.wav";
  program->Do([&] { program->Rooms().mainWindow.Say(remark); });
  EXPECT_TRUE(Told(remark));
  EXPECT_TRUE(Meets("label", remark));
  Select("Brown");
  EXPECT_TRUE(Told("Selected: Brown, Subject: cardio"));
  EXPECT_EQ(program->Ask([] { return Main().lblNotice.Value.Get(); }), "");
  for (const std::string& event : reader->Heard()) {
    EXPECT_EQ(event.find(remark), event.npos) << event;
    EXPECT_NE(event, "state-changed:showing|notification|");
  }
}

TEST_F(Announcements, WhatHappensOnAServerIsToldWhileItsViewShowsAndNotBehindAnother) {
  const auto happens = [](const char* words) {
    program->Do([&] { Main().eMessage.Value = words; });
  };
  Keys({keys::kAlt, 'v'});
  Keys({'t'});
  ASSERT_TRUE(program->Until([] { return Main().frameFtp.Visible && Main().mnuView.Enabled; }));
  happens("List completed");
  EXPECT_TRUE(Told("List completed"));
  Keys({keys::kAlt, 'v'});
  Keys({'q'});
  ASSERT_TRUE(program->Until([] { return Main().frameInQueue.Visible && Main().mnuFile.Enabled; }));
  reader->Heard();
  happens("No files found");
  program->Do([] { program->Rooms().mainWindow.Say("Not deleted: access is denied."); });
  bool told = false;
  EXPECT_TRUE(Until([&] {
    for (const std::string& event : reader->Heard()) {
      EXPECT_EQ(event.find("notification|No files found"), event.npos) << event;
      told = told || event.find("Not deleted: access is denied.") != event.npos;
    }
    return told;
  }));
  program->Do([] {
    program->Rooms().mainWindow.ForgetNotice();
    Main().eMessage.Value = "";
  });
}

TEST_F(Announcements, AKeyThatGoesOutOfUseNamesNoneOfItsNeighbours) {
  Select("Brown");
  Play();
  ASSERT_TRUE(TabTo("cmdForward"));
  reader->Heard();
  Keys({keys::kAlt, 'k'});
  ASSERT_TRUE(Until([] { return program->IsReady(); }));
  int focused = 0;
  for (const std::string& event : reader->Heard()) {
    if (!event.starts_with("state-changed:focused|")) continue;
    ++focused;
    EXPECT_TRUE(event.ends_with("|Tavlo Deck")) << event;
  }
  EXPECT_GT(focused, 0);
}

}  // namespace
}  // namespace tavlo::test
