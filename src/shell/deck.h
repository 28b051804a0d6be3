#pragma once

#include <optional>
#include <string>

#include "shell/exit.h"
#include "shell/load.h"
#include "shell/platform.h"
#include "shell/rooms.h"
#include "shell/splash.h"
#include "store/work_folders.h"

namespace tavlo::shell {

/// The whole program on its edges: what main builds and what the tests build.
class Deck {
 public:
  /// The edges outlive the deck.
  explicit Deck(Platform platform);

  Windows windows;

  /// Hands the files that it was given to a copy that runs already, or refuses to be a second one;
  /// else makes a fresh root, opens the settings and shows the splash; the main window follows by
  /// itself. When it cannot go on, as where the root gives no answer, it says why
  /// and asks for the end of the process.
  void Start();

  /// The desktop's session ends: stores what there is to store and asks for the end of the process,
  /// as soon as a document that is just being finished is stored. May be called at any time.
  void EndSession();
  /// The same where the loop never turns again.
  void EndSessionNow();

  /// The rooms, once the settings are open; null until then.
  Rooms* Built() { return rooms_ ? &*rooms_ : nullptr; }

 private:
  bool RootIsOutOfReach();
  /// Makes a fresh root where there is none, or adds what it lacks, and opens the settings. Gives
  /// the empty text or what failed.
  std::string OpenRoot(store::OpenedDatabase& opened);
  void RefuseSecondCopy();
  void EndWith(const std::string& failure);

  Platform platform_;
  store::WorkFolders folders_;
  std::optional<Rooms> rooms_;
  std::optional<Load> load_;
  std::optional<Exit> exit_;
  Splash splash_;
};

}  // namespace tavlo::shell
