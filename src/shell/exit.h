#pragma once

#include <functional>

#include "base/loop.h"
#include "shell/rooms.h"

namespace tavlo::shell {

/// The exit rules. A close request never closes the window by itself: the process ends when every
/// test has passed, and a refusal leaves all as it was, except that playback has stopped. At the
/// end of the desktop's session nothing is asked or refused: what there is to store is stored, and
/// the process ends.
class Exit {
 public:
  /// `endProcess` ends the process once the loop is back at its top, or at once when the session
  /// ends.
  Exit(base::Loop& loop, Windows& windows, Rooms& rooms,
       std::function<void(int status)> endProcess);

  /// The session ends: stores and ends the process, without a question or a wait. A finishing key
  /// that is on its way to its outcome gets there first. May be called again and again.
  void EndSession();
  /// The same where the loop never turns again: what a key asked for is stored here and now.
  void EndSessionNow();

 private:
  void ExitByMenu();
  void ExitByFrame();
  void StopSound();
  /// A command that yields to the loop would go on behind the window that is gone; a Complete or a
  /// Save has not stored its outcome yet.
  bool ListIsChanging() const;
  bool FtpIsConnected();
  bool DocumentIsOpen();
  bool UserAgrees();
  void EndUnlessADocumentIsOpen();
  void End();
  void StoreSettings();
  /// Gives keys of other windows and media keys back.
  void EndFromAfar();
  void WaitUntil(base::MonotonicTime moment);
  base::Reply ShowExitBox(const char* text, base::Icon icon, base::Buttons buttons);

  base::Loop& loop_;
  forms::MainForm& form_;
  Rooms& rooms_;
  std::function<void(int status)> endProcess_;
  bool sessionEnded_ = false;
};

}  // namespace tavlo::shell
