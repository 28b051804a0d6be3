#include "shell/work_views.h"

namespace tavlo::shell {
namespace {

void SetSoundShapingEnabled(forms::MainForm& form, bool enabled) {
  form.cmdEQ.Enabled = enabled;
  form.cmdNormalSpeed.Enabled = enabled;
}

void DisableTransportKeys(forms::MainForm& form) {
  for (forms::Command* key : {&form.cmdSkipBeg, &form.cmdRewind, &form.cmdStop, &form.cmdPlay,
                              &form.cmdForward, &form.cmdSkipEnd}) {
    key->Enabled = false;
  }
}

}  // namespace

QueueView::QueueView(window::MainWindow& window, lists::QueueList& queue,
                     lists::WaitingWork& waitingWork, intake::Retrieval& retrieval)
    : form_(window.Form()),
      window_(window),
      queue_(queue),
      waitingWork_(waitingWork),
      retrieval_(retrieval) {}

void QueueView::Enter() {
  {
    // A pedal works under the box of a list that can not be reached, too.
    const window::ListPause pause(window_.guards);
    form_.cmdUpdateFileList.Visible = false;
    retrieval_.RunRetrievalPasses();
    queue_.RefreshQueueList();
    form_.cmdUpdateFileList.Visible = true;
  }
  SetSoundShapingEnabled(form_, true);
  form_.cmdPlay.Enabled = form_.listViewInQueue.ListIndex >= 0;
  waitingWork_.TakeAsSeen();
  waitingWork_.GoOn();
}

CompletedView::CompletedView(forms::MainForm& form, lists::CompletedList& completed)
    : form_(form), completed_(completed) {}

void CompletedView::Enter() {
  SetSoundShapingEnabled(form_, true);
  DisableTransportKeys(form_);
  completed_.RefreshCompletedList();
  completed_.SetCompletedButtons();
}

ImportView::ImportView(forms::MainForm& form, lists::WaitingWork& waitingWork, Annex& annex)
    : form_(form), waitingWork_(waitingWork), annex_(annex) {
  OfferRefresh();
  form_.chkImportSynchronize.Enabled = form_.chkImportSynchronize.OnClick != nullptr;
}

void ImportView::Enter() {
  SetSoundShapingEnabled(form_, true);
  DisableTransportKeys(form_);
  form_.cmdRefreshImportList.Visible = false;
  annex_.BuildImportList();
  OfferRefresh();
  for (forms::Command* button :
       {&form_.cmdSendImportFileToQueue, &form_.cmdSendAllImportFilesToQueue,
        &form_.cmdDeleteOneImportFile, &form_.cmdDeleteAllImportFile}) {
    button->Enabled = !form_.listViewImport.Rows().empty();
  }
  waitingWork_.TakeAsSeen();
  waitingWork_.GoOn();
}

void ImportView::OfferRefresh() {
  form_.cmdRefreshImportList.Visible = form_.cmdRefreshImportList.OnPress != nullptr;
}

FtpView::FtpView(forms::MainForm& form, playback::AudioEngine& engine, Annex& annex)
    : form_(form), engine_(engine), annex_(annex) {
  form_.bConnect.Enabled = form_.bConnect.OnPress != nullptr;
  form_.comboFtpServerNames.Enabled = form_.bConnect.Enabled;
}

void FtpView::Enter() {
  engine_.tmrPlaySnipet.Stop();
  engine_.CloseFile();
  annex_.BuildFtpServers();
  // Nothing is to be played or printed here.
  SetSoundShapingEnabled(form_, false);
  form_.sldVol.Enabled = false;
  form_.Slider1.Enabled = false;
  form_.mnuReport.Enabled = false;
}

}  // namespace tavlo::shell
