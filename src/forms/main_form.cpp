#include "forms/main_form.h"

namespace tavlo::forms {
namespace {

constexpr Twips kFullHeight = 9600;
constexpr Twips kFullWidth = 13800;

}  // namespace

MainForm::MainForm(base::Loop& loop)
    : MainFrame(loop),
      PlayerFrame(frmMain),
      WorkArea(frmMain),
      QueueFrame(frameFiles),
      CompletedFrame(frameFiles),
      ImportFrame(frmMain, frameFiles),
      AuthorProfileFrame(frameImport),
      FtpFrame(frmMain, frameFiles) {
  frmMain.Height = kFullHeight;
  frmMain.Width = kFullWidth;
}

}  // namespace tavlo::forms
