#pragma once

#include <string>

#include "store/settings_database.h"
#include "support/home.h"
#include "support/screen_user.h"
#include "support/started_program.h"

namespace tavlo::test {

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, const std::string& bytes);

/// Somebody who has settings of an older release, or a folder of another machine.
struct UpgradingUser : ScreenUser {
  StartedProgram Start() const { return {TAVLO_PROGRAM, home.Path()}; }

  std::string Old() const { return home.Root() + "/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.mdb"; }
  std::string Aside() const { return home.Root() + "/PlaceOldDatabaseHere/Lyrane_Tavlo_Deck.md1"; }
  std::string Marker() const { return home.Root() + "/PlaceOldDatabaseHere/UpgradeFinished.txt"; }
  /// Makes a root with its settings as shipped, and puts a file where old settings belong.
  void PlaceOld(const std::string& bytes) const;

  bool IsAsked() const { return screen.Box("Tavlo Deck - Upgrade").id != XCB_NONE; }
  void AwaitQuestion();
  /// Answers the question with Yes. Returns when the copy is done, and its box may still show.
  void SayYes();
  /// Closes the box of the upgrade where it shows. Returns when the start is past it: then the deck
  /// complains that there is no sound card.
  void GoOn();
  /// A start at which nothing is asked, until it is past that point.
  void StartUnasked();

  /// A stored field of the general settings; the program must not run.
  std::string Stored(const std::string& field) const;
  /// All rows and fields of the settings are there.
  void ExpectWholeSettings() const;

  Home home;
};

}  // namespace tavlo::test
