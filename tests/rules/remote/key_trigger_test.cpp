#include "remote/key_trigger.h"

#include <gtest/gtest.h>

#include <string>

namespace tavlo::test {
namespace {

using remote::KeyTrigger;
using remote::WhyNeededForWriting;

std::string WhyNot(const std::string& text) {
  const auto trigger = KeyTrigger::Of(text);
  return trigger ? WhyNeededForWriting(*trigger) : "no key: " + text;
}

TEST(KeyTriggers, AreModifiersAndAKeyJoinedByPlusSigns) {
  const auto trigger = KeyTrigger::Of("CTRL+ALT+SHIFT+LOGO+F4");
  ASSERT_TRUE(trigger);
  EXPECT_EQ(*trigger,
            (KeyTrigger{.ctrl = true, .alt = true, .shift = true, .logo = true, .key = "F4"}));
  EXPECT_EQ(trigger->Text(), "CTRL+ALT+SHIFT+LOGO+F4");
  EXPECT_EQ(trigger->InWords(), "Ctrl+Alt+Shift+Super+F4");
  EXPECT_EQ(KeyTrigger::Of("F4"), (KeyTrigger{.key = "F4"}));
}

TEST(KeyTriggers, HaveOneTextWhateverOrderTheyCameIn) {
  EXPECT_EQ(KeyTrigger::Of("SHIFT+CTRL+F4")->Text(), "CTRL+SHIFT+F4");
  EXPECT_EQ(KeyTrigger::Of("LOGO+ALT+a")->Text(), "ALT+LOGO+a");
  EXPECT_EQ(KeyTrigger::Of("CTRL+A")->Text(), "CTRL+a") << "it is the same key";
  EXPECT_EQ(KeyTrigger::Of("CTRL+Odiaeresis")->Text(), "CTRL+Odiaeresis");
}

TEST(KeyTriggers, AreSaidAsAPersonKnowsThem) {
  struct Case {
    const char* text;
    const char* words;
  };
  for (const Case& c :
       {Case{"CTRL+a", "Ctrl+A"}, Case{"ALT+z", "Alt+Z"}, Case{"LOGO+7", "Super+7"},
        Case{"CTRL+Return", "Ctrl+Enter"}, Case{"Escape", "Esc"}, Case{"CTRL+space", "Ctrl+Space"},
        Case{"Prior", "Page Up"}, Case{"Page_Down", "Page Down"},
        Case{"Scroll_Lock", "Scroll Lock"}, Case{"XF86Launch5", "Launch5"},
        Case{"KP_Enter", "Keypad Enter"}, Case{"KP_Add", "Keypad +"}, Case{"KP_5", "Keypad 5"},
        Case{"KP_Home", "Keypad Home"}, Case{"odiaeresis", "\u00D6"},
        Case{"SHIFT+F12", "Shift+F12"}, Case{"Pause", "Pause"}, Case{"CTRL+Left", "Ctrl+Left"}}) {
    const auto trigger = KeyTrigger::Of(c.text);
    ASSERT_TRUE(trigger) << c.text;
    EXPECT_EQ(trigger->InWords(), c.words);
  }
}

TEST(KeyTriggers, AreNoOtherTexts) {
  const std::string texts[] = {
      "",
      "+",
      "++",
      "CTRL+",
      "+F4",
      "F4+",
      "CTRL++F4",
      "ctrl+F4",
      "Ctrl+F4",
      "CTRL+CTRL+F4",
      "F4+CTRL",
      "CTRL F4",
      " F4",
      "F4 ",
      "F-4",
      "\xC3\xB6",
      "\xFF\xFE",
      "CTRL+\n",
      "META+F4",
      "F4\nF5",
      "<b>F4</b>",
      "/etc/passwd",
      "%s%n",
      std::string("F4\0", 3),
      std::string("\0", 1),
      std::string("CTRL+\0F4", 8),
      std::string(41, 'a'),
      std::string(65'536, 'a'),
      std::string(65'536, '+'),
  };
  for (const std::string& text : texts) {
    EXPECT_FALSE(KeyTrigger::Of(text)) << text.substr(0, 40);
  }
  std::string modifiers;
  while (modifiers.size() < 65'536) modifiers += "CTRL+ALT+";
  EXPECT_FALSE(KeyTrigger::Of(modifiers + "F4"));
  EXPECT_TRUE(KeyTrigger::Of(std::string(40, 'a')));
}

TEST(KeyTriggers, OfTypedCharactersAreNeededForWritingWithShiftToo) {
  for (const std::string shift : {"", "SHIFT+"}) {
    for (char letter = 'a'; letter <= 'z'; ++letter) {
      EXPECT_NE(WhyNot(shift + letter), "") << letter;
    }
    for (char digit = '0'; digit <= '9'; ++digit) {
      EXPECT_NE(WhyNot(shift + digit), "") << digit;
      EXPECT_NE(WhyNot(shift + "KP_" + digit), "") << digit;
    }
    for (const std::string key : {"comma",
                                  "period",
                                  "minus",
                                  "plus",
                                  "numbersign",
                                  "question",
                                  "ssharp",
                                  "adiaeresis",
                                  "odiaeresis",
                                  "udiaeresis",
                                  "Udiaeresis",
                                  "EuroSign",
                                  "at",
                                  "braceleft",
                                  "eacute",
                                  "dead_acute",
                                  "dead_circumflex",
                                  "U20AC",
                                  "Cyrillic_a",
                                  "hiragana",
                                  "KP_Add",
                                  "KP_Decimal",
                                  "KP_Enter",
                                  "KP_Home",
                                  "KP_Left",
                                  "space",
                                  "Return",
                                  "Tab",
                                  "ISO_Left_Tab",
                                  "BackSpace",
                                  "Delete",
                                  "Insert",
                                  "Escape",
                                  "Home",
                                  "End",
                                  "Prior",
                                  "Next",
                                  "Page_Up",
                                  "Page_Down",
                                  "Left",
                                  "Right",
                                  "Up",
                                  "Down",
                                  "Multi_key",
                                  "Codeinput",
                                  "F",
                                  "FX",
                                  "Caps_Lock",
                                  "Num_Lock"}) {
      EXPECT_NE(WhyNot(shift + key), "") << shift + key;
    }
  }
  EXPECT_EQ(WhyNot("space"), "Space is needed for writing.");
  EXPECT_EQ(WhyNot("SHIFT+a"), "Shift+A is needed for writing.");
  EXPECT_EQ(WhyNot("odiaeresis"), "\u00D6 is needed for writing.");
  EXPECT_EQ(WhyNot("KP_5"), "Keypad 5 is needed for writing.");
}

TEST(KeyTriggers, WithCtrlAltOrSuperAreSpareWhateverTheKeyIs) {
  for (const std::string with : {"CTRL+", "ALT+", "LOGO+", "CTRL+SHIFT+", "ALT+SHIFT+"}) {
    for (const std::string key : {"a", "5", "space", "Return", "Left", "Delete", "period", "F4"}) {
      EXPECT_EQ(WhyNot(with + key), "") << with + key;
    }
  }
}

TEST(KeyTriggers, OfKeysThatWriteNothingAreSpare) {
  for (const std::string shift : {"", "SHIFT+"}) {
    for (const std::string key :
         {"F1", "F4", "F12", "F13", "F24", "F35", "Pause", "Break", "Scroll_Lock", "Print", "Menu",
          "Help", "XF86AudioPlay", "XF86Launch1", "XF86Calculator", "SunF36", "Undo"}) {
      EXPECT_EQ(WhyNot(shift + key), "") << shift + key;
    }
  }
}

TEST(KeyTriggers, AreNotModifiersAlone) {
  for (const std::string with : {"", "CTRL+", "SHIFT+ALT+"}) {
    for (const std::string key : {"Shift_L", "Shift_R", "Control_L", "Alt_R", "Meta_L", "Super_L",
                                  "Hyper_R", "ISO_Level3_Shift", "Mode_switch"}) {
      EXPECT_EQ(WhyNot(with + key), "Choose a key that is not held together with others.")
          << with + key;
    }
  }
}

}  // namespace
}  // namespace tavlo::test
