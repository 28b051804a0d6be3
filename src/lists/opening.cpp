#include "lists/opening.h"

#include <vector>

#include "intake/import_directories.h"

namespace tavlo::lists {

Opening::Opening(base::Loop& loop, window::MainWindow& window, const store::DocumentFiles& files,
                 const playback::Playback& playback, WaitingWork& waitingWork,
                 std::string& selectedImportFile)
    : SelectedImportFile(selectedImportFile),
      loop_(loop),
      form_(window.Form()),
      config_(window.Config()),
      folders_(files.folders),
      names_(files.names),
      document_(playback.document),
      engine_(playback.engine),
      transport_(playback.transport),
      preview_(playback.preview),
      voice_(playback.voice),
      waitingWork_(waitingWork) {
  WireQueue();
  WireCompleted();
  WireImport();
}

void Opening::WireQueue() {
  forms::Table& list = form_.listViewInQueue;
  list.OnRowClick = [this, &list] {
    SelectedQueueFile = list.TextAt(list.ListIndex, forms::document_column::FileName);
  };
  // A double click does no more than a click: what opens a document for work is Play.
  list.OnClick = list.OnDoubleClick = [this] {
    waitingWork_.UserActed();
    GetSelectedJob();
  };
}

void Opening::WireCompleted() {
  forms::Table& list = form_.listViewCompleted;
  list.OnRowClick = [this, &list] {
    SelectedCompletedFile = list.TextAt(list.ListIndex, forms::document_column::FileName);
  };
  list.OnClick = [this] {
    waitingWork_.UserActed();
    PreviewCompletedDocument();
  };
}

void Opening::WireImport() {
  forms::Table& list = form_.listViewImport;
  list.OnRowClick = [this, &list] {
    SelectedImportFile = list.TextAt(list.ListIndex, forms::import_column::FileName);
  };
  list.OnClick = list.OnDoubleClick = [this] {
    waitingWork_.UserActed();
    PreviewImportDocument(form_.txtWavImportSubdirectory.Value);
  };
}

void Opening::GetSelectedJob() {
  engine_.tmrPlaySnipet.Stop();
  if (SelectedQueueFile.empty()) return;
  if (!preview_.Prepare(loop_, folders_.InQueuePath + SelectedQueueFile)) return;
  form_.cmdImportCompleteSnipetStop.Visible = true;
  // Complete may have been offered for the row that was highlighted before.
  form_.cmdComplete.Enabled = false;
  form_.slPosition.Value = 0;
  names_.ParseDocumentName(SelectedQueueFile);
  document_.SavedPosition = names_.Record.SavedPosition;
  FillStatusBar();
  const playback::Primed primed = preview_.Start();
  transport_.Explain(primed);
  if (primed != playback::Primed::Yes) return;
  form_.cmdPlay.Enabled = true;
  form_.cmdSkip.Enabled = false;
  form_.cmdComplete.Enabled = false;
  form_.cmdSave.Enabled = false;
  transport_.StopWind();
}

void Opening::PreviewCompletedDocument() {
  engine_.tmrPlaySnipet.Stop();
  if (SelectedCompletedFile.empty()) return;
  SoundBeginning(folders_.CompletedPath() + SelectedCompletedFile);
}

void Opening::PreviewImportDocument(const std::string& subdirectory) {
  engine_.tmrPlaySnipet.Stop();
  if (SelectedImportFile.empty()) return;
  SoundBeginning(intake::ImportDirectoryPath(folders_, subdirectory) + SelectedImportFile);
}

void Opening::SoundBeginning(const std::string& documentPath) {
  if (!preview_.Prepare(loop_, documentPath)) return;
  switch (preview_.Start()) {
    case playback::Primed::Yes:
    case playback::Primed::Refused:
      break;
    case playback::Primed::Unplayable:
      loop_.Show({.title = "Tavlo Deck",
                  .text = documentPath + " can not be played.",
                  .icon = base::Icon::Warning});
      break;
    case playback::Primed::OutOfReach:
      transport_.SayOutOfReach();
      break;
    case playback::Primed::Empty:
      voice_.PlayPrompt("EmptyDocErr");
      break;
  }
}

void Opening::FillStatusBar() {
  const store::DocumentRecord& record = names_.Record;
  form_.StatusBar1.Panels = std::vector<std::string>{
      record.Priority == "P" ? "Pri" : "",
      std::to_string(record.AuthorId),
      record.AuthorName,
      "Dept: " + std::to_string(record.Department),
      "Work: " + std::to_string(record.WorkType),
      config_.txtSubjectHeading.Value.Get() + ": " + record.Subject,
      record.DictationDate,
  };
}

}  // namespace tavlo::lists
