#include "lists/opening.h"

#include <vector>

namespace tavlo::lists {

Opening::Opening(base::Loop& loop, forms::MainForm& form, forms::ConfigurationForm& config,
                 store::WorkFolders& folders, store::DocumentNames& names,
                 playback::AudioEngine& engine, playback::Transport& transport,
                 playback::Preview& preview, const Hooks& hooks)
    : loop_(loop),
      form_(form),
      config_(config),
      folders_(folders),
      names_(names),
      engine_(engine),
      transport_(transport),
      preview_(preview) {
  forms::Table& list = form_.listViewInQueue;
  list.OnRowClick = [this, &list] {
    SelectedQueueFile = list.TextAt(list.ListIndex, forms::document_column::FileName);
  };
  // A double click does no more than a click: what opens a document for work is Play.
  list.OnClick = list.OnDoubleClick = [this, &hooks] {
    hooks.UserActed();
    GetSelectedJob();
  };
}

void Opening::GetSelectedJob() {
  engine_.tmrPlaySnipet.Stop();
  if (SelectedQueueFile.empty()) return;
  if (!preview_.Prepare(loop_, folders_.InQueuePath + SelectedQueueFile)) return;
  names_.ParseDocumentName(SelectedQueueFile);
  transport_.SavedPosition = names_.Record.SavedPosition;
  FillStatusBar();
  if (!preview_.Start("EmptyDocErrMayComplete")) return;
  form_.cmdPlay.Enabled = true;
  form_.cmdSkip.Enabled = false;
  form_.cmdComplete.Enabled = false;
  form_.cmdSave.Enabled = false;
  transport_.StopWind();
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
