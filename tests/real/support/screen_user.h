#pragma once

#include <string>

#include "support/screen.h"

namespace tavlo::test {

/// What somebody does with a started program who has nothing of it but its windows.
struct ScreenUser {
  /// Answers the box of that title with Return; it must come.
  void Answer(const std::string& title);
  /// Ends the splash by the keyboard and waits for the deck.
  void PassSplash();
  /// Presses the close button until the deck has time to listen to it, and agrees.
  void Exit();

  Screen screen;
};

}  // namespace tavlo::test
