#include "shell/work_views.h"

#include "forms/control_groups.h"

namespace tavlo::shell {

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
    SetEnabled(forms::Menus(form_), false);
    retrieval_.RunRetrievalPasses();
    queue_.RefreshQueueList();
    SetEnabled(forms::Menus(form_), true);
    form_.cmdUpdateFileList.Visible = true;
  }
  SetEnabled(forms::SoundShapingKeys(form_), true);
  form_.cmdPlay.Enabled = form_.listViewInQueue.ListIndex >= 0;
  waitingWork_.TakeAsSeen();
  waitingWork_.GoOn();
}

CompletedView::CompletedView(forms::MainForm& form, lists::CompletedList& completed)
    : form_(form), completed_(completed) {}

void CompletedView::Enter() {
  SetEnabled(forms::SoundShapingKeys(form_), true);
  SetEnabled(forms::TransportKeys(form_), false);
  completed_.RefreshCompletedList();
  completed_.SetCompletedButtons();
}

ImportView::ImportView(window::MainWindow& window, intake::ImportList& list,
                       intake::AuthorProfiles& profiles, lists::WaitingWork& waitingWork,
                       intake::RetrievalPasses& retrieval)
    : form_(window.Form()),
      window_(window),
      list_(list),
      profiles_(profiles),
      waitingWork_(waitingWork),
      retrieval_(retrieval) {}

void ImportView::Enter() {
  SetEnabled(forms::SoundShapingKeys(form_), true);
  SetEnabled(forms::TransportKeys(form_), false);
  form_.cmdRefreshImportList.Visible = false;
  {
    // Under a box of the passes no other list change may begin.
    const window::ListPause pause(window_.guards);
    retrieval_.RunImportPasses();
  }
  profiles_.EnterLists();
  list_.RefreshImportList(form_.txtWavImportSubdirectory.Value);
  form_.cmdRefreshImportList.Visible = true;
  list_.SetImportButtons();
  waitingWork_.TakeAsSeen();
  waitingWork_.GoOn();
}

FtpView::FtpView(forms::MainForm& form, playback::AudioEngine& engine, ftp::ServerList& servers)
    : form_(form), engine_(engine), servers_(servers) {}

void FtpView::Enter() {
  engine_.tmrPlaySnipet.Stop();
  engine_.CloseFile();
  servers_.BuildFtpServers();
  // Nothing is to be played or printed here.
  SetEnabled(forms::SoundShapingKeys(form_), false);
  form_.sldVol.Enabled = false;
  form_.Slider1.Enabled = false;
  form_.mnuReport.Enabled = false;
}

}  // namespace tavlo::shell
