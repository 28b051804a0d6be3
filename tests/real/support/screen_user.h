#pragma once

#include <string>

#include "support/screen.h"

namespace tavlo::test {

/// What somebody does with a started program who has nothing of it but its windows.
struct ScreenUser {
  /// Answers the box of that title with Return; it must come.
  void Answer(const std::string& title);
  /// Waits for the deck, and ends the splash by the keyboard that must come before it. On a busy
  /// machine that may have gone by itself before anybody looked.
  void PassSplash();
  /// Presses the close button until the deck has time to listen to it, and agrees.
  void Exit();

  Screen screen;
};

}  // namespace tavlo::test
