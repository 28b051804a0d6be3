#include "settings/walk_acts.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTableView>
#include <chrono>
#include <filesystem>
#include <sstream>

#include "platform/qt/key_box.h"
#include "support/keys.h"
#include "support/screen.h"

namespace tavlo::test {
namespace {

using forms::ConfigurationForm;
using forms::MainForm;
using remote::AfarAction;
using remote::IndexOf;
using store::Table;
using enum store::Table;

template <typename Value>
void ExpectComes(Walk& walk, const std::function<Value()>& look, const Value& expected) {
  EXPECT_TRUE(walk.program.Until([&] { return look() == expected; })) << walk.program.Ask(look);
}

}  // namespace

// How a setting is changed.

Act Slid(forms::Range ConfigurationForm::*range, int right) {
  return [=](Walk& walk) {
    walk.Reach(walk.Form().*range);
    walk.hand.ClickAt(walk.Form().*range, right, 50);
  };
}

Act Ticked(forms::Choice ConfigurationForm::*box, bool on) {
  return [=](Walk& walk) {
    walk.Reach(walk.Form().*box);
    walk.hand.Tick(walk.Form().*box, on);
  };
}

Act Pressed(forms::Command ConfigurationForm::*key) {
  return [=](Walk& walk) {
    walk.Reach(walk.Form().*key);
    walk.program.Click((walk.Form().*key).Name.c_str());
  };
}

Act Filled(forms::Text ConfigurationForm::*box, const std::string& text) {
  return [=](Walk& walk) {
    walk.Reach(walk.Form().*box);
    walk.hand.Paste(walk.Form().*box, text);
  };
}

Act FilledProfile(forms::Text MainForm::*box, const std::string& text) {
  return [=](Walk& walk) {
    walk.Reach(walk.Main().*box);
    walk.hand.Paste(walk.Main().*box, text);
  };
}

Act FilledWithFolder(forms::Text ConfigurationForm::*box, const std::string& folder) {
  return [=](Walk& walk) { Filled(box, walk.Folder(folder))(walk); };
}

Act Drawn(std::size_t band) {
  return [=](Walk& walk) {
    forms::Range& slider = walk.Form().sldEQ[band];
    walk.Reach(slider);
    walk.hand.ClickAt(slider, 50, 15 + 2 * static_cast<int>(band));
  };
}

Act KeyChosen(AfarAction action, std::uint32_t modifier, std::uint32_t key) {
  return [=](Walk& walk) {
    const forms::Text& box = walk.Form().keys[IndexOf(action)].txtKey;
    walk.Reach(box);
    walk.hand.ClickAt(box, 50, 50);
    walk.program.Keys({modifier, key});
    EXPECT_TRUE(walk.program.Until([&] { return !box.Value.Get().empty(); })) << box.Name;
  };
}

void SaveAndChooseCustom(Walk& walk) {
  walk.Reach(walk.Form().cmdSaveCustom);
  walk.program.Click("cmdSaveCustom");
  EXPECT_EQ(walk.program.AnswerBox(), "Tavlo Deck: Custom equalizer setting saved");
  walk.program.Click("cmdEqCustom");
}

void PickSecondDevice(Walk& walk) {
  walk.Reach(walk.Form().DeviceCombo);
  walk.hand.Pick(walk.Form().DeviceCombo, keys::kDown);
}

void PickNextAuthor(Walk& walk) {
  walk.Reach(walk.Form().comboAuthorLastName);
  walk.hand.Pick(walk.Form().comboAuthorLastName, keys::kDown);
}

void PickSecondServer(Walk& walk) {
  walk.Reach(walk.Main().comboFtpServerNames);
  walk.hand.Pick(walk.Main().comboFtpServerNames, keys::kDown);
}

void NameSecondServer(Walk& walk) {
  walk.Reach(walk.Form().cmdFtpNext);
  walk.program.Click("cmdFtpNext");
  walk.hand.Paste(walk.Form().txtFtpName, "Clinic");
}

void ClickFace(Walk& walk) { walk.hand.ClickAt(walk.Main().imageFaciaA, 1, 3); }

void SlideVolume(Walk& walk) { walk.hand.ClickAt(walk.Main().sldVol, 20, 50); }

void SlideSpeedWhilePlaying(Walk& walk) {
  walk.program.ClickRow(0);
  EXPECT_TRUE(walk.program.Until([&] { return walk.Main().cmdPlay.Enabled.Get(); }));
  walk.program.Click("cmdPlay");
  EXPECT_TRUE(walk.program.Until([&] { return walk.Main().Slider1.Enabled.Get(); }));
  walk.hand.ClickAt(walk.Main().Slider1, 80, 50);
  walk.program.Click("cmdSkip");
  EXPECT_TRUE(Until([&] { return walk.program.IsReady(); }));
}

void Unlink(Walk& walk) {
  walk.Reach(walk.Main().chkImportSynchronize);
  walk.hand.Tick(walk.Main().chkImportSynchronize, false);
}

void GivePriority(Walk& walk) {
  walk.Reach(walk.Main().chkImportPriority);
  walk.hand.Tick(walk.Main().chkImportPriority, true);
}

// What is seen of it after a restart.

Act Holds(Table table, const char* field, std::function<std::int64_t(Walk&)> look) {
  return [=](Walk& walk) {
    ExpectComes<std::string>(
        walk, [&] { return std::to_string(look(walk)); }, walk.Shown(table, field));
  };
}

Act LogsInWith(const char* field, std::function<std::string(const ftp::ServerProfile&)> look) {
  return [=](Walk& walk) {
    walk.Reach(walk.Main().comboFtpServerNames);
    ExpectComes<std::string>(
        walk,
        [&] {
          const auto profile = walk.program.Rooms().ftpServers.Chosen();
          return profile ? look(*profile) : std::string("nobody is chosen");
        },
        walk.Shown(FtpSettings, field));
  };
}

Act SentAs(const char* field, std::size_t place) {
  return [=](Walk& walk) {
    std::vector<std::string> names;
    std::string others;
    for (const auto& entry : std::filesystem::directory_iterator(walk.home.QueuePath())) {
      const std::string name = entry.path().filename();
      if (name.starts_with("0003 ")) names.push_back(name);
      others += name + "\n";
    }
    ASSERT_EQ(names.size(), 1u) << "the note has not come into the Queue:\n" << others;
    std::istringstream words(names.front());
    std::string word;
    for (std::size_t at = 0; at <= place; ++at) words >> word;
    EXPECT_EQ(word, walk.Shown(ImportAuthors, field)) << names.front();
  };
}

Act SweptFrom(std::string store::WorkFolders::*path, const char* folder) {
  return [=](Walk& walk) {
    EXPECT_EQ(walk.program.Ask([&] { return walk.program.Rooms().folders.*path; }),
              walk.Folder(folder) + "/");
  };
}

void ExpectNoteSent(Walk& walk) { SentAs("AuthorLastName", 2)(walk); }

void ExpectFaceOfItsNumber(Walk& walk) {
  const int number = std::stoi(walk.Shown(GeneralSettings, "FaciaImagePointer"));
  walk.program.Do([&] {
    const std::string name = walk.Main().listFasciaImages.TextAt(number - 1, 0);
    EXPECT_FALSE(name.empty());
    EXPECT_TRUE(walk.Main().imageFaciaA.Picture.Get().ends_with("/" + name));
  });
}

void ExpectHeading(Walk& walk) {
  walk.program.Do([&] {
    const auto* const list = qobject_cast<QTableView*>(WidgetOf(walk.Main().listViewInQueue));
    ASSERT_TRUE(list);
    EXPECT_EQ(list->model()
                  ->headerData(forms::document_column::Subject, Qt::Horizontal)
                  .toString()
                  .toStdString(),
              "Patient");
  });
}

void ExpectOwnLine(Walk& walk) {
  walk.program.Do([&] {
    const auto* const line = qobject_cast<QLabel*>(WidgetOf(walk.Main().lblCustomDisplay));
    ASSERT_TRUE(line) << "the line does not show";
    EXPECT_EQ(line->text(), "Good morning");
  });
}

void ExpectAbove(Walk& walk) {
  const Screen screen;
  EXPECT_TRUE(Until([&] { return screen.HasState(screen.Deck().id, "_NET_WM_STATE_ABOVE"); }));
  EXPECT_TRUE(walk.program.Ask([&] { return walk.Main().frmMain.TopMost.Get(); }));
}

void ExpectPreviewOfItsSeconds(Walk& walk) {
  walk.program.ClickRow(0);
  const base::Timer& preview = walk.program.Rooms().engine.tmrPlaySnipet;
  const int speed = std::stoi(walk.Shown(GeneralSettings, "Speed"));
  const int seconds = std::stoi(walk.Shown(GeneralSettings, "AutoPreview"));
  EXPECT_TRUE(walk.program.Until([&] { return preview.Enabled(); }));
  // The rule adds a second for what is on its way to the ear.
  const auto length = std::chrono::milliseconds((seconds + 1) * 100'000 / speed);
  EXPECT_LT(walk.program.Ask([&] { return preview.Interval(); }) - length,
            std::chrono::milliseconds(2));
  walk.program.Click("cmdImportCompleteSnipetStop");
}

Act TicksFor(int seconds) {
  return [=](Walk& walk) {
    const base::Timer& timer = walk.program.Rooms().waitingWork.tmrWorkWaitingAlert;
    EXPECT_EQ(walk.program.Ask([&] { return timer.Interval(); }),
              std::chrono::milliseconds(seconds * 50));
  };
}

void ExpectOldDocumentGone(Walk& walk) {
  EXPECT_TRUE(std::filesystem::is_empty(walk.home.CompletedPath()));
}

Act ExpectBand(std::size_t band) {
  return [=](Walk& walk) {
    const std::string stored = walk.Shown(GeneralSettings, "CustomEq" + std::to_string(band + 1));
    EXPECT_EQ(std::to_string(walk.program.Ask([&] { return walk.Form().sldEQ[band].Value.Get(); })),
              stored);
  };
}

void ExpectPedalOfItsPort(Walk& walk) {
  EXPECT_EQ(walk.program.Ask([&] { return walk.Form().lblPedalState.Value.Get(); }),
            "Port 998 can not be read.");
}

Act ExpectKey(AfarAction action, const std::string& words) {
  return [=](Walk& walk) {
    const forms::Text& text = walk.Form().keys[IndexOf(action)].txtKey;
    walk.Reach(text);
    ExpectComes<std::string>(
        walk,
        [&] {
          const auto* const box = dynamic_cast<const platform::qt::KeyBox*>(WidgetOf(text));
          return box ? box->Words().toStdString() : "no box";
        },
        words);
  };
}

void ExpectSilenceOnTheBus(Walk& walk) {
  walk.GoHome();
  walk.program.ClickRow(0);
  EXPECT_TRUE(walk.program.Until([&] { return walk.Main().cmdPlay.Enabled.Get(); }));
  const remote::MediaState said =
      walk.program.Ask([&] { return walk.program.Rooms().mediaPlayer.State(); });
  EXPECT_TRUE(said.canPlay);
  EXPECT_EQ(said.title + said.artist, "");
  EXPECT_EQ(said.length, 0);
  walk.program.Click("cmdImportCompleteSnipetStop");
}

void ExpectRefreshesByItself(Walk& walk) {
  walk.GoHome();
  const auto rows = [&] { return walk.Main().listViewInQueue.Rows().size(); };
  const std::size_t before = walk.program.Ask(rows);
  walk.home.AddToQueue(DocumentName("Late", 59), "not a sound, and listed all the same");
  EXPECT_TRUE(walk.program.Until([&] { return rows() == before + 1; }));
  EXPECT_TRUE(Until([&] { return walk.program.IsReady(); }));
}

}  // namespace tavlo::test
