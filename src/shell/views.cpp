#include "shell/views.h"

#include "window/no_document.h"

namespace tavlo::shell {

Views::Views(base::Loop& loop, window::MainWindow& window, const playback::Playback& playback)
    : loop_(loop),
      form_(window.Form()),
      window_(window),
      engine_(playback.engine),
      transport_(playback.transport) {}

void Views::Register(View& view) {
  views_.push_back(&view);
  view.Entry().OnPress = [this, &view] { Show(view); };
}

void Views::Show(View& view) {
  // Another list change is inside a wait: it would go on in a view that is no longer its own.
  if (!window_.guards.ListsMayChange()) return;
  LeaveView();
  for (View* other : views_) other->Frame().Visible = other == &view;
  const forms::Hourglass hourglass(form_.frmMain);
  if (view.Caption() != nullptr) view.Frame().Caption = view.Caption();
  window_.CurrentView = view.Word();
  view.Enter();
}

void Views::LeaveView() {
  form_.cmdImportCompleteSnipetStop.Enabled = false;
  form_.cmdImportCompleteSnipetStop.Visible = true;
  transport_.StopWind();
  engine_.StopPlay();
  window_.DisableWindowControls();
  {
    const window::ListPause pause(window_.guards);
    loop_.Yield();
  }
  window_.EnableWindowControls();
  // What was chosen in the view that is left does not show any more.
  window::ShowNoDocument(form_);
}

}  // namespace tavlo::shell
