#include "forms/control_groups.h"

namespace tavlo::forms {

ControlGroup Menus(MainForm& form) { return {&form.mnuFile, &form.mnuView, &form.mnuReport}; }

ControlGroup MovingKeys(MainForm& form) {
  return {&form.cmdSkipBeg, &form.cmdRewind, &form.cmdForward, &form.cmdSkipEnd};
}

ControlGroup TransportKeys(MainForm& form) {
  return {&form.cmdSkipBeg, &form.cmdRewind,  &form.cmdStop,
          &form.cmdPlay,    &form.cmdForward, &form.cmdSkipEnd};
}

ControlGroup FinishingKeys(MainForm& form) {
  return {&form.cmdSkip, &form.cmdSave, &form.cmdComplete};
}

ControlGroup SoundShapingKeys(MainForm& form) { return {&form.cmdEQ, &form.cmdNormalSpeed}; }

ControlGroup CompletedKeys(MainForm& form) {
  return {&form.cmdMoveToQueue, &form.cmdDeleteOneCompleted, &form.cmdDeleteAllCompleted};
}

ControlGroup ImportKeys(MainForm& form) {
  return {&form.cmdSendImportFileToQueue, &form.cmdSendAllImportFilesToQueue,
          &form.cmdDeleteOneImportFile, &form.cmdDeleteAllImportFile};
}

bool SliderIsHeld(const MainForm& form) {
  return form.slPosition.IsHeld() || form.Slider1.IsHeld() || form.sldVol.IsHeld();
}

void SetEnabled(const ControlGroup& group, bool enabled) {
  for (Control* control : group) control->Enabled = enabled;
}

}  // namespace tavlo::forms
