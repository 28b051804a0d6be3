#include "simulation/control_rules.h"

namespace tavlo::simulation {
namespace {

using forms::MainForm;

/// What the program does at rest: it shows one of its four views, or a document is in work.
enum Situation { Queue, Completed, Import, Ftp, Work };
constexpr const char* kSituations[] = {"Queue", "Completed", "Import", "Ftp", "work"};

enum class Is { On, Off, Either };
constexpr Is on = Is::On;
constexpr Is off = Is::Off;
/// Depends on what was done before, and is looked at elsewhere if at all.
constexpr Is any = Is::Either;

struct ControlRule {
  const forms::Control& (*control)(const MainForm& main);
  Is in[5];
};

template <auto Member>
const forms::Control& The(const MainForm& main) {
  return main.*Member;
}

/// Whether a control is enabled.
constexpr ControlRule kEnabled[] = {
    // control                                 Queue Compl Import Ftp  work
    // Whoever is connected has no menus.
    {&The<&MainForm::mnuFile>, {on, on, on, any, off}},
    {&The<&MainForm::mnuView>, {on, on, on, any, off}},
    {&The<&MainForm::mnuReport>, {on, on, any, any, off}},
    {&The<&MainForm::mnuConfiguration>, {on, on, on, on, any}},
    {&The<&MainForm::mnuExit>, {on, on, on, on, any}},
    {&The<&MainForm::listViewInQueue>, {on, any, any, any, off}},
    {&The<&MainForm::cmdUpdateFileList>, {on, any, any, any, off}},
    {&The<&MainForm::listViewCompleted>, {any, on, any, any, any}},
    {&The<&MainForm::listViewImport>, {any, any, on, any, any}},
    {&The<&MainForm::cmdSkip>, {off, off, off, off, on}},
    {&The<&MainForm::cmdSave>, {off, off, off, off, on}},
    {&The<&MainForm::cmdSkipBeg>, {off, off, off, off, on}},
    {&The<&MainForm::cmdRewind>, {off, off, off, off, on}},
    {&The<&MainForm::cmdForward>, {off, off, off, off, on}},
    {&The<&MainForm::cmdSkipEnd>, {off, off, off, off, on}},
    {&The<&MainForm::cmdStop>, {off, off, off, off, on}},
    // A view without a document of the Queue has none to play, to place or to complete.
    {&The<&MainForm::cmdPlay>, {any, off, off, off, on}},
    {&The<&MainForm::cmdComplete>, {any, off, off, off, any}},
    {&The<&MainForm::slPosition>, {any, off, off, off, on}},
    {&The<&MainForm::Slider1>, {any, any, any, any, on}},
    {&The<&MainForm::sldVol>, {on, on, on, any, any}},
    {&The<&MainForm::cmdEQ>, {any, any, any, any, on}},
    {&The<&MainForm::cmdNormalSpeed>, {any, any, any, any, on}},
    {&The<&MainForm::frameInQueue>, {on, on, on, on, on}},
    {&The<&MainForm::frameCompleted>, {on, on, on, on, on}},
};

/// Whether a control is visible.
constexpr ControlRule kVisible[] = {
    {&The<&MainForm::frameFiles>, {on, on, on, on, off}},
    {&The<&MainForm::framePlayer>, {on, on, on, on, on}},
    {&The<&MainForm::listViewInQueue>, {on, any, any, any, any}},
    {&The<&MainForm::cmdUpdateFileList>, {on, any, any, any, any}},
    {&The<&MainForm::listViewCompleted>, {any, on, any, any, any}},
    {&The<&MainForm::cmdStop>, {off, off, off, off, on}},
    {&The<&MainForm::cmdImportCompleteSnipetStop>, {any, any, any, any, off}},
    {&The<&MainForm::cmdPlay>, {on, on, on, on, on}},
    {&The<&MainForm::cmdComplete>, {on, on, on, on, on}},
};

Situation SituationOf(const MainForm& main) {
  if (main.cmdSkip.Enabled) return Work;
  if (main.frameCompleted.Visible) return Completed;
  if (main.frameImport.Visible) return Import;
  return main.frameFtp.Visible ? Ftp : Queue;
}

bool Agrees(bool state, Is wanted) { return wanted == any || state == (wanted == on); }

}  // namespace

std::string BrokenControl(Desk& desk) {
  const MainForm& main = desk.Main();
  const Situation now = SituationOf(main);
  const std::string where = std::string(" in the situation of ") + kSituations[now] + ".";
  for (const ControlRule& rule : kEnabled) {
    const forms::Control& control = rule.control(main);
    if (!Agrees(control.Enabled, rule.in[now])) {
      return control.Name + (control.Enabled ? " is enabled" : " is disabled") + where;
    }
  }
  for (const ControlRule& rule : kVisible) {
    const forms::Control& control = rule.control(main);
    if (!Agrees(control.Visible, rule.in[now])) {
      return control.Name + (control.Visible ? " is visible" : " is hidden") + where;
    }
  }
  return "";
}

}  // namespace tavlo::simulation
