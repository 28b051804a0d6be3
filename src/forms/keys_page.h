#pragma once

#include <array>
#include <cstddef>
#include <string>

#include "forms/controls.h"

/// The "&Keys" page of the configuration window: which keys run the deck while another window has
/// the keyboard.
namespace tavlo::forms {

/// One action and its key. The rules write what the action is called.
struct KeyRow {
  /// Characters that a key's text may have.
  static constexpr std::size_t kLongest = 64;

  KeyRow(Pane* frame, const std::string& name)
      : lblKey(frame, "lbl" + name + "Key"),
        txtKey(frame, "txt" + name + "Key",
               {.tooltip = "Click here and press the key; Delete clears it"}, kLongest),
        lblKeyState(frame, "lbl" + name + "KeyState") {}

  Text lblKey;
  /// The key as it is stored, which is shown in a person's words.
  Text txtKey;
  /// What there is to say of the key; empty when it simply works.
  Text lblKeyState;
  /// The key is down now, seen from any window.
  State<bool> Down{txtKey, false};
  /// What is pressed goes into the box; the binding keeps it.
  bool HasKeyboard = false;
};

struct KeysPage {
  explicit KeysPage(Window& window)
      : frameConfigKeys(&window, "frameConfigKeys", {.visible = false}) {}

  Pane frameConfigKeys;
  /// How keys of other windows come to the deck on this desktop.
  Text lblKeysWay{&frameConfigKeys, "lblKeysWay"};
  Command cmdDesktopKeys{&frameConfigKeys,
                         "cmdDesktopKeys",
                         {.caption = "&Desktop's Own Page",
                          .tooltip = "Let the desktop show and change the keys that it has given",
                          .visible = false}};
  std::array<KeyRow, 12> keys{{{&frameConfigKeys, "PlayStop"},
                               {&frameConfigKeys, "PlayHeld"},
                               {&frameConfigKeys, "RewindHeld"},
                               {&frameConfigKeys, "ForwardHeld"},
                               {&frameConfigKeys, "ToBeginning"},
                               {&frameConfigKeys, "ToEnd"},
                               {&frameConfigKeys, "Slower"},
                               {&frameConfigKeys, "Faster"},
                               {&frameConfigKeys, "NormalSpeed"},
                               {&frameConfigKeys, "Complete"},
                               {&frameConfigKeys, "Save"},
                               {&frameConfigKeys, "Skip"}}};
  /// Whether media keys and scripts reach the deck.
  Text lblMediaKeys{&frameConfigKeys, "lblMediaKeys"};
  Choice chkBusSaysNothing{
      &frameConfigKeys,
      "chkBusSaysNothing",
      {.caption = "Say nothing about the document on the bus",
       .tooltip = "Media keys work as before; lock screens and scripts see no author, no subject "
                  "and no times"}};
  Text txtBusSaysNothing{&frameConfigKeys, "txtBusSaysNothing", {.visible = false}};
};

}  // namespace tavlo::forms
