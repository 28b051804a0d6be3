#include "driven_program.h"

#include <utility>

namespace tavlo::bench {
namespace {

using base::operator""ms;

}  // namespace

DrivenProgram::DrivenProgram(int& argc, char** argv, std::unique_ptr<pedals::SerialPort> serialPort)
    : program(argc, argv, std::move(serialPort)), look_(program.Loop(), "look", 2ms) {
  look_.OnTick = [this] { Look(); };
  look_.Start();
}

void DrivenProgram::SelectFirstInSilence() {
  forms::MainForm& form = program.Deck().windows.main;
  form.listViewInQueue.RowClick(0);
  program.Loop().Wait(400ms);
  form.cmdImportCompleteSnipetStop.Press(forms::By::Hand);
  program.Loop().Wait(400ms);
}

void DrivenProgram::Look() {
  shell::Windows& windows = program.Deck().windows;
  if (skipSplash_ && windows.splash.frmInitSplash.Visible) {
    skipSplash_ = false;
    windows.splash.picIcon.Click();
    return;
  }
  if (!windows.main.cmdUpdateFileList.Enabled) return;
  look_.Stop();
  OnReady();
}

}  // namespace tavlo::bench
