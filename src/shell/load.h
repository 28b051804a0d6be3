#pragma once

#include "base/loop.h"
#include "shell/rooms.h"

namespace tavlo::shell {

/// Brings the main window from its first moment on the screen to the first refresh. Menus stay
/// disabled and the hourglass stands until then, so that no user action arrives in that stretch.
class Load {
 public:
  Load(base::Loop& loop, Windows& windows, Rooms& rooms);

  /// The whole load, with its waits.
  void LoadMainWindow();

 private:
  void TakeWindowShape();
  void InitializeWorkAreas();
  void ResetPedals();
  void StartAlertTimer();
  void FillChoices();
  void HandleActivate();

  base::Loop& loop_;
  Windows& windows_;
  Rooms& rooms_;
};

}  // namespace tavlo::shell
