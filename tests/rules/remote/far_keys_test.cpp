// The page of the keys: what may be chosen, what becomes of it, and what is stored.
#include "remote/far_keys.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "support/remote_bench.h"

namespace tavlo::test {
namespace {

using base::operator""ms;
using base::operator""s;
using forms::By;
using remote::AfarAction;
using remote::KeyWay;
using remote::KeyWish;

constexpr int kKeysTab = 5;

struct FarKeysTest : testing::Test, DeckBench {
  forms::KeyRow& Row(AfarAction action) { return config.keys[remote::IndexOf(action)]; }
  const std::string& Text(AfarAction action) { return Row(action).txtKey.Value; }
  const std::string& State(AfarAction action) { return Row(action).lblKeyState.Value; }

  void OpenPage() {
    form.mnuConfiguration.Press(By::Hand);
    config.frmConfiguration.Activate();
    config.tabConfiguration.RowClick(kKeysTab);
  }
  void Close() { config.mnuClose.Press(By::Hand); }
  /// A hand presses a key in the box of the action, and the desktop's answer is heard.
  void Choose(AfarAction action, const std::string& text) {
    Row(action).txtKey.Change(text);
    loop.Advance(0ms);
  }
  void StartOnPage(const store::Assignments& settings = {}) {
    StartWith(settings);
    OpenPage();
  }
  std::vector<KeyWish> Wishes() const {
    return keys.Wished.empty() ? std::vector<KeyWish>{} : keys.Wished.back();
  }
};

/// A deck of its own on the page of the keys, where Play and Stop have this key.
struct PageWithOneKey : DeckBench {
  explicit PageWithOneKey(
      const std::string& key, const std::function<void(DeckBench&)>& before = [](DeckBench&) {}) {
    before(*this);
    StartWith({{"PlayStopKey", key}});
    form.mnuConfiguration.Press(By::Hand);
    config.frmConfiguration.Activate();
    config.tabConfiguration.RowClick(kKeysTab);
  }
};

TEST_F(FarKeysTest, EachRowSaysWhatItsKeyDoesAndHasNoneAtFirst) {
  StartOnPage();
  EXPECT_TRUE(config.frameConfigKeys.Visible);
  for (const remote::AfarActionName& name : remote::kAfarActions) {
    EXPECT_EQ(Row(name.action).lblKey.Value.Get(), name.description);
    EXPECT_EQ(Text(name.action), "");
    EXPECT_EQ(State(name.action), "");
    EXPECT_FALSE(Row(name.action).Down);
  }
}

TEST_F(FarKeysTest, WithoutAKeyNothingIsEverWished) {
  StartOnPage();
  Close();
  OpenPage();
  loop.Advance(10s);
  EXPECT_TRUE(keys.Wished.empty());
  EXPECT_EQ(keys.Tries, 0);
}

TEST_F(FarKeysTest, StoredKeysAreWishedOnceTheLoadHasEnded) {
  PlaceSettings({{"PlayStopKey", "F4"}, {"SkipKey", "CTRL+F5"}});
  deck.Start();
  base::Timer inTheLoad(loop, "inTheLoad", 5999ms);
  inTheLoad.OnTick = [&] {
    inTheLoad.Stop();
    EXPECT_TRUE(form.frmMain.Visible);
    EXPECT_TRUE(keys.Wished.empty());
  };
  inTheLoad.Start();
  loop.Advance(7s);
  EXPECT_FALSE(inTheLoad.Enabled());
  EXPECT_EQ(Wishes(),
            (std::vector<KeyWish>{{AfarAction::PlayStop, "F4"}, {AfarAction::Skip, "CTRL+F5"}}));
  EXPECT_EQ(keys.Wished.size(), 1u);
}

TEST_F(FarKeysTest, ChosenKeyIsTheDecksAtOnceAndStoredAsTheWindowCloses) {
  StartOnPage();
  Choose(AfarAction::PlayStop, "F4");
  EXPECT_EQ(Text(AfarAction::PlayStop), "F4");
  EXPECT_EQ(State(AfarAction::PlayStop), "");
  EXPECT_TRUE(keys.Holds(AfarAction::PlayStop));
  EXPECT_EQ(Stored("PlayStopKey"), "");
  Close();
  EXPECT_EQ(Stored("PlayStopKey"), "F4");
}

TEST_F(FarKeysTest, DeleteClearsAKeyAndTheLastOneLeavesNothingWished) {
  StartOnPage({{"PlayStopKey", "F4"}, {"SaveKey", "F5"}});
  Choose(AfarAction::PlayStop, "");
  EXPECT_EQ(Wishes(), (std::vector<KeyWish>{{AfarAction::Save, "F5"}}));
  Choose(AfarAction::Save, "");
  EXPECT_FALSE(keys.AnyWish());
  Close();
  EXPECT_EQ(Stored("PlayStopKey"), "");
  EXPECT_EQ(Stored("SaveKey"), "");
}

TEST_F(FarKeysTest, KeyThatIsNeededForWritingIsRefusedWithWordsAndPutBack) {
  StartOnPage({{"PlayStopKey", "F4"}});
  const std::size_t wishes = keys.Wished.size();
  Choose(AfarAction::PlayStop, "a");
  EXPECT_EQ(Text(AfarAction::PlayStop), "F4");
  EXPECT_EQ(State(AfarAction::PlayStop), "A is needed for writing.");
  Choose(AfarAction::Skip, "space");
  EXPECT_EQ(Text(AfarAction::Skip), "");
  EXPECT_EQ(State(AfarAction::Skip), "Space is needed for writing.");
  EXPECT_EQ(keys.Wished.size(), wishes) << "nothing of it is wished";
}

TEST_F(FarKeysTest, KeyOfAnotherActionIsRefusedByItsName) {
  StartOnPage({{"PlayStopKey", "CTRL+F4"}});
  Choose(AfarAction::Skip, "CTRL+F4");
  EXPECT_EQ(Text(AfarAction::Skip), "");
  EXPECT_EQ(State(AfarAction::Skip), "Ctrl+F4 is the key of \"Play, and stop again\".");
}

TEST_F(FarKeysTest, KeyThatTheDeckHasIsRefusedInTheBoxThatItDoesNotReach) {
  StartOnPage({{"PlayStopKey", "F4"}});
  Row(AfarAction::Save).HasKeyboard = true;
  keys.Down(AfarAction::PlayStop);
  loop.Advance(0ms);
  EXPECT_EQ(State(AfarAction::Save), "F4 is the key of \"Play, and stop again\".");
  EXPECT_EQ(State(AfarAction::PlayStop), "");
  EXPECT_EQ(State(AfarAction::Skip), "");
  keys.Up(AfarAction::PlayStop);
  Row(AfarAction::Save).HasKeyboard = false;
  Row(AfarAction::PlayStop).HasKeyboard = true;
  keys.Down(AfarAction::PlayStop);
  loop.Advance(0ms);
  EXPECT_EQ(State(AfarAction::PlayStop), "") << "it is in the box already";
}

TEST_F(FarKeysTest, DesktopThatDoesNotNameTheKeyItGaveIsSaidTo) {
  keys.Here = KeyWay::Portal;
  StartOnPage({{"PlayStopKey", "F4"}});
  EXPECT_EQ(State(AfarAction::PlayStop), "The desktop does not say which key it gave.");
  keys.Give(AfarAction::PlayStop, "F4");
  loop.Advance(0ms);
  EXPECT_EQ(State(AfarAction::PlayStop), "The desktop gave: F4");
}

TEST_F(FarKeysTest, KeyIsTheSameInWhateverOrderItsModifiersStand) {
  StartOnPage({{"PlayStopKey", "SHIFT+CTRL+F4"}});
  EXPECT_EQ(Wishes(), (std::vector<KeyWish>{{AfarAction::PlayStop, "CTRL+SHIFT+F4"}}));
  Choose(AfarAction::Skip, "CTRL+SHIFT+F4");
  EXPECT_EQ(Text(AfarAction::Skip), "");
  Choose(AfarAction::Save, "LOGO+ALT+F5");
  EXPECT_EQ(Text(AfarAction::Save), "ALT+LOGO+F5");
  EXPECT_TRUE(keys.Holds(AfarAction::Save));
  Choose(AfarAction::Save, "SHIFT+CTRL+F4");
  EXPECT_EQ(Text(AfarAction::Save), "ALT+LOGO+F5");
}

TEST_F(FarKeysTest, HostileTextsAreRefusedAndPutBack) {
  StartOnPage({{"PlayStopKey", "F4"}});
  for (const std::string& text :
       {std::string(65'536, '+'), std::string(65'536, 'F'), std::string("F5\0", 3),
        std::string("\xFF\xFE"), std::string("CTRL+"), std::string("F5\nF6"), std::string(" ")}) {
    Choose(AfarAction::PlayStop, text);
    EXPECT_TRUE(Text(AfarAction::PlayStop) == "F4" || Text(AfarAction::PlayStop) == "F5")
        << text.substr(0, 20);
  }
  EXPECT_EQ(State(AfarAction::PlayStop), "This key can not be used.");
  EXPECT_TRUE(keys.Holds(AfarAction::PlayStop));
}

TEST_F(FarKeysTest, RefusalIsForgottenWithTheNextKeyAndWithTheNextPage) {
  StartOnPage();
  Choose(AfarAction::PlayStop, "a");
  Choose(AfarAction::PlayStop, "F4");
  EXPECT_EQ(State(AfarAction::PlayStop), "");
  Choose(AfarAction::PlayStop, "b");
  EXPECT_NE(State(AfarAction::PlayStop), "");
  config.tabConfiguration.RowClick(0);
  config.tabConfiguration.RowClick(kKeysTab);
  EXPECT_EQ(State(AfarAction::PlayStop), "");
}

TEST_F(FarKeysTest, ChosenKeyOfAnotherProgramGoesBackAndSaysSo) {
  StartOnPage({{"PlayStopKey", "F4"}});
  keys.OfOthers = {"F5"};
  Choose(AfarAction::PlayStop, "F5");
  EXPECT_EQ(Text(AfarAction::PlayStop), "F4");
  EXPECT_EQ(State(AfarAction::PlayStop), "Another program has F5.");
  EXPECT_TRUE(keys.Holds(AfarAction::PlayStop));
  Close();
  EXPECT_EQ(Stored("PlayStopKey"), "F4");
}

TEST_F(FarKeysTest, StoredKeyOfAnotherProgramStaysAndSaysSo) {
  keys.OfOthers = {"F4"};
  StartOnPage({{"PlayStopKey", "F4"}});
  EXPECT_EQ(Text(AfarAction::PlayStop), "F4");
  EXPECT_EQ(State(AfarAction::PlayStop), "Another program has this key.");
  keys.OfOthers = {};
  config.tabConfiguration.RowClick(0);
  config.tabConfiguration.RowClick(kKeysTab);
  loop.Advance(0ms);
  EXPECT_EQ(State(AfarAction::PlayStop), "") << "the page that comes to the front tries again";
  EXPECT_TRUE(keys.Holds(AfarAction::PlayStop));
}

TEST_F(FarKeysTest, WhoComesBackToThePageHasTakenKeysTriedAgain) {
  keys.OfOthers = {"F4"};
  StartOnPage({{"PlayStopKey", "F4"}});
  keys.OfOthers = {};
  config.frmConfiguration.Activate();
  loop.Advance(0ms);
  EXPECT_TRUE(keys.Holds(AfarAction::PlayStop));
  keys.OfOthers = {"F4"};
  keys.ChangeDesktop();
  Close();
  keys.OfOthers = {};
  form.mnuConfiguration.Press(By::Hand);
  config.frmConfiguration.Activate();
  loop.Advance(0ms);
  EXPECT_TRUE(keys.Holds(AfarAction::PlayStop)) << "on whichever page the window was closed";
}

TEST_F(FarKeysTest, DesktopThatAsksIsNotAskedAgainByTheEndOfItsOwnQuestion) {
  keys.Here = KeyWay::Portal;
  keys.Denied = {"F4"};
  StartOnPage({{"PlayStopKey", "F4"}});
  const int tries = keys.Tries;
  for (int times = 0; times < 3; ++times) config.frmConfiguration.Activate();
  EXPECT_EQ(keys.Tries, tries);
  EXPECT_EQ(State(AfarAction::PlayStop), "The desktop does not give this key.");
}

TEST_F(FarKeysTest, KeyStaysOnTrialUntilTheDesktopAnswers) {
  keys.Here = KeyWay::Portal;
  keys.Answers = false;
  StartOnPage();
  Choose(AfarAction::PlayStop, "F4");
  EXPECT_EQ(State(AfarAction::PlayStop), "The desktop is asked.");
  Choose(AfarAction::PlayStop, "F5");
  keys.OfOthers = {"F5"};
  keys.Answer();
  loop.Advance(0ms);
  EXPECT_EQ(Text(AfarAction::PlayStop), "") << "to what was in effect for sure";
}

TEST_F(FarKeysTest, KeyThatGoesBackBehindTheClosedWindowIsStoredSo) {
  keys.Answers = false;
  StartOnPage({{"PlayStopKey", "F4"}});
  keys.Answer();
  loop.Advance(0ms);
  Choose(AfarAction::PlayStop, "F5");
  Close();
  ASSERT_EQ(Stored("PlayStopKey"), "F5");
  keys.OfOthers = {"F5"};
  keys.Answer();
  loop.Advance(0ms);
  EXPECT_EQ(Text(AfarAction::PlayStop), "F4");
  EXPECT_EQ(Stored("PlayStopKey"), "F4");
}

TEST_F(FarKeysTest, KeyDoesNotGoBackToOneThatAnotherActionHasGotMeanwhile) {
  keys.Answers = false;
  StartOnPage({{"PlayStopKey", "F4"}});
  keys.Answer();
  loop.Advance(0ms);
  Choose(AfarAction::PlayStop, "F5");
  Choose(AfarAction::Skip, "F4");
  keys.OfOthers = {"F5"};
  keys.Answer();
  loop.Advance(0ms);
  EXPECT_EQ(Text(AfarAction::Skip), "F4");
  EXPECT_EQ(Text(AfarAction::PlayStop), "");
  EXPECT_EQ(State(AfarAction::PlayStop), "Another program has F5.");
}

TEST_F(FarKeysTest, ClearedKeyIsNoLongerOnTrial) {
  keys.Answers = false;
  StartOnPage({{"PlayStopKey", "F4"}, {"SkipKey", "F6"}});
  Choose(AfarAction::PlayStop, "F5");
  Choose(AfarAction::PlayStop, "");
  keys.OfOthers = {"F5"};
  keys.Answer();
  loop.Advance(0ms);
  EXPECT_EQ(Text(AfarAction::PlayStop), "");
}

TEST_F(FarKeysTest, StoredTextThatIsNoKeyStaysAsItIsAndIsNotWished) {
  const std::string longOne(200, 'k');
  for (const std::string& text :
       {std::string("HYPER+F4"), longOne, std::string("\xFF"), std::string("F4+F5")}) {
    PageWithOneKey bench(text);
    EXPECT_EQ(bench.config.keys[0].txtKey.Value.Get(), text);
    EXPECT_EQ(bench.config.keys[0].lblKeyState.Value.Get(), "This release does not know the key.");
    EXPECT_TRUE(bench.keys.Wished.empty());
    bench.config.mnuClose.Press(By::Hand);
    EXPECT_EQ(bench.Stored("PlayStopKey"), text);
  }
}

TEST_F(FarKeysTest, StoredKeyThatIsNeededForWritingIsNotWished) {
  StartOnPage({{"PlayStopKey", "a"}});
  EXPECT_TRUE(keys.Wished.empty());
  EXPECT_EQ(State(AfarAction::PlayStop), "A is needed for writing.");
  Close();
  EXPECT_EQ(Stored("PlayStopKey"), "a");
}

TEST_F(FarKeysTest, OfTwoActionsWithTheSameStoredKeyTheFirstHasIt) {
  StartOnPage({{"PlayStopKey", "CTRL+SHIFT+F4"}, {"SkipKey", "SHIFT+CTRL+F4"}});
  EXPECT_EQ(Wishes(), (std::vector<KeyWish>{{AfarAction::PlayStop, "CTRL+SHIFT+F4"}}));
  EXPECT_EQ(State(AfarAction::Skip), "Ctrl+Shift+F4 is the key of \"Play, and stop again\".");
  EXPECT_EQ(Text(AfarAction::Skip), "SHIFT+CTRL+F4");
  Choose(AfarAction::PlayStop, "F5");
  EXPECT_TRUE(keys.Holds(AfarAction::Skip)) << "it is free now";
  EXPECT_EQ(State(AfarAction::Skip), "");
}

TEST_F(FarKeysTest, StatesOfKeysAreSaidInWords) {
  keys.NoKeys = {"XF86Launch9"};
  StartOnPage({{"PlayStopKey", "XF86Launch9"}});
  EXPECT_EQ(State(AfarAction::PlayStop), "This keyboard has no such key.");
  Choose(AfarAction::Skip, "F6");
  keys.Give(AfarAction::Skip, "Meta+F9");
  loop.Advance(0ms);
  EXPECT_EQ(State(AfarAction::Skip), "The desktop gave: Meta+F9");
}

TEST_F(FarKeysTest, PageSaysHowKeysComeToTheDeckHere) {
  struct Case {
    KeyWay way;
    bool hasPage;
    const char* words;
  };
  for (const Case& c :
       {Case{KeyWay::Grabs, false, "A pedal that sends keys works, too"},
        Case{KeyWay::Portal, true, "its own page changes them"},
        Case{KeyWay::Portal, false, "its settings of keyboard shortcuts change them"},
        Case{KeyWay::PortalMissing, false, "This desktop lets no program have keys"},
        Case{KeyWay::None, false, "There is no desktop here"}}) {
    PageWithOneKey bench("F4", [&](DeckBench& desk) {
      desk.keys.Here = c.way;
      desk.keys.HasPage = c.hasPage;
    });
    const std::string& words = bench.config.lblKeysWay.Value;
    EXPECT_NE(words.find(c.words), std::string::npos) << words;
    EXPECT_EQ(bench.config.cmdDesktopKeys.Visible.Get(), c.hasPage);
  }
}

TEST_F(FarKeysTest, WhereTheDesktopGivesNoKeysThePageSaysWhetherMediaKeysWork) {
  keys.Here = KeyWay::PortalMissing;
  StartOnPage({{"PlayStopKey", "F4"}});
  EXPECT_EQ(config.lblMediaKeys.Value.Get(),
            "Media keys, headset buttons and lock screens run the deck.");
  bus.SetThere(false);
  loop.Advance(0ms);
  for (const forms::Text* const text : {&config.lblKeysWay, &config.lblMediaKeys}) {
    EXPECT_EQ(text->Value.Get().find("Media keys work"), std::string::npos) << text->Name;
    EXPECT_EQ(text->Value.Get().find("run the deck"), std::string::npos) << text->Name;
  }
}

TEST_F(FarKeysTest, DesktopsOwnPageIsOfferedWhereThereIsOneAndShownByItsKey) {
  keys.Here = KeyWay::Portal;
  StartOnPage({{"PlayStopKey", "F4"}});
  EXPECT_FALSE(config.cmdDesktopKeys.Visible);
  keys.HasPage = true;
  keys.ChangeDesktop();
  loop.Advance(0ms);
  ASSERT_TRUE(config.cmdDesktopKeys.Visible);
  config.cmdDesktopKeys.Press(By::Hand);
  EXPECT_EQ(keys.PagesShown, 1);
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
  keys.HasPage = false;
  config.cmdDesktopKeys.Press(By::Hand);
  EXPECT_EQ(keys.PagesShown, 1) << "it has gone meanwhile";
}

TEST_F(FarKeysTest, KeyThatIsDownIsLitWhileItIsDownWhateverItDoes) {
  StartOnPage({{"CompleteKey", "F4"}});
  keys.Down(AfarAction::Complete);
  loop.Advance(0ms);
  EXPECT_TRUE(Row(AfarAction::Complete).Down);
  EXPECT_FALSE(Row(AfarAction::Skip).Down);
  keys.Up(AfarAction::Complete);
  loop.Advance(0ms);
  EXPECT_FALSE(Row(AfarAction::Complete).Down);
}

TEST_F(FarKeysTest, BoxOfTheBusIsStoredAsItsTick) {
  StartOnPage();
  EXPECT_FALSE(config.chkBusSaysNothing.Value);
  config.chkBusSaysNothing.Click();
  EXPECT_EQ(config.txtBusSaysNothing.Value.Get(), "Y");
  EXPECT_EQ(config.frmConfiguration.Focused(), &config.txtFocus);
  Close();
  EXPECT_EQ(Stored("BusSaysNothingFlag"), "Y");
  OpenPage();
  EXPECT_TRUE(config.chkBusSaysNothing.Value);
}

TEST_F(FarKeysTest, KeysAreGivenBackWithTheDeck) {
  SimulatedPlatform platform;
  platform.disk.WithFolder(kRoot);
  for (const char* folder : {"/Prompts", "/Fascia"}) platform.disk.WithFolder(kShare + folder);
  platform.PlaceSettings({{"PlayStopKey", "F4"}});
  {
    shell::Deck onPlatform(platform.Edges());
    onPlatform.Start();
    platform.loop.Advance(10s);
    EXPECT_TRUE(platform.keys.AnyWish());
  }
  EXPECT_FALSE(platform.keys.AnyWish());
}

}  // namespace
}  // namespace tavlo::test
